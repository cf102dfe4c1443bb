#include "suite/filters/mif/mif_pages.h"

#include <algorithm>
#include <charconv>
#include <iterator>

#include "platform/failure.h"
#include "platform/unicode.h"

namespace kavo::mif {
namespace {

constexpr std::string_view kKindNames[] = {"body", "master", "reference", "hidden"};

// More containers, or more objects of a kind, are not noted, so that no document can fill the memory with them. Texts
// in the rest count as part of the body.
constexpr std::size_t kMostPlaces = 1 << 20;

// No number and no kind of page is longer.
constexpr std::size_t kLongestWord = 32;  // bytes

// A table in a table in a frame ...: no document nests them deeper, and objects that contain each other come to an end.
constexpr int kDeepest = 32;

}  // namespace

PageKinds::PageKinds(std::span<const std::string> words) {
  for (const std::string& word : words) {
    const auto* const found = std::find(std::begin(kKindNames), std::end(kKindNames), word);
    if (found == std::end(kKindNames))
      throw failure(FailureNumber::kInvalidCall,
                    u"\"" + to_utf16(word) + u"\" is not a kind of page; write body, master, reference or hidden");
    bits_ |= 1u << (found - std::begin(kKindNames));
  }
}

std::string_view name_of(PageKind kind) { return kKindNames[static_cast<std::size_t>(kind)]; }

void MifOutline::take(const MifToken& token) {
  if (token.kind == MifTokenKind::kClose && kind_ == Kind::kFrame && depth_ != 0) --depth_;
  if (token.kind != MifTokenKind::kOpen) return;
  const std::string_view name = token.name();
  if (name == "AFrames") {
    is_among_frames_ = true;
    kind_ = Kind::kNone;
  } else if (name == "Page") {
    begin(Kind::kPage);
  } else if (name == "Tbl") {
    begin(Kind::kTable);
  } else if (name == "TextFlow") {
    begin(Kind::kFlow);
  } else if (is_among_frames_ && name == "Frame" && (kind_ != Kind::kFrame || depth_ == 0)) {
    begin(Kind::kFrame);
  }
  if (kind_ == Kind::kFrame) ++depth_;
}

void MifOutline::begin(Kind kind) {
  kind_ = kind;
  ++number_;
  depth_ = 0;
  is_among_frames_ = kind == Kind::kFrame;
}

MifPageSurvey::MifPageSurvey(BlockReader& document, ProgressEvent& progress) {
  const std::uint64_t begin = document.position();
  MifTokenScanner scanner;
  MifToken token;
  for (;;) {
    const std::string_view window = document.window();
    if (!window.empty() && scanner.next(window, document.exhausted(), token)) {
      take(token);
      document.consume(token.bytes.size());
      continue;
    }
    if (!document.more()) break;
    progress.report(static_cast<std::int16_t>(document.percent() / 2));
  }
  document.seek(begin);
  resolve();
}

void MifPageSurvey::take(const MifToken& token) {
  switch (token.kind) {
    case MifTokenKind::kOpen:
      outline_.take(token);
      open(token.name());
      return;
    case MifTokenKind::kClose:
      outline_.take(token);
      if (value_ != Value::kNone) note(word_);
      value_ = Value::kNone;
      return;
    case MifTokenKind::kRest:
      if (value_ == Value::kNone || word_.size() > kLongestWord) return;
      for (const char c : token.bytes)
        if (c > ' ') word_ += c;
      return;
    case MifTokenKind::kString:
      return;
  }
}

void MifPageSurvey::open(std::string_view name) {
  using Kind = MifOutline::Kind;
  if (outline_.number() > containers_.size() && containers_.size() < kMostPlaces) {
    is_text_frame_ = false;
    containers_.push_back({outline_.kind()});
  }
  value_ = Value::kNone;
  word_.clear();
  const Kind kind = outline_.kind();
  if (kind == Kind::kNone || outline_.number() != containers_.size()) return;
  if (name == "TextRect")
    is_text_frame_ = true;
  else if (name == "ID" && (is_text_frame_ || kind == Kind::kFrame))
    value_ = Value::kId;
  else if (name == "PageType" && kind == Kind::kPage)
    value_ = Value::kPageType;
  else if (name == "TblID" && kind == Kind::kTable)
    value_ = Value::kTableId;
  else if (name == "TextRectID" && kind == Kind::kFlow)
    value_ = Value::kFlowFrame;
  else if (name == "ATbl")
    value_ = Value::kTableAnchor;
  else if (name == "AFrame")
    value_ = Value::kFrameAnchor;
}

void MifPageSurvey::note(std::string_view word) {
  Container& container = containers_.back();
  if (value_ == Value::kPageType) {
    if (word.ends_with("MasterPage")) container.page = PageKind::kMaster;
    if (word == "ReferencePage") container.page = PageKind::kReference;
    if (word == "HiddenPage") container.page = PageKind::kHidden;
    return;
  }
  std::uint32_t id = 0;
  std::from_chars(word.data(), word.data() + word.size(), id);
  if (id == 0) return;
  const auto add = [&](Places& places) {
    if (places.size() < kMostPlaces) places.emplace_back(id, static_cast<std::uint32_t>(containers_.size()));
  };
  if (value_ == Value::kTableAnchor) {
    add(table_anchors_);
  } else if (value_ == Value::kFrameAnchor) {
    add(frame_anchors_);
  } else if (value_ == Value::kId && is_text_frame_) {
    add(text_frames_);
    is_text_frame_ = false;
  } else if (container.id == 0) {
    container.id = id;
  }
}

std::uint32_t MifPageSurvey::container_of(const Places& places, std::uint32_t id) {
  const auto found = std::lower_bound(places.begin(), places.end(), std::pair(id, std::uint32_t{0}));
  return found != places.end() && found->first == id ? found->second : 0;
}

// Follows each container to the page that it stands on.
void MifPageSurvey::resolve() {
  for (Places* const places : {&text_frames_, &table_anchors_, &frame_anchors_}) std::ranges::sort(*places);
  kinds_.assign(containers_.size() + 1, PageKind::kBody);
  for (std::size_t i = 1; i < kinds_.size(); ++i) {
    std::uint32_t at = static_cast<std::uint32_t>(i);
    for (int step = 0; step < kDeepest && at != 0; ++step) {
      const Container& container = containers_[at - 1];
      if (container.kind == MifOutline::Kind::kPage) {
        kinds_[i] = container.page;
        break;
      }
      const Places& places = container.kind == MifOutline::Kind::kTable  ? table_anchors_
                             : container.kind == MifOutline::Kind::kFlow ? text_frames_
                                                                         : frame_anchors_;
      at = container_of(places, container.id);
    }
  }
  containers_ = {};
  for (Places* const places : {&text_frames_, &table_anchors_, &frame_anchors_}) *places = {};
}

}  // namespace kavo::mif
