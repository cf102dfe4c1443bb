#include "suite/memory/tmx_file.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "common/block_reader.h"
#include "common/pending_file.h"
#include "formats/xml/xml_reader.h"
#include "formats/xml/xml_text.h"
#include "platform/failure.h"
#include "platform/formatted.h"
#include "platform/ports.h"
#include "platform/unicode.h"
#include "suite/document/coded_text.h"
#include "suite/memory/code_mapping.h"

namespace kavo {
namespace {

constexpr std::string_view kLanguageAttribute = "http://www.w3.org/XML/1998/namespace lang";
constexpr std::string_view kReviewProperty = "x-status";
constexpr std::string_view kNeedsReview = "needs-review";

std::string upper(std::string_view text) { return to_utf8(ascii_upper(to_utf16(text))); }

class TmxParser final : public XmlHandler {
 public:
  TmxParser(XmlReader& reader, std::string_view source_language, std::string_view target_language,
            const std::function<void(const TmxUnit&)>* take)
      : reader_(reader),
        source_language_(upper(bcp47_of(source_language))),
        target_language_(upper(bcp47_of(target_language))),
        take_(take) {}

  // Where "</body>" begins; nothing when the body is one empty element.
  std::optional<XmlPlace> body_end() const { return body_end_; }

  void start(std::string_view, std::string_view name, const XmlAttributes& attributes, XmlPlace place) override {
    ++depth_;
    if (depth_ == 1 && name != "tmx") reader_.refuse(u"this is not a translation memory (TMX)");
    if (segment_depth_ != 0) return start_in_segment(name, attributes);
    if (name == "body") body_start_ = place;
    if (name == "tu") start_unit();
    if (name == "prop" && in_unit_) is_review_property_ = attributes.text("type") == kReviewProperty;
    if (name == "tuv") {
      // TMX before 1.4 had a different attribute.
      const char* const language = attributes.find(kLanguageAttribute);
      language_ = upper(language ? language : attributes.text("lang"));
    }
    if (name == "seg") {
      segment_depth_ = depth_;
      native_depth_ = 0;
      text_.clear();
    }
  }

  void end(std::string_view, std::string_view name, XmlPlace place) override {
    const int depth = depth_--;
    if (segment_depth_ == depth) return end_segment();
    if (segment_depth_ != 0) {
      if (native_depth_ == depth) native_depth_ = 0;
      return;
    }
    if (name == "prop" && is_review_property_) {
      unit_.is_reviewed = property_ != kNeedsReview;
      is_review_property_ = false;
      property_.clear();
    }
    if (name == "tu") end_unit();
    if (name == "body" && place.begin != body_start_.begin && place.end != body_start_.end) body_end_ = place;
  }

  void text(std::string_view text) override {
    if (segment_depth_ != 0 && native_depth_ == 0) text_ += text;
    if (segment_depth_ == 0 && is_review_property_) property_ += text;
  }

 private:
  // The content of a code is not text, but the content of a highlight is.
  void start_in_segment(std::string_view name, const XmlAttributes& attributes) {
    if (native_depth_ != 0 || name == "hi") return;
    native_depth_ = depth_;
    const std::string_view number = attributes.text(attributes.find("i") ? "i" : "x");
    if (number.empty()) return;
    if (name == "bpt") append_code(text_, CodeKind::kOpen, number);
    if (name == "ept") append_code(text_, CodeKind::kClose, number);
    // Pairs have their own numbering.
    if (name == "ph" || name == "it" || name == "ut") append_code(text_, CodeKind::kStandalone, number);
  }

  void start_unit() {
    in_unit_ = true;
    unit_ = {};
    has_source_ = has_target_ = false;
  }

  void end_segment() {
    segment_depth_ = 0;
    if (!in_unit_) return;
    if (!has_source_ && language_ == source_language_) {
      unit_.source = text_;
      has_source_ = true;
    } else if (!has_target_ && language_ == target_language_) {
      unit_.target = text_;
      has_target_ = true;
    }
  }

  void end_unit() {
    in_unit_ = false;
    if (take_ == nullptr || !has_source_ || !has_target_ || unit_.target.empty()) return;
    PlainPair plain = with_plain_numbers(unit_.source, unit_.target);
    // The codes are ambiguous or cross. The words are still worth keeping.
    if (!code_problem(plain.source, plain.target, true).empty()) plain.target = plain_text(plain.target);
    (*take_)({std::move(plain.source), std::move(plain.target), unit_.is_reviewed});
  }

  XmlReader& reader_;
  std::string source_language_;
  std::string target_language_;
  const std::function<void(const TmxUnit&)>* take_;
  std::optional<XmlPlace> body_end_;
  XmlPlace body_start_;
  TmxUnit unit_;
  std::string language_;  // of the variant being read
  std::string text_;      // of its segment
  std::string property_;
  int depth_ = 0;
  int segment_depth_ = 0;  // 0 outside of one
  int native_depth_ = 0;   // of a code in it
  bool in_unit_ = false;
  bool has_source_ = false;
  bool has_target_ = false;
  bool is_review_property_ = false;
};

void append_segment(std::string& xml, std::string_view language, std::string_view coded) {
  xml += "<tuv xml:lang=\"" + bcp47_of(language) + "\"><seg>";
  CodedTextReader reader(coded);
  for (CodedPart part; reader.next(part);) {
    if (!part.is_code) {
      append_xml_text(xml, part.text);
      continue;
    }
    const char* const tag = part.kind == CodeKind::kOpen    ? "<bpt i=\""
                            : part.kind == CodeKind::kClose ? "<ept i=\""
                                                            : "<ph x=\"";
    xml += tag;
    append_xml_attribute(xml, part.text);
    xml += "\"/>";
  }
  xml += "</seg></tuv>";
}

std::string units_text(std::string_view source_language, std::string_view target_language,
                       std::span<const TmxUnit> units) {
  std::string xml;
  for (const TmxUnit& unit : units) {
    xml += "<tu srclang=\"" + bcp47_of(source_language) + "\">";
    if (!unit.is_reviewed) xml += formatted("<prop type=\"{}\">{}</prop>", kReviewProperty, kNeedsReview);
    append_segment(xml, source_language, unit.source);
    append_segment(xml, target_language, unit.target);
    xml += "</tu>\n";
  }
  return xml;
}

constexpr std::string_view kStart =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<tmx version=\"1.4\">\n"
    "<header creationtool=\"K19Suite\" creationtoolversion=\"1\" segtype=\"paragraph\" o-tmf=\"K19Suite\" "
    "adminlang=\"en\" srclang=\"*all*\" datatype=\"unknown\"/>\n"
    "<body>\n";
constexpr std::string_view kEnd = "</body>\n</tmx>\n";

}  // namespace

std::string empty_tmx() { return std::string(kStart) + std::string(kEnd); }

void read_tmx(std::u16string_view path, std::string_view source_language, std::string_view target_language,
              const std::function<void(const TmxUnit&)>& take) {
  XmlReader reader(path);
  TmxParser parser(reader, source_language, target_language, &take);
  reader.read(parser);
}

void append_to_tmx(std::u16string_view path, std::string_view source_language, std::string_view target_language,
                   std::span<const TmxUnit> units) {
  const std::string added = units_text(source_language, target_language, units);
  if (!ports().files->info(path)) {
    PendingFile file(path);
    file.write(std::string(kStart) + added + std::string(kEnd));
    file.commit();
    return;
  }
  std::optional<XmlPlace> end;
  {
    XmlReader reader(path);
    TmxParser parser(reader, source_language, target_language, nullptr);
    reader.read(parser);
    if (reader.coding() == XmlCoding::kUtf8) end = parser.body_end();
  }
  if (!end)
    throw failure(FailureNumber::kInvalidCall,
                  to_utf16(path_to_host(path)) +
                      u" cannot take more translations, because it is not in UTF-8 or has no "
                      u"body. Move it away and try again");
  PendingFile file(path);
  {
    BlockReader old(path);
    const auto copy_to = [&](std::uint64_t position) {
      while (old.position() < position && (!old.window().empty() || old.more())) {
        const auto length =
            static_cast<std::size_t>(std::min<std::uint64_t>(old.window().size(), position - old.position()));
        file.write(old.window().substr(0, length));
        old.consume(length);
      }
    };
    copy_to(end->begin);
    file.write(added);
    copy_to(old.size());
  }
  file.commit();
}

}  // namespace kavo
