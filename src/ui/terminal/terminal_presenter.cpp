#include "ui/terminal/terminal_presenter.h"

#include <unistd.h>

#include <algorithm>
#include <iostream>

#include "common/leading_number.h"
#include "platform/case_fold.h"
#include "platform/formatted.h"
#include "platform/ports.h"
#include "platform/unicode.h"
#include "ui/system_presenter.h"
#include "ui/terminal/terminal_desktop.h"

namespace kavo {
namespace {

constexpr std::string_view kHelp =
    "  an empty line   goes on; at OK it confirms\n"
    "  y or n          presses a button or not, ticks a box or not\n"
    "  a number        chooses that item; so does the beginning of its text\n"
    "  :list           lists the items to choose from\n"
    "  :empty          empties a text; a text that begins with \":\" is written with \"::\"\n"
    "  :KEY            goes to the question whose text has that letter in brackets\n"
    "  :back           goes back one question\n"
    "  :ok, :cancel    ends the form\n";

bool is_box(const Control& control) {
  return control.kind() == ControlKind::kTextBox || control.kind() == ControlKind::kListBox ||
         control.kind() == ControlKind::kComboBox;
}

bool is_shown(const Control& control) { return control.Visible() && control.Enabled(); }

// "&Add" as "[A]dd": the brackets mark the letter for ":a".
std::string readable(std::u16string_view caption) {
  std::u16string text;
  for (std::size_t i = 0; i < caption.size(); ++i) {
    if (caption[i] != u'&' || i + 1 == caption.size()) {
      text += caption[i];
    } else if (caption[++i] == u'&') {
      text += u'&';
    } else {
      text += {u'[', caption[i], u']'};
    }
  }
  // The question gets its own ending instead.
  for (const std::u16string_view end : {std::u16string_view(u":"), std::u16string_view(u"...")})
    if (text.ends_with(end)) text.resize(text.size() - end.size());
  return to_utf8(text);
}

// The access key of a caption, in upper case; 0 without one.
char16_t access_key(std::u16string_view caption) {
  for (std::size_t i = 0; i + 1 < caption.size(); ++i)
    if (caption[i] == u'&' && caption[++i] != u'&') return upper_case(caption[i]);
  return 0;
}

bool means_yes(std::string_view answer) { return answer == "y" || answer == "Y"; }
bool means_no(std::string_view answer) { return answer == "n" || answer == "N"; }

// A form while its questions are asked.
class TerminalForm final : public FormView {
 public:
  TerminalForm(Form& form, TerminalInput& input, std::ostream& output) : form_(form), input_(input), output_(output) {
    form_.view(this);
  }
  ~TerminalForm() override { form_.view(nullptr); }

  void run() {
    output_ << "\n== " << readable(form_.Caption()) << " == (? explains the keys)\n";
    if (form_.first_focus != nullptr) focus(*form_.first_focus);
    while (form_.shown()) step();
  }

  void control_changed(Control&) override {}
  void form_changed() override {}
  void focus(Control& control) override {
    place_ = static_cast<std::size_t>(std::ranges::find(form_.controls(), &control) - form_.controls().begin());
    moved_ = true;
  }
  void select_text(TextBox&, std::int32_t, std::int32_t) override {}
  void close() override {}
  Extent extent() const override { return {}; }
  Extent screen_extent() const override { return {}; }
  void move(std::int32_t, std::int32_t) override {}

 private:
  // Asks about one control and goes to the next one, unless the answer led elsewhere.
  void step() {
    if (place_ >= form_.controls().size()) place_ = 0;
    Control& control = *form_.controls()[place_];
    moved_ = false;
    if (is_shown(control)) ask(control);
    if (!moved_) ++place_;
  }

  void ask(Control& control) {
    switch (control.kind()) {
      case ControlKind::kLabel:
        if (!is_prompt(control) && !control.Caption().empty()) output_ << readable(control.Caption()) << '\n';
        break;
      case ControlKind::kFrame:
      case ControlKind::kGauge:
        break;
      case ControlKind::kTextBox:
        ask_text(static_cast<TextBox&>(control));
        break;
      case ControlKind::kButton:
        ask_button(static_cast<Button&>(control));
        break;
      case ControlKind::kCheckBox:
        ask_check(static_cast<CheckBox&>(control));
        break;
      case ControlKind::kOptionButton:
        ask_options(static_cast<OptionButton&>(control));
        break;
      case ControlKind::kListBox:
      case ControlKind::kComboBox:
        ask_item(static_cast<ItemControl&>(control));
        break;
    }
  }

  void ask_text(TextBox& box) {
    const std::string text = box.holds_path ? path_to_host(box.Text()) : to_utf8(box.Text());
    if (box.Locked()) {
      output_ << name_of(box) << ": " << text << '\n';
      return;
    }
    const auto answer = answer_to(box, formatted("{} [{}]", name_of(box), text));
    if (!answer || answer->empty()) return;
    if (*answer == ":empty") return box.Text(u"");
    std::string_view typed = *answer;
    if (typed.starts_with("::")) typed.remove_prefix(1);
    box.Text(box.holds_path ? path_from_terminal(typed) : to_utf16(typed));
  }

  void ask_button(Button& button) {
    const bool is_default = &button == form_.default_button;
    const auto answer = answer_to(button, readable(button.Caption()) + (is_default ? "? (Y/n)" : "? (y/N)"));
    if (answer && (means_yes(*answer) || (is_default && answer->empty()))) button.Click();
  }

  void ask_check(CheckBox& box) {
    const auto answer = answer_to(box, readable(box.Caption()) + (box.Value() ? "? (Y/n)" : "? (y/N)"));
    if (!answer) return;
    if (means_yes(*answer)) box.Value(true);
    if (means_no(*answer)) box.Value(false);
  }

  // All buttons of a group are one question, asked at the first of them.
  void ask_options(OptionButton& first) {
    std::vector<OptionButton*> group;
    for (Control* control : form_.controls()) {
      if (control->kind() != ControlKind::kOptionButton || !is_shown(*control)) continue;
      auto& button = static_cast<OptionButton&>(*control);
      if (&button.group() == &first.group()) group.push_back(&button);
    }
    if (group.front() != &first) return;
    for (std::size_t i = 0; i < group.size(); ++i)
      output_ << (group[i]->Value() ? "* " : "  ") << i + 1 << ' ' << readable(group[i]->Caption()) << '\n';
    const auto answer = answer_to(first, formatted("{} (1-{})", readable(first.group().Caption()), group.size()));
    if (!answer || answer->empty()) return;
    const auto number = static_cast<std::size_t>(leading_number(to_utf16(*answer)));
    if (number >= 1 && number <= group.size()) return group[number - 1]->Value(true);
    ask_again("there is no such number");
  }

  void ask_item(ItemControl& list) {
    if (list.ListCount() == 0) return;
    if (list.kind() == ControlKind::kListBox) print_items(list);
    const std::string selected = to_utf8(list.Text());
    const auto answer =
        answer_to(list, formatted("{} [{}] ({} to choose from)", name_of(list), selected, list.ListCount()));
    if (!answer || answer->empty()) return;
    if (*answer == ":list") {
      print_items(list);
      return ask_again("");
    }
    const std::int32_t index = find_item(list, *answer);
    if (index < 0) return ask_again("no item, or more than one, begins with that; :list shows them");
    list.ListIndex(index);
  }

  void print_items(const ItemControl& list) {
    for (std::int32_t i = 0; i < list.ListCount(); ++i)
      output_ << (i == list.ListIndex() ? "* " : "  ") << i + 1 << ' ' << to_utf8(list.List(i)) << '\n';
  }

  // The index of the item with that number or text, or of the only item whose text begins with it; -1 when there is
  // none.
  static std::int32_t find_item(const ItemControl& list, const std::string& answer) {
    const std::u16string wanted = upper_case(to_utf16(answer));
    if (std::ranges::all_of(answer, [](char c) { return c >= '0' && c <= '9'; })) {
      const std::int32_t number = leading_number(wanted);
      return number >= 1 && number <= list.ListCount() ? number - 1 : -1;
    }
    std::int32_t found = -1;
    for (std::int32_t i = 0; i < list.ListCount(); ++i) {
      const std::u16string text = upper_case(list.List(i));
      if (text == wanted) return i;
      if (!text.starts_with(wanted)) continue;
      if (found >= 0) return -1;
      found = i;
    }
    return found;
  }

  void ask_again(std::string_view reason) {
    if (!reason.empty()) output_ << reason << '\n';
    moved_ = true;
  }

  // A line that answers the control; nothing when it was a command for the form, which is then carried out.
  std::optional<std::string> answer_to(const Control& control, const std::string& question) {
    output_ << question << ": " << std::flush;
    std::optional<std::string> line = input_.line();
    if (!line) {
      output_ << '\n';
      moved_ = true;
      form_.close_box();
      return std::nullopt;
    }
    const bool is_text = control.kind() == ControlKind::kTextBox;
    if (*line != "?" && (!line->starts_with(':') || line->starts_with("::"))) return line;
    if ((is_text && *line == ":empty") || (is_box(control) && !is_text && *line == ":list")) return line;
    moved_ = true;
    obey(*line);
    return std::nullopt;
  }

  void obey(const std::string& command) {
    if (command == "?") {
      output_ << kHelp;
    } else if (command == ":back") {
      go_back();
    } else if (command == ":cancel") {
      form_.close_box();
    } else if (command == ":ok" && form_.default_button != nullptr) {
      if (form_.default_button->Enabled())
        form_.default_button->Click();
      else
        output_ << readable(form_.default_button->Caption()) << " is not possible yet\n";
    } else if (!go_to_key(to_utf16(command.substr(1)))) {
      output_ << command << ": no such command; ? explains the keys\n";
    }
  }

  void go_back() {
    for (std::size_t i = place_; i-- > 0;) {
      const Control& control = *form_.controls()[i];
      const bool asks = is_shown(control) && control.kind() != ControlKind::kLabel &&
                        control.kind() != ControlKind::kFrame && !is_locked(control);
      if (asks) {
        place_ = i;
        return;
      }
    }
  }

  bool go_to_key(std::u16string_view key) {
    if (key.size() != 1) return false;
    for (std::size_t i = 0; i < form_.controls().size(); ++i) {
      const Control& control = *form_.controls()[i];
      if (!is_shown(control) || access_key(control.Caption()) != upper_case(key[0])) continue;
      place_ = i;
      return true;
    }
    return false;
  }

  static bool is_locked(const Control& control) {
    return control.kind() == ControlKind::kTextBox && static_cast<const TextBox&>(control).Locked();
  }

  std::size_t index_of(const Control& control) const {
    return static_cast<std::size_t>(std::ranges::find(form_.controls(), &control) - form_.controls().begin());
  }

  // A label in front of a box is its question.
  bool is_prompt(const Control& label) const {
    const std::size_t next = index_of(label) + 1;
    return next < form_.controls().size() && is_box(*form_.controls()[next]);
  }

  std::string name_of(const Control& box) const {
    const std::size_t index = index_of(box);
    if (box.Caption().empty() && index > 0) return readable(form_.controls()[index - 1]->Caption());
    return readable(box.Caption());
  }

  Form& form_;
  TerminalInput& input_;
  std::ostream& output_;
  std::size_t place_ = 0;  // in the tab order
  bool moved_ = false;     // the last answer said where to go on
};

}  // namespace

void TerminalPresenter::show(Form& form) {
  PortsScope scope;
  TerminalDesktop desktop(*ports().desktop, input_, output_);
  ports().desktop = &desktop;
  TerminalForm(form, input_, output_).run();
}

// Questions go to standard error, because standard output is only for results.
FormPresenter& system_presenter() {
  static TerminalPresenter presenter(STDIN_FILENO, std::cerr);
  return presenter;
}

}  // namespace kavo
