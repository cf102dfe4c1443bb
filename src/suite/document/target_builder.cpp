// Builds the target from the skeleton and the translated segments, reading both at the same time.
#include <unordered_map>

#include "common/pending_file.h"
#include "platform/failure.h"
#include "platform/formatted.h"
#include "platform/unicode.h"
#include "suite/document/conversion.h"
#include "suite/document/open_tag.h"
#include "suite/document/rebuilding.h"
#include "suite/document/skeleton.h"
#include "suite/filters/filter.h"

namespace kavo {
namespace {

bool is_ascii(std::string_view bytes) {
  return std::all_of(bytes.begin(), bytes.end(), [](char byte) { return static_cast<unsigned char>(byte) < 0x80; });
}

[[noreturn]] void throw_refused(std::u16string reason) {
  throw failure(FailureNumber::kInvalidCall, std::move(reason));
}

class TargetBuilder {
 public:
  explicit TargetBuilder(const TargetRequest& request)
      : skeleton_(request.skeleton), open_tag_(request.open_tag), target_(request.target) {
    const SkeletonHeader& header = skeleton_.header();
    if (header.checksum != open_tag_.header().checksum)
      throw_refused(request.skeleton + u" is the skeleton of another document");
    if (!request.filter.empty() && ascii_upper(request.filter).find(header.filter) == std::u16string::npos)
      throw_refused(
          formatted(u"{} was made by the filter {}, not by {}", request.skeleton, header.filter, request.filter));
    filter_ = find_filter(header.filter).make();

    RebuildSettings settings =
        rebuild_settings(header, open_tag_.header().source_language,
                         request.language.empty() ? open_tag_.header().target_language : to_utf8(request.language),
                         open_tag_.header().target_code_page);
    colours_ = open_tag_.header().colours;
    settings.tell = request.tell;
    settings.highlights = colours_.has_value();
    if (colours_) settings.colours = *colours_;
    recodes_ = settings.target_code_page != header.facts.code_page;
    coding_ = std::make_unique<TextCoding>(header.facts.code_page);
    filter_->begin_rebuild(settings);
  }

  void build(ProgressEvent& progress) {
    progress.restart();
    for (;;) {
      skeleton_.next(record_);
      if (record_.kind == SkeletonRecord::Kind::kBytes) {
        write_skeleton(record_.bytes);
        progress.report(skeleton_.percent());
        continue;
      }
      flush_tail();
      out_.clear();
      switch (record_.kind) {
        case SkeletonRecord::Kind::kComputed:
          filter_->write_computed(record_.number, record_.bytes, out_);
          write({record_.bytes, out_});
          break;
        case SkeletonRecord::Kind::kSegment:
          write_segment();
          write({original_, out_, &record_.hole, !record_.nested.empty()});
          break;
        case SkeletonRecord::Kind::kNestedSegment:
          write_segment();
          waiting_[record_.number] = out_;
          break;
        default:
          if (record_.number != count_) throw_refused(u"The skeleton is damaged");
          if (OpenTagSegment extra; open_tag_.next(extra))
            throw_refused(u"The translation holds more segments than the skeleton");
          filter_->end_rebuild();
          target_.commit();
          return;
      }
      progress.report(skeleton_.percent());
    }
  }

 private:
  void write(const WrittenPart& part) {
    filter_->written(part);
    target_.write(part.written);
  }

  // A record may end inside a character, which must be recoded as a whole.
  void write_skeleton(std::string_view bytes) {
    if (!recodes_) return write({bytes, bytes});
    tail_ += bytes;
    const std::string_view whole = std::string_view(tail_).substr(0, tail_.size() - coding_->incomplete_tail(tail_));
    out_.clear();
    filter_->recode(whole, out_);
    write({whole, out_});
    tail_.erase(0, whole.size());
  }

  void flush_tail() {
    if (tail_.empty()) return;
    out_.clear();
    filter_->recode(tail_, out_);
    write({tail_, out_});
    tail_.clear();
  }

  void write_segment() {
    Hole& hole = record_.hole;
    ++count_;
    if (!open_tag_.next(segment_) || segment_.number != hole.number)
      throw_refused(u"The translation of " + place_of(hole) + u" is missing");
    filter_->check(hole, segment_.text);
    const bool keeps_bytes = segment_.is_unchanged && !filter_->is_recoded(hole);
    original_ = hole.original;
    complete_hole();
    std::string* bytes = &out_;
    if (colours_) bytes = &plain_;
    bytes->clear();
    if (keeps_bytes) {
      *bytes += hole.original;
    } else {
      refuse_codes(hole, segment_.text);
      filter_->write_segment(hole, segment_.text, *bytes);
    }
    if (!colours_) return;
    if (const auto colour = colour_of(segment_.status))
      filter_->highlight(hole, plain_, *colour, out_);
    else
      out_ += plain_;
  }

  // Puts the nested segments into the codes that hold them, and those codes into the target's code page.
  void complete_hole() {
    Hole& hole = record_.hole;
    if (!recodes_ && record_.nested.empty()) return;
    const std::string original = std::move(hole.original);
    std::string& result = hole.original;
    result.clear();
    std::size_t next_nested = 0;
    const auto append = [&](std::size_t begin, std::size_t end, bool recode) {
      const auto piece = [&](std::size_t from, std::size_t to) {
        const std::string_view bytes = std::string_view(original).substr(from, to - from);
        if (recode && !is_ascii(bytes))
          filter_->recode(bytes, result);
        else
          result += bytes;
      };
      for (; next_nested < record_.nested.size() && record_.nested[next_nested].begin < end; ++next_nested) {
        const NestedPlace& place = record_.nested[next_nested];
        const auto found = waiting_.find(place.segment);
        if (place.begin < begin || place.end > end || found == waiting_.end())
          throw_refused(u"The skeleton is damaged at " + place_of(hole));
        piece(begin, place.begin);
        result += found->second;
        waiting_.erase(found);
        begin = place.end;
      }
      piece(begin, end);
    };
    std::size_t at = 0;
    for (Hole::Code& code : hole.codes) {
      if (code.begin < at) throw_refused(u"The skeleton is damaged at " + place_of(hole));
      append(at, code.begin, false);
      at = code.end;
      const std::size_t begin = result.size();
      append(code.begin, code.end, recodes_);
      code.begin = begin;
      code.end = result.size();
    }
    append(at, original.size(), false);
  }

  std::optional<std::uint32_t> colour_of(TranslationStatus status) const {
    switch (status) {
      case TranslationStatus::kUntranslated:
        return (*colours_)[0];
      case TranslationStatus::kFuzzy:
        return (*colours_)[1];
      case TranslationStatus::kExact:
        return (*colours_)[2];
      case TranslationStatus::kTranslated:
      case TranslationStatus::kApproved:
        return (*colours_)[3];
      default:
        return std::nullopt;  // a text that needs no translation is not highlighted
    }
  }

  SkeletonReader skeleton_;
  OpenTagReader open_tag_;
  PendingFile target_;
  std::unique_ptr<Filter> filter_;
  std::unique_ptr<TextCoding> coding_;
  std::optional<SegmentColours> colours_;
  bool recodes_ = false;
  SkeletonRecord record_;
  OpenTagSegment segment_;
  std::uint32_t count_ = 0;
  std::unordered_map<std::uint32_t, std::string> waiting_;  // nested segments until their own segment comes
  std::string original_;                                    // the bytes of the last segment, as the document has them
  std::string out_;
  std::string plain_;
  std::string tail_;
};

}  // namespace

void create_target(const TargetRequest& request, ProgressEvent& progress) { TargetBuilder(request).build(progress); }

}  // namespace kavo
