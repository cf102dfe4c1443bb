// The reading half of the bilingual document's format.
//
// Events arrive in the order of the file. Flags and depths say which element is open, and the unit being built keeps
// what matters. Everything that the format does not need is skipped, whatever it holds.
#include <algorithm>
#include <charconv>

#include "common/plain_name.h"
#include "formats/xml/xml_text.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "platform/formatted.h"
#include "platform/unicode.h"
#include "suite/document/file_uri.h"
#include "suite/document/tud_format.h"
#include "suite/document/tud_header_fields.h"

namespace kavo {
namespace {

class TudParser final : public XmlHandler {
 public:
  TudParser(std::u16string_view path, TudEvents& events, XmlCoding* coding)
      : reader_(path), events_(events), coding_(coding) {}

  void read(ProgressEvent* progress) {
    reader_.read(*this, progress);
    if (!seen_file_) reader_.refuse(u"the document has no file element");
    tell_header();
  }

  void start(std::string_view space, std::string_view name, const XmlAttributes& attributes, XmlPlace place) override {
    ++depth_;
    if (depth_ == 1) {
      if (name != "xliff" || space.starts_with("urn:oasis:names:tc:xliff:document:2"))
        reader_.refuse(u"this is not an XLIFF 1 document");
      space_ = space;
      if (coding_) *coding_ = reader_.coding();
      return;
    }
    if (skip_depth_ != 0) return;
    const bool is_ours = space == space_;
    if (inline_depth_ != 0) {
      if (is_ours) start_inline(name, attributes, place);
      return;
    }
    if (in_alternative_ != 0) {
      if (is_ours && depth_ == in_alternative_ + 1) start_alternative_text(name);
      return;
    }
    if (!is_ours || in_unit_note_) {
      skip_depth_ = depth_;
      return;
    }
    if (in_contexts_ != 0) {
      in_element_ = name == "context" && attributes.text("context-type") == "element";
      if (in_element_) unit_.element.clear();
      return;
    }
    if (in_unit_)
      start_in_unit(name, attributes, place);
    else
      start_outside(name, attributes, place);
  }

  void end(std::string_view space, std::string_view name, XmlPlace place) override {
    const int depth = depth_--;
    if (skip_depth_ != 0) {
      if (skip_depth_ == depth) skip_depth_ = 0;
      return;
    }
    const bool is_ours = space == space_;
    if (inline_depth_ != 0) {
      if (inline_depth_ == depth)
        end_text(name, place);
      else if (is_ours)
        end_inline(name, place);
    } else if (in_alternative_ != 0) {
      if (in_alternative_ == depth) in_alternative_ = 0;
    } else if (in_contexts_ != 0) {
      if (in_contexts_ == depth) in_contexts_ = 0;
      in_element_ = false;
    } else if (in_unit_note_) {
      in_unit_note_ = false;
    } else if (in_unit_ && name == "trans-unit") {
      in_unit_ = false;
      unit_.whole.end = place.end;
      events_.unit(unit_);
    } else {
      end_outside(name);
    }
  }

  void text(std::string_view text) override {
    if (skip_depth_ != 0) return;
    if (inline_depth_ != 0) {
      if (native_depth_ == 0 && text_) *text_ += text;
    } else if (in_alternative_ != 0) {
      return;
    } else if (in_element_) {
      unit_.element += text;
    } else if (in_unit_note_) {
      unit_.notes.back().text += text;
    } else if (in_note_) {
      note_ += text;
    } else if (in_internal_file_) {
      events_.skeleton_inside(text);
    }
  }

 private:
  void start_outside(std::string_view name, const XmlAttributes& attributes, XmlPlace place) {
    if (name == "trans-unit") {
      start_unit(attributes, place);
    } else if (name == "file") {
      if (seen_file_) reader_.refuse(u"the document holds more than one file");
      seen_file_ = true;
      header_.original = name_from(from_uri(attributes.text("original")), "original");
      header_.datatype = attributes.text("datatype");
      header_.source_language = name_from(attributes.text("source-language"), "source-language");
      header_.target_language = name_from(attributes.text("target-language"), "target-language");
    } else if (name == "skl") {
      in_skeleton_ = true;
    } else if (in_skeleton_ && name == "external-file") {
      header_.skeleton = name_from(from_uri(attributes.text("href")), "external-file");
    } else if (in_skeleton_ && name == "internal-file") {
      header_.has_skeleton_inside = true;
      in_internal_file_ = true;
    } else if (name == "note") {
      in_note_ = attributes.text("from") == kToolId;
      note_.clear();
    }
  }

  void end_outside(std::string_view name) {
    if (name == "note" && in_note_) {
      in_note_ = false;
      take_detail();
    } else if (name == "internal-file") {
      in_internal_file_ = false;
    } else if (name == "skl") {
      in_skeleton_ = false;
    }
  }

  void take_detail() {
    const std::size_t sign = note_.find('=');
    if (sign == std::string::npos) return;
    const std::string_view name = std::string_view(note_).substr(0, sign);
    const std::string_view value = std::string_view(note_).substr(sign + 1);
    for (const HeaderField& field : header_fields())
      if (field.name == name)
        field.take(header_, field.is_name ? name_from(from_uri(value), name) : std::string(value));
  }

  // A text of the header that is a file name beside the document or becomes part of one; "" when it is missing.
  std::string name_from(std::string_view value, std::string_view field) const {
    const std::string_view problem = value.empty() ? std::string_view() : plain_name_problem(value);
    if (!problem.empty())
      reader_.refuse(to_utf16(std::string(field) + " is not a plain file name: " + std::string(problem)));
    return std::string(value);
  }

  void tell_header() {
    if (told_header_) return;
    told_header_ = true;
    events_.header(header_);
  }

  void start_unit(const XmlAttributes& attributes, XmlPlace place) {
    tell_header();
    in_unit_ = true;
    unit_.id = attributes.text("id");
    unit_.name = attributes.text("resname");
    unit_.translate = attributes.text("translate") != "no";
    unit_.approved = attributes.text("approved") == "yes";
    unit_.extra = attributes.text("extradata");
    unit_.source.clear();
    unit_.target.clear();
    unit_.has_target = false;
    unit_.state.clear();
    unit_.state_qualifier.clear();
    unit_.match.reset();
    unit_.element.clear();
    unit_.inlines.clear();
    unit_.notes.clear();
    unit_.alternatives.clear();
    unit_.whole = unit_.start_tag = place;
    unit_.source_tag = unit_.target_start = unit_.target_end = unit_.match_tag = {};
    unit_.source_end = place.end;
  }

  void start_in_unit(std::string_view name, const XmlAttributes& attributes, XmlPlace place) {
    text_ = nullptr;
    if (name == "source") {
      text_ = &unit_.source;
      unit_.source_tag = place;
    } else if (name == "target") {
      text_ = &unit_.target;
      unit_.has_target = true;
      unit_.target_start = place;
      unit_.state = attributes.text("state");
      unit_.state_qualifier = attributes.text("state-qualifier");
    } else if (name == "alt-trans") {
      take_match(attributes, place);
      in_alternative_ = depth_;
      return;
    } else if (name == "context-group") {
      in_contexts_ = depth_;
      return;
    } else if (name == "note") {
      start_unit_note(attributes);
      return;
    } else if (name != "seg-source") {
      // Elements with counts and properties are skipped.
      skip_depth_ = depth_;
      return;
    }
    inline_depth_ = depth_;
    native_depth_ = 0;
    open_.clear();
  }

  void start_unit_note(const XmlAttributes& attributes) {
    in_unit_note_ = true;
    TudNote note;
    constexpr std::pair<const char*, const char*> kAttributes[] = {
        {"http://www.w3.org/XML/1998/namespace lang", "xml:lang"},
        {"from", "from"},
        {"priority", "priority"},
        {"annotates", "annotates"}};
    for (const auto& [read, written] : kAttributes) {
      const char* const value = attributes.find(read);
      if (!value) continue;
      note.attributes += formatted(" {}=\"", written);
      append_xml_attribute(note.attributes, value);
      note.attributes += '"';
    }
    unit_.notes.push_back(std::move(note));
  }

  // "100", "100%", "99.5%"; some tools write a share of 1 instead.
  void take_match(const XmlAttributes& attributes, XmlPlace place) {
    TudAlternative& alternative = unit_.alternatives.emplace_back();
    alternative.origin = attributes.text("origin");
    const std::string_view quality = attributes.text("match-quality");
    double value = 0;
    if (std::from_chars(quality.data(), quality.data() + quality.size(), value).ec != std::errc()) return;
    if (value > 0 && value < 1) value *= 100;
    alternative.match = static_cast<std::int16_t>(std::clamp(value, 0.0, 100.0));
    if (unit_.match) return;
    unit_.match = alternative.match;
    unit_.match_tag = place;
  }

  void start_alternative_text(std::string_view name) {
    text_ = nullptr;
    TudAlternative& alternative = unit_.alternatives.back();
    if (name == "source") text_ = &alternative.source;
    // The first of several targets counts.
    if (name == "target" && alternative.target.empty()) text_ = &alternative.target;
    inline_depth_ = depth_;
    native_depth_ = 0;
    open_.clear();
  }

  void end_text(std::string_view name, XmlPlace place) {
    inline_depth_ = 0;
    if (in_alternative_ != 0) return;
    if (name == "source" || name == "seg-source") unit_.source_end = place.end;
    if (name == "target") unit_.target_end = place;
  }

  // Elements inside a text. The content of a native code is not text, and neither is anything inside it.
  void start_inline(std::string_view name, const XmlAttributes& attributes, XmlPlace place) {
    OpenInline open{{}, place.begin, native_depth_ == 0 && text_ != nullptr, false};
    std::string_view id = attributes.text("id");
    CodeKind kind = CodeKind::kStandalone;
    if (name == "g" || name == "bpt" || name == "bx") kind = CodeKind::kOpen;
    if (name == "ept" || name == "ex") kind = CodeKind::kClose;
    if ((name == "bx" || name == "ex") && attributes.find("rid")) id = attributes.text("rid");
    open.is_code = open.is_code && (name == "g" || name == "x" || name == "bx" || name == "ex" || name == "ph" ||
                                    name == "bpt" || name == "ept" || name == "it");
    open.is_native = name == "ph" || name == "bpt" || name == "ept" || name == "it";
    if (open.is_native) ++native_depth_;
    if (open.is_code) {
      append_code(*text_, kind, id);
      open.id = id;
      if (text_ == &unit_.source) unit_.inlines.push_back({kind, std::string(id), place});
      open.inline_index = unit_.inlines.size();
    }
    open_.push_back(std::move(open));
  }

  void end_inline(std::string_view name, XmlPlace place) {
    if (open_.empty()) return;
    const OpenInline open = std::move(open_.back());
    open_.pop_back();
    if (open.is_native) --native_depth_;
    if (!open.is_code) return;
    const bool in_source = text_ == &unit_.source;
    if (name == "g") {
      append_code(*text_, CodeKind::kClose, open.id);
      if (in_source) unit_.inlines.push_back({CodeKind::kClose, open.id, place});
    } else if (in_source) {
      unit_.inlines[open.inline_index - 1].place.end = place.end;
    }
  }

  struct OpenInline {
    std::string id;
    std::uint64_t begin = 0;
    bool is_code = false;
    bool is_native = false;
    std::size_t inline_index = 0;
  };

  XmlReader reader_;
  TudEvents& events_;
  XmlCoding* coding_;
  TudHeader header_;
  TudUnit unit_;
  std::string space_;       // the namespace of the document's own elements
  int depth_ = 0;           // of open elements
  int skip_depth_ = 0;      // the depth of an element that is skipped with its content, 0 for none
  int in_alternative_ = 0;  // the depth of an alternative translation
  int in_contexts_ = 0;     // the depth of a unit's context group
  int inline_depth_ = 0;    // the depth of the source or target element
  int native_depth_ = 0;    // how many native codes are open
  std::string* text_ = nullptr;
  std::vector<OpenInline> open_;
  std::string note_;
  bool in_unit_ = false;
  bool in_note_ = false;
  bool in_unit_note_ = false;
  bool in_element_ = false;
  bool in_skeleton_ = false;
  bool in_internal_file_ = false;
  bool seen_file_ = false;
  bool told_header_ = false;
};

}  // namespace

std::u16string core_file_name(std::string_view name) { return path_from_host(name); }

void read_tud(std::u16string_view path, TudEvents& events, ProgressEvent* progress, XmlCoding* coding) {
  TudParser(path, events, coding).read(progress);
}

TudHeader header_of(std::u16string_view path) {
  struct Taker final : TudEvents {
    void header(const TudHeader& header) override { taken = header; }
    TudHeader taken;
  };
  Taker taker;
  read_tud(path, taker);
  return taker.taken;
}

std::optional<TudHeader> header_if_bilingual(std::u16string_view path) {
  try {
    return header_of(path);
  } catch (const failure& reason) {
    if (!reason.is(FailureNumber::kInvalidCall)) throw;
    return std::nullopt;
  }
}

}  // namespace kavo
