#include "suite/document/pseudo_translation.h"

#include <optional>

#include "formats/text/text_coding.h"
#include "suite/document/blank_text.h"
#include "suite/document/coded_text.h"
#include "suite/document/tud_rewriter.h"

namespace kavo {
namespace {

// Letters of Western European code pages, which FrameMaker's own coding has, too.
struct Accent {
  char letter;
  std::string_view accented;
};
constexpr Accent kAccents[] = {{'A', "À"}, {'E', "É"}, {'I', "Î"}, {'N', "Ñ"}, {'O', "Õ"}, {'U', "Ü"}, {'a', "á"},
                               {'c', "ç"}, {'e', "è"}, {'i', "ï"}, {'n', "ñ"}, {'o', "ô"}, {'u', "ü"}, {'y', "ÿ"}};

bool is_script_name(std::string_view name) {
  constexpr std::string_view kExtension = ".scr";
  if (name.size() < kExtension.size()) return false;
  name.remove_prefix(name.size() - kExtension.size());
  for (std::size_t i = 0; i < kExtension.size(); ++i)
    if ((name[i] >= 'A' && name[i] <= 'Z' ? name[i] + 32 : name[i]) != kExtension[i]) return false;
  return true;
}

bool is_quoted(std::string_view text) {
  return text.size() >= 2 && (text.front() == '"' || text.front() == '\'') && text.back() == text.front();
}

class Changes final : public TudChanges {
 public:
  void header(const TudHeader& header) override { pseudo_.emplace(header); }
  std::optional<BilingualSegment> change(std::size_t, const TudUnit& unit) override {
    if (status_of(unit) == TranslationStatus::kLocked) return std::nullopt;
    ++count_;
    target_ = unit.element.ends_with("/name") ? pseudo_->name(unit.source) : pseudo_->of(unit.source);
    BilingualSegment segment;
    segment.source = unit.source;
    segment.target = target_;
    segment.status = TranslationStatus::kTranslated;
    segment.match = unit.match.value_or(0);
    return segment;
  }
  std::uint64_t count() const { return count_; }

 private:
  std::optional<PseudoTranslation> pseudo_;
  std::string target_;
  std::uint64_t count_ = 0;
};

}  // namespace

PseudoTranslation::PseudoTranslation(unsigned code_page, bool is_script) : is_script_(is_script) {
  const TextCoding coding(code_page == 0 ? kUtf8CodePage : code_page);
  for (const Accent& accent : kAccents) {
    bool is_known = true;
    std::string ignored;
    coding.encode(accent.accented, ignored, [&](std::string_view, std::string&) { is_known = false; });
    if (is_known) letters_[static_cast<unsigned char>(accent.letter)] = accent.accented;
  }
}

PseudoTranslation::PseudoTranslation(const TudHeader& header)
    : PseudoTranslation(header.target_code_page,
                        is_script_name(header.original) && header.datatype != kScriptDatatype) {}

std::string PseudoTranslation::of(std::string_view coded) const { return is_script_ ? script(coded) : text(coded); }

std::string PseudoTranslation::name(std::string_view coded) const {
  std::string result;
  CodedTextReader reader(coded);
  for (CodedPart part; reader.next(part);) {
    if (part.is_code)
      append_code(result, part.kind, part.text);
    else
      append_letters(result, part.text);
  }
  return result;
}

std::string PseudoTranslation::script(std::string_view coded) const {
  std::string result;
  CodedTextReader reader(coded);
  for (CodedPart part; reader.next(part);) {
    if (part.is_code) {
      append_code(result, part.kind, part.text);
    } else if (is_quoted(part.text)) {
      (result += part.text.front()) += '[';
      append_letters(result, part.text.substr(1, part.text.size() - 2));
      (result += ']') += part.text.back();
    } else {
      append_letters(result, part.text);
    }
  }
  return result;
}

// The brackets are next to the words, inside the codes and blanks at both ends: a blank beside a code belongs to the
// document only as long as no text comes between them.
std::string PseudoTranslation::text(std::string_view coded) const {
  std::string result;
  std::size_t end_of_words = std::string::npos;
  CodedTextReader reader(coded);
  for (CodedPart part; reader.next(part);) {
    if (part.is_code) {
      append_code(result, part.kind, part.text);
      continue;
    }
    if (is_blank_text(part.text)) {
      result += part.text;
      continue;
    }
    if (end_of_words == std::string::npos) {
      const std::size_t blanks = leading_blanks(part.text);
      (result += part.text.substr(0, blanks)) += '[';
      part.text.remove_prefix(blanks);
    }
    append_letters(result, part.text);
    end_of_words = result.size() - trailing_blanks(part.text);
  }
  if (end_of_words != std::string::npos) result.insert(end_of_words, 1, ']');
  return result;
}

void PseudoTranslation::append_letters(std::string& result, std::string_view text) const {
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < letters_.size() && !letters_[byte].empty())
      result += letters_[byte];
    else
      result += c;
  }
}

std::uint64_t pseudo_translate(std::u16string_view tud, ProgressEvent& progress) {
  Changes changes;
  rewrite_tud(tud, changes, &progress);
  return changes.count();
}

}  // namespace kavo
