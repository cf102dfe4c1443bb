#include "formats/html/tag_names.h"

namespace kavo {
namespace {

struct Row {
  Tag tag;
  std::string_view name;
  std::uint16_t traits;
};

constexpr std::uint16_t kBlock = kSpecial | kBlockEnd;
constexpr std::uint16_t kMarked = kSpecial | kScopeBarrier;
constexpr std::uint16_t kHeadline = kSpecial | kLeavesForeign | kHeading;
constexpr std::uint16_t kGroup = kSpecial | kTablePart | kTableChild | kRowGroup;

// In the order of Tag.
constexpr Row kRows[] = {
    {Tag::kOther, "", 0},
    {Tag::kA, "a", kFormatting},
    {Tag::kAddress, "address", kBlock},
    {Tag::kAnnotationXml, "annotation-xml", 0},
    {Tag::kApplet, "applet", kMarked},
    {Tag::kArea, "area", kSpecial | kVoid},
    {Tag::kArticle, "article", kBlock},
    {Tag::kAside, "aside", kBlock},
    {Tag::kB, "b", kFormatting | kLeavesForeign},
    {Tag::kBase, "base", kSpecial | kVoid | kHeadContent},
    {Tag::kBasefont, "basefont", kSpecial | kVoid | kHeadContent},
    {Tag::kBgsound, "bgsound", kSpecial | kVoid | kHeadContent},
    {Tag::kBig, "big", kFormatting | kLeavesForeign},
    {Tag::kBlockquote, "blockquote", kBlock | kLeavesForeign},
    {Tag::kBody, "body", kSpecial | kLeavesForeign},
    {Tag::kBr, "br", kSpecial | kVoid | kLeavesForeign},
    {Tag::kButton, "button", kBlock},
    {Tag::kCaption, "caption", kMarked | kTableChild},
    {Tag::kCenter, "center", kBlock | kLeavesForeign},
    {Tag::kCode, "code", kFormatting | kLeavesForeign},
    {Tag::kCol, "col", kSpecial | kVoid | kTableChild},
    {Tag::kColgroup, "colgroup", kSpecial | kTableChild},
    {Tag::kDd, "dd", kSpecial | kImpliedEnd | kLeavesForeign},
    {Tag::kDesc, "desc", 0},
    {Tag::kDetails, "details", kBlock},
    {Tag::kDialog, "dialog", kBlockEnd},
    {Tag::kDir, "dir", kBlock},
    {Tag::kDiv, "div", kBlock | kLeavesForeign},
    {Tag::kDl, "dl", kBlock | kLeavesForeign},
    {Tag::kDt, "dt", kSpecial | kImpliedEnd | kLeavesForeign},
    {Tag::kEm, "em", kFormatting | kLeavesForeign},
    {Tag::kEmbed, "embed", kSpecial | kVoid | kLeavesForeign},
    {Tag::kFieldset, "fieldset", kBlock},
    {Tag::kFigcaption, "figcaption", kBlock},
    {Tag::kFigure, "figure", kBlock},
    {Tag::kFont, "font", kFormatting},
    {Tag::kFooter, "footer", kBlock},
    {Tag::kForeignObject, "foreignobject", 0},
    {Tag::kForm, "form", kSpecial},
    {Tag::kFrame, "frame", kSpecial | kVoid},
    {Tag::kFrameset, "frameset", kSpecial},
    {Tag::kH1, "h1", kHeadline},
    {Tag::kH2, "h2", kHeadline},
    {Tag::kH3, "h3", kHeadline},
    {Tag::kH4, "h4", kHeadline},
    {Tag::kH5, "h5", kHeadline},
    {Tag::kH6, "h6", kHeadline},
    {Tag::kHead, "head", kSpecial | kLeavesForeign},
    {Tag::kHeader, "header", kBlock},
    {Tag::kHgroup, "hgroup", kBlock},
    {Tag::kHr, "hr", kSpecial | kVoid | kLeavesForeign},
    {Tag::kHtml, "html", kMarked},
    {Tag::kI, "i", kFormatting | kLeavesForeign},
    {Tag::kIframe, "iframe", kSpecial},
    {Tag::kImage, "image", 0},
    {Tag::kImg, "img", kSpecial | kVoid | kLeavesForeign},
    {Tag::kInput, "input", kSpecial | kVoid},
    {Tag::kKeygen, "keygen", kVoid},
    {Tag::kLi, "li", kSpecial | kImpliedEnd | kLeavesForeign},
    {Tag::kLink, "link", kSpecial | kVoid | kHeadContent},
    {Tag::kListing, "listing", kBlock | kLeavesForeign},
    {Tag::kMain, "main", kBlock},
    {Tag::kMalignmark, "malignmark", 0},
    {Tag::kMarquee, "marquee", kMarked},
    {Tag::kMath, "math", 0},
    {Tag::kMenu, "menu", kBlock | kLeavesForeign},
    {Tag::kMeta, "meta", kSpecial | kVoid | kLeavesForeign | kHeadContent},
    {Tag::kMglyph, "mglyph", 0},
    {Tag::kMi, "mi", 0},
    {Tag::kMn, "mn", 0},
    {Tag::kMo, "mo", 0},
    {Tag::kMs, "ms", 0},
    {Tag::kMtext, "mtext", 0},
    {Tag::kNav, "nav", kBlock},
    {Tag::kNobr, "nobr", kFormatting | kLeavesForeign},
    {Tag::kNoembed, "noembed", kSpecial},
    {Tag::kNoframes, "noframes", kSpecial | kHeadContent},
    {Tag::kNoscript, "noscript", kSpecial},
    {Tag::kObject, "object", kMarked},
    {Tag::kOl, "ol", kBlock | kLeavesForeign},
    {Tag::kOptgroup, "optgroup", kImpliedEnd},
    {Tag::kOption, "option", kImpliedEnd},
    {Tag::kP, "p", kSpecial | kImpliedEnd | kLeavesForeign},
    {Tag::kParam, "param", kSpecial | kVoid},
    {Tag::kPlaintext, "plaintext", kSpecial},
    {Tag::kPre, "pre", kBlock | kLeavesForeign},
    {Tag::kRb, "rb", kImpliedEnd},
    {Tag::kRp, "rp", kImpliedEnd},
    {Tag::kRt, "rt", kImpliedEnd},
    {Tag::kRtc, "rtc", kImpliedEnd},
    {Tag::kRuby, "ruby", kLeavesForeign},
    {Tag::kS, "s", kFormatting | kLeavesForeign},
    {Tag::kScript, "script", kSpecial | kHeadContent},
    {Tag::kSearch, "search", kBlock},
    {Tag::kSection, "section", kBlock},
    {Tag::kSelect, "select", kSpecial},
    {Tag::kSmall, "small", kFormatting | kLeavesForeign},
    {Tag::kSource, "source", kSpecial | kVoid},
    {Tag::kSpan, "span", kLeavesForeign},
    {Tag::kStrike, "strike", kFormatting | kLeavesForeign},
    {Tag::kStrong, "strong", kFormatting | kLeavesForeign},
    {Tag::kStyle, "style", kSpecial | kHeadContent},
    {Tag::kSub, "sub", kLeavesForeign},
    {Tag::kSummary, "summary", kBlock},
    {Tag::kSup, "sup", kLeavesForeign},
    {Tag::kSvg, "svg", 0},
    {Tag::kTable, "table", kMarked | kTablePart | kLeavesForeign},
    {Tag::kTbody, "tbody", kGroup},
    {Tag::kTd, "td", kMarked | kTableChild},
    {Tag::kTemplate, "template", kMarked | kHeadContent},
    {Tag::kTextarea, "textarea", kSpecial},
    {Tag::kTfoot, "tfoot", kGroup},
    {Tag::kTh, "th", kMarked | kTableChild},
    {Tag::kThead, "thead", kGroup},
    {Tag::kTitle, "title", kSpecial | kHeadContent},
    {Tag::kTr, "tr", kSpecial | kTablePart | kTableChild},
    {Tag::kTrack, "track", kSpecial | kVoid},
    {Tag::kTt, "tt", kFormatting | kLeavesForeign},
    {Tag::kU, "u", kFormatting | kLeavesForeign},
    {Tag::kUl, "ul", kBlock | kLeavesForeign},
    {Tag::kVar, "var", kLeavesForeign},
    {Tag::kWbr, "wbr", kSpecial | kVoid},
    {Tag::kXmp, "xmp", kSpecial},
};

constexpr bool in_order() {
  for (std::size_t i = 0; i < std::size(kRows); ++i)
    if (static_cast<std::size_t>(kRows[i].tag) != i) return false;
  return std::size(kRows) == static_cast<std::size_t>(Tag::kCount);
}
static_assert(in_order());

constexpr std::size_t kSlots = 512;
constexpr std::size_t slot_of(std::uint64_t hash) { return static_cast<std::size_t>((hash ^ (hash >> 23)) % kSlots); }

struct Slot {
  std::uint64_t hash = 0;
  Tag tag = Tag::kOther;
};

// Open addressing with empty slots of tag kOther.
constexpr auto kIndex = [] {
  std::array<Slot, kSlots> slots{};
  for (std::size_t i = 1; i < std::size(kRows); ++i) {
    const std::uint64_t hash = name_hash(kRows[i].name);
    std::size_t slot = slot_of(hash);
    while (slots[slot].tag != Tag::kOther) slot = (slot + 1) % kSlots;
    slots[slot] = {hash, kRows[i].tag};
  }
  return slots;
}();

}  // namespace

constexpr std::array<std::uint16_t, static_cast<std::size_t>(Tag::kCount)> kTagTraits = [] {
  std::array<std::uint16_t, static_cast<std::size_t>(Tag::kCount)> traits{};
  for (std::size_t i = 0; i < traits.size(); ++i) traits[i] = kRows[i].traits;
  return traits;
}();

std::string_view name_of(Tag tag) noexcept { return kRows[static_cast<std::size_t>(tag)].name; }

Tag tag_of(std::uint64_t hash) noexcept {
  for (std::size_t slot = slot_of(hash);; slot = (slot + 1) % kSlots)
    if (kIndex[slot].tag == Tag::kOther || kIndex[slot].hash == hash) return kIndex[slot].tag;
}

}  // namespace kavo
