#include "formats/mif/character_set.h"

namespace kavo::maker {
namespace {

constexpr CodedCharacter kCharacterSet[] = {
#include "mif_character_set.inc"
};

}  // namespace

std::span<const CodedCharacter> character_set() { return kCharacterSet; }

}  // namespace kavo::maker
