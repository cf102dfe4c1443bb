#include "formats/mif/character_set.h"

namespace kavo::mif {
namespace {

constexpr CodedCharacter kCharacterSet[] = {
#include "mif_character_set.inc"
};

}  // namespace

std::span<const CodedCharacter> character_set() { return kCharacterSet; }

}  // namespace kavo::mif
