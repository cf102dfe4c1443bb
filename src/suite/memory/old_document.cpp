#include "suite/memory/old_document.h"

#include "common/checksum.h"
#include "common/document_names.h"
#include "common/path_parts.h"
#include "formats/xml/xml_text.h"
#include "platform/ports.h"
#include "platform/unicode.h"
#include "suite/memory/code_mapping.h"
#include "suite/memory/script_lines.h"

namespace kavo {
namespace {

class OldReader final : public TudEvents {
 public:
  explicit OldReader(OldDocument& document) : document_(document) {}

  void header(const TudHeader& header) override {
    document_.header = header;
    const bool is_script = ascii_lower(extension_of(core_file_name(header.original))) == u"scr";
    document_.holds_lines = is_script && header.datatype != kScriptDatatype;
  }

  void unit(const TudUnit& unit) override {
    if (document_.holds_lines) return take_line(unit);
    OldUnit& old = document_.units.emplace_back();
    PlainPair plain = with_plain_numbers(unit.source, translation_of(unit));
    old.source = std::move(plain.source);
    old.target = std::move(plain.target);
    old.name = unit.name;
    old.element = unit.element;
    old.status = status_of(unit);
    old.state = unit.state;
    old.state_qualifier = unit.state_qualifier;
    old.approved = unit.approved;
    old.notes = unit.notes;
    old.alternatives = unit.alternatives;
  }

 private:
  void take_line(const TudUnit& unit) {
    texts_of_line(unit.source, translation_of(unit), [&](std::string_view source, std::string_view target) {
      OldUnit& old = document_.units.emplace_back();
      old.source = source;
      old.target = target;
      // In those versions a line was locked when it had no quoted text. Whether a text must be translated was not
      // known.
      const TranslationStatus status = status_of(unit);
      const bool is_translated = status != TranslationStatus::kLocked && target != source;
      old.status = is_translated ? status : TranslationStatus::kUntranslated;
      old.state = unit.state;
      old.state_qualifier = unit.state_qualifier;
      old.approved = unit.approved && is_translated;
      old.is_part = true;
    });
  }

  OldDocument& document_;
};

}  // namespace

OldDocument read_old_document(std::u16string_view tud) {
  OldDocument document;
  OldReader reader(document);
  read_tud(tud, reader);
  const std::u16string skeleton = skeleton_name_of(tud);
  if (const auto info = ports().files->info(skeleton); info && !info->is_folder)
    document.skeleton_checksum = checksum_of_file(skeleton);
  return document;
}

bool has_languages_of(const TudHeader& header, std::string_view source_language, std::string_view target_language) {
  return bcp47_of(header.source_language) == bcp47_of(source_language) &&
         bcp47_of(header.target_language) == bcp47_of(target_language);
}

void add_translations(TextMemory& memory, const std::vector<OldUnit>& units) {
  for (const OldUnit& unit : units)
    if (unit.is_translated() && !unit.target.empty()) memory.add(unit.source, unit.target, unit.is_reviewed());
}

}  // namespace kavo
