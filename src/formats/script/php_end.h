// Finds out where PHP really ends.
//
// By contract, script protection ends a block at the first "?>", or where another block seems to begin. PHP itself
// continues past both inside a literal or a comment between "/*" and "*/": what follows is still code, although it
// looks like page text.
#pragma once

#include <cstddef>
#include <string_view>

namespace kavo::script {

// The place after the "?>" that ends `code`, which begins as PHP. npos when the PHP continues to the last byte.
std::size_t php_end(std::string_view code);

}  // namespace kavo::script
