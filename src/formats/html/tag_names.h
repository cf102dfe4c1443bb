// The element names that the HTML standard's tree construction treats in a way of their own, one row per name.
//
// A name is known by the 64-bit hash of its lower-case bytes, so that scanning a tag allocates nothing. Names that no
// rule mentions are told apart by that hash alone.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/fnv_hash.h"

namespace kavo {

enum class Tag : std::uint8_t {
  kOther,  // a name of no row below
  kA,
  kAddress,
  kAnnotationXml,
  kApplet,
  kArea,
  kArticle,
  kAside,
  kB,
  kBase,
  kBasefont,
  kBgsound,
  kBig,
  kBlockquote,
  kBody,
  kBr,
  kButton,
  kCaption,
  kCenter,
  kCode,
  kCol,
  kColgroup,
  kDd,
  kDesc,
  kDetails,
  kDialog,
  kDir,
  kDiv,
  kDl,
  kDt,
  kEm,
  kEmbed,
  kFieldset,
  kFigcaption,
  kFigure,
  kFont,
  kFooter,
  kForeignObject,
  kForm,
  kFrame,
  kFrameset,
  kH1,
  kH2,
  kH3,
  kH4,
  kH5,
  kH6,
  kHead,
  kHeader,
  kHgroup,
  kHr,
  kHtml,
  kI,
  kIframe,
  kImage,
  kImg,
  kInput,
  kKeygen,
  kLi,
  kLink,
  kListing,
  kMain,
  kMalignmark,
  kMarquee,
  kMath,
  kMenu,
  kMeta,
  kMglyph,
  kMi,
  kMn,
  kMo,
  kMs,
  kMtext,
  kNav,
  kNobr,
  kNoembed,
  kNoframes,
  kNoscript,
  kObject,
  kOl,
  kOptgroup,
  kOption,
  kP,
  kParam,
  kPlaintext,
  kPre,
  kRb,
  kRp,
  kRt,
  kRtc,
  kRuby,
  kS,
  kScript,
  kSearch,
  kSection,
  kSelect,
  kSmall,
  kSource,
  kSpan,
  kStrike,
  kStrong,
  kStyle,
  kSub,
  kSummary,
  kSup,
  kSvg,
  kTable,
  kTbody,
  kTd,
  kTemplate,
  kTextarea,
  kTfoot,
  kTh,
  kThead,
  kTitle,
  kTr,
  kTrack,
  kTt,
  kU,
  kUl,
  kVar,
  kWbr,
  kXmp,
  kCount
};

// What the standard says about elements of a name (in the HTML namespace).
enum TagTrait : std::uint16_t {
  kSpecial = 1,         // of the category "special"
  kFormatting = 2,      // of the category "formatting": reopened after the block that closed it
  kImpliedEnd = 4,      // "generate implied end tags" closes it
  kScopeBarrier = 8,    // ends every search "in scope"
  kTablePart = 16,      // table, tbody, tfoot, thead, tr: text directly inside is foster parented
  kBlockEnd = 32,       // its end tag closes the element when it is in scope, with all that is inside
  kLeavesForeign = 64,  // its start tag ends SVG and MathML content
  kVoid = 128,          // never has content
  kHeading = 256,       // h1 to h6: the end tag of one closes another
  kHeadContent = 512,   // belongs into the head wherever it stands
  kTableChild = 1024,   // caption, col, colgroup, tbody, tfoot, thead, tr, td, th: has a place in tables only
  kRowGroup = 2048,     // tbody, tfoot, thead
};

extern const std::array<std::uint16_t, static_cast<std::size_t>(Tag::kCount)> kTagTraits;
inline std::uint16_t traits_of(Tag tag) noexcept { return kTagTraits[static_cast<std::size_t>(tag)]; }
// Any of `traits`.
inline bool has_trait(Tag tag, int traits) noexcept { return (traits_of(tag) & traits) != 0; }
// Lower case; empty for kOther.
std::string_view name_of(Tag tag) noexcept;

constexpr std::uint64_t kNameHashSeed = kFnvSeed;
constexpr std::uint64_t add_to_name_hash(std::uint64_t hash, char lower) noexcept {
  return fnv_add(hash, static_cast<unsigned char>(lower));
}
constexpr std::uint64_t name_hash(std::string_view lower) noexcept { return fnv_hash(lower); }
// kOther for a name that is in no row.
Tag tag_of(std::uint64_t name_hash) noexcept;

}  // namespace kavo
