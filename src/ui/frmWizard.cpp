#include "ui/frmWizard.h"

#include "common/cRegistry.h"
#include "common/clsCommon.h"
#include "common/file_type.h"
#include "common/host_settings.h"
#include "common/path_parts.h"
#include "common/program_settings.h"
#include "mif/clsMIFUtilities.h"
#include "office/clsXLSUtil.h"
#include "platform/failure.h"
#include "platform/formatted.h"
#include "platform/ports.h"
#include "platform/program_folder.h"
#include "resources/string_table.h"
#include "ui/frmSetLanguage.h"

namespace kavo {
namespace {

constexpr std::u16string_view kInitDir = u"InitDir";
constexpr std::u16string_view kLastTM = u"LastTM";

struct RememberedLanguage {
  std::u16string_view code_value;
  std::u16string_view default_code;
  std::u16string_view code_page_value;
};
constexpr RememberedLanguage kLanguages[] = {{u"DefSourceLanguage", u"EN-US", u"DefSourceEncoding"},
                                             {u"DefTransLanguage", u"FR", u"DefTransEncoding"}};
constexpr std::int32_t kDefaultCodePage = 1252;

cRegistry language_value(std::u16string_view name, RegistryType type) {
  cRegistry value;
  value.SectionKey(kEditorKey);
  value.ValueKey(name);
  value.ValueType(static_cast<std::uint32_t>(type));
  return value;
}

std::u16string read_text(std::u16string_view name, std::u16string_view fallback) {
  const cRegistry::Variant value = language_value(name, RegistryType::kString).Value();
  const auto* text = std::get_if<std::u16string>(&value);
  return text != nullptr ? *text : std::u16string(fallback);
}

std::int32_t read_number(std::u16string_view name, std::int32_t fallback) {
  const cRegistry::Variant value = language_value(name, RegistryType::kNumber).Value();
  const auto* number = std::get_if<std::int32_t>(&value);
  return number != nullptr ? *number : fallback;
}

// Runs a step that stores something for the next time.
template <class Step>
void remember(Step&& step) {
  try {
    step();
  } catch (const failure&) {
    // The user only loses a convenience.
  }
}

// The text between the double quotes after `marker`, "" when there is none.
std::u16string quoted_part(std::u16string_view description, std::u16string_view marker) {
  const std::size_t at = description.find(std::u16string(marker) + u"\"");
  if (at == std::u16string_view::npos) return {};
  description.remove_prefix(at + marker.size() + 1);
  return std::u16string(description.substr(0, description.find(u'"')));
}

// The absolute path, because its reader may work in another folder. An impossible name stays as it is.
std::u16string whole_path(const std::u16string& name) {
  try {
    return ports().files->absolute(name);
  } catch (const failure&) {
    return name;
  }
}

ObjectRef create_tm_component() {
  try {
    return ports().automation->create(u"K19Suite.TranslationMemory");
  } catch (const failure&) {
    return nullptr;
  }
}

}  // namespace

frmWizard::frmWizard(WizardServices services)
    : QuestionForm(u"frmWizard"),
      lblLabel{{*this, u"lblLabel(0)", dialog_units(7, 7, 300, 8)},
               {*this, u"lblLabel(1)", dialog_units(7, 54, 300, 8)},
               {*this, u"lblLabel(2)", dialog_units(7, 86, 300, 8)},
               {*this, u"lblLabel(3)", dialog_units(7, 118, 300, 8)}},
      txtSourceFile(*this, u"txtSourceFile", dialog_units(7, 18, 246, 14)),
      cmdBrowse(*this, u"cmdBrowse", dialog_units(257, 18, 50, 14)),
      lblFileType(*this, u"lblFileType", dialog_units(7, 37, 246, 8)),
      cmdOptions(*this, u"cmdOptions", dialog_units(257, 36, 50, 14)),
      txtLang{{*this, u"txtLang(0)", dialog_units(7, 65, 246, 14)},
              {*this, u"txtLang(1)", dialog_units(7, 97, 246, 14)}},
      cmdChangeLang{{*this, u"cmdChangeLang(0)", dialog_units(257, 65, 50, 14)},
                    {*this, u"cmdChangeLang(1)", dialog_units(257, 97, 50, 14)}},
      txtTM(*this, u"txtTM", dialog_units(7, 129, 138, 14)),
      cmdClear(*this, u"cmdClear", dialog_units(149, 129, 50, 14)),
      cmdNew(*this, u"cmdNew", dialog_units(203, 129, 50, 14)),
      cmdOpen(*this, u"cmdOpen", dialog_units(257, 129, 50, 14)),
      cmdKAVO(*this, u"cmdKAVO", {}),
      cmdOK(*this, u"cmdOK", {}),
      cmdCancel(*this, u"cmdCancel", {}),
      morLang{{*this, u"morLang(0)", 0, 0, 0}, {*this, u"morLang(1)", 0, 0, 0}},
      services_(std::move(services)),
      tm_component_(create_tm_component()) {
  tab_order({&lblLabel[0], &txtSourceFile, &cmdBrowse, &lblFileType, &cmdOptions, &lblLabel[1], &txtLang[0],
             &cmdChangeLang[0], &lblLabel[2], &txtLang[1], &cmdChangeLang[1], &lblLabel[3], &txtTM, &cmdClear, &cmdNew,
             &cmdOpen, &cmdKAVO, &cmdOK, &cmdCancel});
  txtSourceFile.holds_path = txtTM.holds_path = true;
  for (morLanguage& picker : morLang) picker.Visible(false);
  for (TextBox& box : txtLang) box.Locked(true);
  cmdKAVO.Visible(false);
  load_languages();
  txtTM.Text(text::kNoMemory.text);
  set_captions();
  lay_out();
  set_handlers();
  source_changed();
}

void frmWizard::set_captions() {
  Caption(text::kWizard.text);
  constexpr TextRow kLabels[] = {text::kWizardFile, text::kWizardSource, text::kWizardTarget, text::kWizardMemory};
  for (std::size_t i = 0; i < std::size(kLabels); ++i) lblLabel[i].Caption(kLabels[i].text);
  cmdClear.Caption(text::kClearMemory.text);
  cmdNew.Caption(text::kNewMemory.text);
  cmdOpen.Caption(text::kOpenMemory.text);
  cmdOptions.Caption(text::kWizardOptions.text);
  cmdOK.Caption(text::kWizardOK.text);
  cmdCancel.Caption(text::kWizardCancel.text);
  cmdBrowse.Caption(text::kBrowse.text);
  cmdChangeLang[0].Caption(text::kChangeSource.text);
  cmdChangeLang[1].Caption(text::kChangeTarget.text);
  cmdKAVO.Caption(text::kStartEditor.text);
}

void frmWizard::set_handlers() {
  txtSourceFile.on_change = [this] { source_changed(); };
  on_drop = [this](std::u16string_view path) { txtSourceFile.Text(path); };
  cmdBrowse.on_click = [this] { browse(); };
  cmdOptions.on_click = [this] { show_options(); };
  for (std::size_t i = 0; i < 2; ++i) cmdChangeLang[i].on_click = [this, i] { change_language(i); };
  txtTM.on_change = [this] { tm_changed(); };
  cmdClear.on_click = [this] { txtTM.Text(u""); };
  cmdNew.on_click = [this] { ask_for_tm(u"CreateNew"); };
  cmdOpen.on_click = [this] { ask_for_tm(u"OpenExisting"); };
  cmdKAVO.on_click = [this] { start_editor(); };
  ends_by(cmdOK, cmdCancel, [this] {
    complete_paths();
    save();
  });
}

// The row of the memory is shown or hidden as a whole, and what is below it moves.
void frmWizard::lay_out() {
  const bool shows_tm = tm_component_ != nullptr;
  for (Control* control : std::initializer_list<Control*>{&lblLabel[3], &txtTM, &cmdClear, &cmdNew, &cmdOpen})
    control->Visible(shows_tm);
  const std::int32_t top = shows_tm ? 157 : 125;
  cmdKAVO.place(dialog_units(7, top, 80, 14));
  cmdOK.place(dialog_units(203, top, 50, 14));
  cmdCancel.place(dialog_units(257, top, 50, 14));
  size(dialog_units(0, 0, 314, top + 21));
}

void frmWizard::load_languages() {
  for (std::size_t i = 0; i < 2; ++i) {
    morLang[i].LanguageCode(read_text(kLanguages[i].code_value, kLanguages[i].default_code));
    morLang[i].CharSetNumber(read_number(kLanguages[i].code_page_value, kDefaultCodePage));
  }
  show_languages();
}

void frmWizard::show_languages() {
  for (std::size_t i = 0; i < 2; ++i) txtLang[i].Text(morLang[i].LanguageDescription());
}

// A memory need not be a file: the suite may know it by a name.
void frmWizard::complete_paths() {
  txtSourceFile.Text(whole_path(txtSourceFile.Text()));
  if (ports().files->info(tm_path_)) txtTM.Text(whole_path(tm_path_));
}

void frmWizard::save() const {
  remember([&] {
    for (std::size_t i = 0; i < 2; ++i) {
      language_value(kLanguages[i].code_value, RegistryType::kString).SetValue(morLang[i].LanguageCode());
      language_value(kLanguages[i].code_page_value, RegistryType::kNumber).SetValue(morLang[i].CharSetNumber());
    }
    if (!tm_path_.empty()) kWizardSettings.save(kLastTM, formatted(u"name=\"{}\" type=\"{}\"", tm_path_, tm_type_));
  });
}

void frmWizard::browse() {
  FileQuestion question;
  question.filter = text::kFileFilter.text;
  question.folder = kWizardSettings.get(kInitDir);
  if (const auto path = ports().desktop->ask_file(question)) txtSourceFile.Text(*path);
}

void frmWizard::source_changed() {
  const std::u16string& path = txtSourceFile.Text();
  cmdOK.Enabled(!path.empty());
  if (!path.empty()) remember([&] { kWizardSettings.save(kInitDir, folder_of(path)); });
  source_type_ = services_.file_type_of(path);
  lblFileType.Caption(!path.empty() && source_type_ == kUnknownFile ? text::kUnrecognisedType.text : u"");
  const bool has_dialog = source_type_ == kHtmlPage || source_type_ == kServerPage || source_type_ == kMifDocument ||
                          source_type_ == kWorkbook;
  cmdOptions.Enabled(has_dialog || services_.has_filter_settings(source_type_));
}

void frmWizard::show_options() {
  if (source_type_ == kHtmlPage || source_type_ == kServerPage) html_.DisplayOptions();
  if (source_type_ == kMifDocument) clsMIFUtilities().DisplayOptions();
  if (source_type_ == kWorkbook) clsXLSUtil().DisplayOptions();
  try {
    services_.show_filter_settings(source_type_);
  } catch (const failure& reason) {
    ports().desktop->message_box(reason.description(), Caption(), MessageIcon::kExclamation);
  }
}

void frmWizard::change_language(std::size_t which) {
  frmSetLanguage form;
  form.morLang.LanguageCode(morLang[which].LanguageCode());
  form.morLang.CharSetNumber(morLang[which].CharSetNumber());
  form.show();
  if (form.Cancelled()) return;
  morLang[which].LanguageCode(form.morLang.LanguageCode());
  morLang[which].CharSetNumber(form.morLang.CharSetNumber());
  show_languages();
}

std::u16string frmWizard::LastTM() const { return kWizardSettings.get(kLastTM); }

std::u16string frmWizard::NameOfTM(std::u16string_view description) { return quoted_part(description, u"name="); }

void frmWizard::SetLastTM(std::u16string_view description) {
  const std::u16string name = NameOfTM(description);
  if (name.empty()) return;
  txtTM.Text(name);
  tm_type_ = quoted_part(description, u"type=");
}

void frmWizard::tm_changed() {
  tm_type_.clear();
  if (txtTM.Text().empty()) {
    txtTM.Text(text::kNoMemory.text);
    // The text is selected, so that the next character typed replaces it.
    clsCommon().HighLight(txtTM);
    return;
  }
  tm_path_ = txtTM.Text() == text::kNoMemory.text ? u"" : txtTM.Text();
}

void frmWizard::ask_for_tm(std::u16string_view operation) {
  try {
    const std::u16string path = as_text(tm_component_->invoke(operation));
    if (!path.empty()) txtTM.Text(path);
  } catch (const failure& reason) {
    ports().desktop->message_box(reason.description(), Caption(), MessageIcon::kExclamation);
  }
}

// The form stays when the editor cannot be started.
void frmWizard::start_editor() {
  try {
    ports().shell->start(program_folder() + u"\\KAVO.EXE", {u"NW"});
  } catch (const failure& reason) {
    ports().desktop->message_box(reason.description(), Caption(), MessageIcon::kExclamation);
    return;
  }
  cmdCancel.Click();
}

}  // namespace kavo
