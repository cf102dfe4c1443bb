#include "ui/clsLanguages.h"

#include "platform/automation.h"
#include "platform/failure.h"
#include "platform/ports.h"

namespace kavo {
namespace {

// The layout of the records that the component fills.
constexpr std::int32_t kRecordLayout = 1;

// Fills `records` from index 0 up to the count that the component reports, until it refuses a record or fails.
template <class Record, class Fill>
void load(AutomationObject& source, std::u16string_view count_member, std::vector<Record>& records, Fill fill) {
  try {
    const std::int32_t count = as_number(source.get(count_member));
    for (std::int32_t index = 0; index < count; ++index) {
      Record record;
      if (!fill(index, record)) return;
      records.push_back(std::move(record));
    }
  } catch (const failure&) {
    // The records that were filled so far stay.
  }
}

template <class Record>
Record at(const std::vector<Record>& records, std::int32_t index) {
  if (index < 0 || static_cast<std::size_t>(index) >= records.size()) return {};
  return records[static_cast<std::size_t>(index)];
}

ObjectRef create_source() {
  try {
    return ports().automation->create(u"K19Suite.LanguageInformation");
  } catch (const failure&) {
    return nullptr;
  }
}

}  // namespace

clsLanguages::clsLanguages() {
  const ObjectRef source = create_source();
  if (source == nullptr) return;
  load(*source, u"LanguageCount", languages_, [&](std::int32_t index, Language& language) {
    Argument record[] = {by_value(index),
                         by_value(kRecordLayout),
                         by_reference(std::u16string()),
                         by_reference(std::u16string()),
                         by_reference(std::int32_t{0}),
                         by_reference(std::int32_t{0})};
    if (as_number(source->invoke(u"FillLanguage", record)) != 0) return false;
    language = {as_text(record[2].value), as_text(record[3].value), as_number(record[4].value),
                as_number(record[5].value)};
    return true;
  });
  load(*source, u"CodePageCount", code_pages_, [&](std::int32_t index, EncodingEntry& code_page) {
    Argument record[] = {by_value(index), by_value(kRecordLayout), by_reference(std::u16string()),
                         by_reference(std::u16string()), by_reference(std::int32_t{0})};
    if (as_number(source->invoke(u"FillCodePage", record)) != 0) return false;
    code_page = {as_text(record[2].value), as_text(record[3].value), as_number(record[4].value)};
    return true;
  });
}

std::u16string clsLanguages::LanguageDescription(std::int32_t index) const { return at(languages_, index).description; }
std::u16string clsLanguages::LanguageCode(std::int32_t index) const { return at(languages_, index).code; }
std::int32_t clsLanguages::LanguageEncoding(std::int32_t index) const { return at(languages_, index).encoding; }
std::int32_t clsLanguages::LanguageLCID(std::int32_t index) const { return at(languages_, index).lcid; }

std::int32_t clsLanguages::LanguageCodePage(std::int32_t index) const {
  if (index < 0 || index > LanguageCount()) return -1;
  for (std::int32_t i = 0; i <= CodePageCount(); ++i)
    if (CodePageNumber(i) == LanguageEncoding(index)) return i;
  return -1;
}

std::u16string clsLanguages::CodePageDescription(std::int32_t index) const {
  return at(code_pages_, index).description;
}
std::int32_t clsLanguages::CodePageNumber(std::int32_t index) const { return at(code_pages_, index).number; }
std::u16string clsLanguages::CodePageCode(std::int32_t index) const { return at(code_pages_, index).code; }

}  // namespace kavo
