#include "html/repair/tag_table.h"

#include "formats/html/tag_names.h"
#include "platform/failure.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

constexpr std::u16string_view kDefault =
    u"B|0,I|0,U|0,A|0,FONT|1,STRONG|0,EM|0,PRE|0,TT|0,SPAN|1,BIG|1,SMALL|1,CITE|0,"
    u"DFN|0,CODE|0,SAMP|0,KBD|0,VAR|0,ABBR|0,ACRONYM|0,SCRIPT|0,STYLE|0,"
    u"H1|0,H2|0,H3|0,H4|0,H5|0,H6|0,"
    u"TABLE|1,CAPTION|0,THEAD|1,TFOOT|1,TBODY|1,COLGROUP|0,TR|1,TH|1,TD|1,";

}  // namespace

TagTable::TagTable() { text(kDefault); }

std::u16string TagTable::text() const {
  std::u16string result;
  for (const Entry& entry : entries_) result += entry.name + u'|' + entry.flag + u',';
  return result;
}

void TagTable::text(std::u16string_view value) {
  std::vector<Entry> entries;
  for (std::size_t comma; (comma = value.find(u',')) != std::u16string_view::npos; value.remove_prefix(comma + 1)) {
    if (entries.size() == kCapacity)
      throw failure(FailureNumber::kSubscriptOutOfRange, u"Subscript out of range: more than 128 tags");
    const std::u16string_view piece = value.substr(0, comma);
    const std::size_t bar = piece.find(u'|');
    entries.push_back({std::u16string(piece.substr(0, bar)),
                       bar == std::u16string_view::npos ? std::u16string() : std::u16string(piece.substr(bar + 1))});
  }
  entries_ = std::move(entries);
  names_.clear();
  hashes_.clear();
  slots_.fill(kEmpty);
  for (const Entry& entry : entries_) {
    names_.push_back(to_utf8(ascii_upper(entry.name)));
    hashes_.push_back(name_hash(to_utf8(ascii_lower(entry.name))));
    std::size_t slot = hashes_.back() % kSlots;
    while (slots_[slot] != kEmpty) slot = (slot + 1) % kSlots;
    slots_[slot] = static_cast<std::int16_t>(names_.size() - 1);
  }
}

}  // namespace kavo
