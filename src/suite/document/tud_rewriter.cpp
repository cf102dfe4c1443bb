#include "suite/document/tud_rewriter.h"

#include <algorithm>
#include <map>
#include <utility>

#include "common/block_reader.h"
#include "common/pending_file.h"
#include "formats/text/text_coding.h"
#include "formats/xml/xml_text.h"
#include "platform/failure.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

// Converts the document's bytes to 8-bit text and back. In a coding other than UTF-8 and UTF-16 the bytes themselves
// are the text: its tags are ASCII, and new text beyond that is written as references.
class ByteForm {
 public:
  explicit ByteForm(XmlCoding coding) : coding_(coding) {
    if (coding == XmlCoding::kUtf16Little) wide_.emplace(kUtf16LittleEndian);
    if (coding == XmlCoding::kUtf16Big) wide_.emplace(kUtf16BigEndian);
  }

  std::string to_text(std::string_view bytes) const {
    if (!wide_) return std::string(bytes);
    std::string text;
    wide_->decode_run(bytes, text);
    return text;
  }
  std::string to_bytes(const std::string& text) const {
    if (!wide_) return text;
    std::string bytes;
    wide_->encode(text, bytes, [](std::string_view, std::string&) {});
    return bytes;
  }
  void append_new_text(std::string& out, std::string_view utf8) const {
    std::string escaped;
    append_xml_text(escaped, utf8);
    append_escaped(out, escaped);
  }
  // Appends text that is already escaped for XML.
  void append_escaped(std::string& out, std::string_view escaped) const {
    if (coding_ != XmlCoding::kAsciiBased) {
      out += escaped;
      return;
    }
    for (std::string_view rest = escaped; !rest.empty();) {
      const std::size_t length = std::max<std::size_t>(utf8_character_length(rest), 1);
      if (length == 1)
        out += rest.front();
      else
        out += "&#" + std::to_string(static_cast<std::uint32_t>(utf8_code_point(rest.substr(0, length)))) + ";";
      rest.remove_prefix(length);
    }
  }

 private:
  XmlCoding coding_;
  std::optional<TextCoding> wide_;
};

bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

// Sets an attribute without a prefix in a tag, in its old place if it exists.
void set_attribute(std::string& tag, std::string_view name, std::string_view value) {
  std::size_t at = tag.find_first_of(" \t\r\n/>");
  for (;;) {
    while (at < tag.size() && is_blank(tag[at])) ++at;
    const std::size_t name_begin = at;
    if (at >= tag.size() || tag[at] == '/' || tag[at] == '>') break;
    while (at < tag.size() && tag[at] != '=' && !is_blank(tag[at])) ++at;
    const std::size_t name_end = at;
    const std::size_t open = tag.find_first_of("\"'", at);
    if (open == std::string::npos) break;
    const std::size_t close = tag.find(tag[open], open + 1);
    if (close == std::string::npos) break;
    if (std::string_view(tag).substr(name_begin, name_end - name_begin) == name) {
      tag.replace(open + 1, close - open - 1, value);
      return;
    }
    at = close + 1;
  }
  std::string attribute(" ");
  attribute.append(name).append("=\"").append(value).append("\"");
  std::size_t end = tag.size() - (tag.ends_with("/>") ? 2 : 1);
  while (end > 0 && is_blank(tag[end - 1])) --end;
  tag.insert(end, attribute);
}

class Rewriter final : public TudEvents {
 public:
  Rewriter(std::u16string_view path, TudChanges& changes) : changes_(changes), old_(path), new_(path) {}

  XmlCoding* coding() { return &coding_; }

  void header(const TudHeader& header) override { changes_.header(header); }
  void unit(const TudUnit& unit) override {
    const std::size_t index = index_++;
    const auto segment = changes_.change(index, unit);
    if (!segment) return;
    if (unit.source != segment->source || unit.source_tag.end == 0)
      throw failure(FailureNumber::kInvalidCall, u"The document has been changed by another program");
    copy_to(unit.whole.begin);
    const std::string bytes = take(unit.whole.end);
    new_.write(ByteForm(coding_).to_bytes(rewritten(unit, *segment, changes_.details(index), bytes)));
  }

  void finish() {
    copy_to(old_.size());
    old_ = BlockReader();  // an open file cannot be replaced everywhere
    new_.commit();
  }

 private:
  void copy_to(std::uint64_t position) {
    while (old_.position() < position) {
      if (old_.window().empty() && !old_.more()) return;
      const auto length =
          static_cast<std::size_t>(std::min<std::uint64_t>(old_.window().size(), position - old_.position()));
      new_.write(old_.window().substr(0, length));
      old_.consume(length);
    }
  }

  std::string take(std::uint64_t position) {
    const auto length = static_cast<std::size_t>(position - old_.position());
    while (old_.window().size() < length && old_.more()) {
    }
    std::string bytes(old_.window().substr(0, length));
    old_.consume(bytes.size());
    return bytes;
  }

  // What the unit's attributes must say about its status. If the given details or the unit itself already express this
  // status in other words, those stay: "needs-l10n" says more than "to be reviewed".
  static XliffDetails words_for(const TudUnit& unit, const BilingualSegment& segment, const XliffDetails* given) {
    const auto fits = [&](std::string_view state) {
      return !state.empty() && (!is_new_state(state) || segment.status == TranslationStatus::kUntranslated);
    };
    if (given && fits(given->state)) return {given->state, given->state_qualifier, given->approved, {}};
    if (fits(unit.state) && status_of(unit) == segment.status)
      return {unit.state, unit.state_qualifier, unit.approved, {}};
    const XliffState usual = xliff_state_of(segment.status);
    return {std::string(usual.state), std::string(usual.qualifier), segment.status == TranslationStatus::kApproved, {}};
  }

  std::string rewritten(const TudUnit& unit, const BilingualSegment& segment, const XliffDetails* details,
                        std::string_view bytes) const {
    const ByteForm form(coding_);
    const auto slice = [&](std::uint64_t begin, std::uint64_t end) {
      return form.to_text(
          bytes.substr(static_cast<std::size_t>(begin - unit.whole.begin), static_cast<std::size_t>(end - begin)));
    };
    const std::string source_tag = slice(unit.source_tag.begin, unit.source_tag.end);
    const std::string prefix = source_tag.substr(1, source_tag.find("source") - 1);

    std::string start_tag = slice(unit.start_tag.begin, unit.start_tag.end);
    // An attribute that already has the right meaning stays as it is, written or left out.
    const bool is_locked = segment.status == TranslationStatus::kLocked;
    if (unit.translate == is_locked) set_attribute(start_tag, "translate", is_locked ? "no" : "yes");
    const XliffDetails words = words_for(unit, segment, details);
    if (unit.approved != words.approved) set_attribute(start_tag, "approved", words.approved ? "yes" : "no");

    const std::string content = target_content(form, unit, segment, slice);
    std::string target_tag = "<" + prefix + "target>";
    if (unit.has_target) target_tag = slice(unit.target_start.begin, unit.target_start.end);
    if (target_tag.ends_with("/>")) target_tag.erase(target_tag.size() - 2, 1);
    std::string state;
    append_xml_attribute(state, words.state);
    set_attribute(target_tag, "state", state);
    if (words.state_qualifier != unit.state_qualifier) set_qualifier(target_tag, words.state_qualifier);

    const std::uint64_t target_begin = unit.has_target ? unit.target_start.begin : unit.source_end;
    const std::uint64_t target_end = unit.has_target ? unit.target_end.end : unit.source_end;
    std::string result =
        start_tag + slice(unit.start_tag.end, target_begin) + target_tag + content + "</" + prefix + "target>";
    if (details) append_notes(result, form, prefix, details->notes, unit.notes);
    if (details) append_alternatives(result, form, prefix, details->alternatives);
    if (unit.match && *unit.match != segment.match) {
      std::string match_tag = slice(unit.match_tag.begin, unit.match_tag.end);
      set_attribute(match_tag, "match-quality", std::to_string(segment.match));
      // In a document that does not quite follow the rules a match may come before the target.
      if (unit.match_tag.begin >= target_end)
        return result + slice(target_end, unit.match_tag.begin) + match_tag + slice(unit.match_tag.end, unit.whole.end);
    }
    if (!unit.match && segment.match != 0)
      result += "<" + prefix + "alt-trans match-quality=\"" + std::to_string(segment.match) + "\" origin=\"" +
                std::string(kToolId) + "\"><" + prefix + "target>" + content + "</" + prefix + "target></" + prefix +
                "alt-trans>";
    return result + slice(target_end, unit.whole.end);
  }

  static void append_notes(std::string& result, const ByteForm& form, const std::string& prefix,
                           const std::vector<TudNote>& notes, const std::vector<TudNote>& there) {
    for (const TudNote& note : notes) {
      if (std::ranges::find(there, note) != there.end()) continue;
      result += "<" + prefix + "note";
      form.append_escaped(result, note.attributes);
      result += '>';
      form.append_new_text(result, note.text);
      result += "</" + prefix + "note>";
    }
  }

  static void append_alternatives(std::string& result, const ByteForm& form, const std::string& prefix,
                                  const std::vector<TudAlternative>& alternatives) {
    for (const TudAlternative& alternative : alternatives) {
      result += "<" + prefix + "alt-trans";
      if (alternative.match) result += " match-quality=\"" + std::to_string(*alternative.match) + "\"";
      if (!alternative.origin.empty()) {
        std::string origin;
        append_xml_attribute(origin, alternative.origin);
        result += " origin=\"";
        form.append_escaped(result, origin);
        result += '"';
      }
      result += '>';
      if (!alternative.source.empty()) append_alternative_text(result, form, prefix, "source", alternative.source);
      append_alternative_text(result, form, prefix, "target", alternative.target);
      result += "</" + prefix + "alt-trans>";
    }
  }

  // Its codes belong to another text, which is not available here. Only their ids are left.
  static void append_alternative_text(std::string& result, const ByteForm& form, const std::string& prefix,
                                      const char* name, std::string_view coded) {
    result += "<" + prefix + name + ">";
    // Crossing pairs have no elements.
    const bool shows_codes = code_problem(coded, coded).empty();
    CodedTextReader reader(coded);
    for (CodedPart part; reader.next(part);) {
      if (!part.is_code) {
        form.append_new_text(result, part.text);
      } else if (!shows_codes) {
        continue;
      } else if (part.kind == CodeKind::kClose) {
        result += "</" + prefix + "g>";
      } else {
        std::string id;
        append_xml_attribute(id, part.text);
        result += "<" + prefix + (part.kind == CodeKind::kOpen ? "g id=\"" : "x id=\"");
        form.append_escaped(result, id);
        result += part.kind == CodeKind::kOpen ? "\">" : "\"/>";
      }
    }
    result += std::string("</") + prefix + name + ">";
  }

  // A qualifier that no longer holds is removed, because it has no value for "none".
  static void set_qualifier(std::string& tag, std::string_view qualifier) {
    std::string escaped;
    append_xml_attribute(escaped, qualifier);
    set_attribute(tag, "state-qualifier", escaped);
    if (!qualifier.empty()) return;
    const std::size_t name = tag.find("state-qualifier");
    const std::size_t open = tag.find_first_of("\"'", name);
    std::size_t begin = name;
    while (begin > 0 && is_blank(tag[begin - 1])) --begin;
    tag.erase(begin, open + 2 - begin);
  }

  template <class Slice>
  static std::string target_content(const ByteForm& form, const TudUnit& unit, const BilingualSegment& segment,
                                    const Slice& slice) {
    std::map<std::pair<CodeKind, std::string_view>, XmlPlace> places;
    for (const TudUnit::Inline& code : unit.inlines) places.try_emplace({code.kind, code.id}, code.place);
    std::string content;
    CodedTextReader reader(segment.target);
    for (CodedPart part; reader.next(part);) {
      if (!part.is_code) {
        form.append_new_text(content, part.text);
      } else if (const auto found = places.find({part.kind, part.text}); found != places.end()) {
        content += slice(found->second.begin, found->second.end);
      }
    }
    return content;
  }

  TudChanges& changes_;
  BlockReader old_;
  PendingFile new_;
  XmlCoding coding_ = XmlCoding::kUtf8;
  std::size_t index_ = 0;
};

}  // namespace

void rewrite_tud(std::u16string_view path, TudChanges& changes, ProgressEvent* progress) {
  Rewriter rewriter(path, changes);
  read_tud(path, rewriter, progress, rewriter.coding());
  rewriter.finish();
}

}  // namespace kavo
