// Where PHP really ends.
//
// By contract script protection ends a block at the first "?>", or where another block seems to begin. PHP itself goes
// on behind both in a literal, or in a comment between "/*" and "*/": what follows is still its code, though it looks
// like page.
#pragma once

#include <cstddef>
#include <string_view>

#include "formats/script/page_scripts.h"

namespace kavo::script {

// The place behind the "?>" that ends `code`, which begins in PHP; npos when the code goes on to its last byte.
std::size_t php_end(std::string_view code);
// Whether PHP goes on behind the end of `block`, whose last piece is `piece`.
bool goes_on_behind(std::string_view block, const Piece& piece);

}  // namespace kavo::script
