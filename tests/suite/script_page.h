// The scripts of an unchanged page, for tests of what is found in them.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "suite/filters/script/script_units.h"

namespace kavo::test {

inline std::size_t find_word(std::string_view text, std::string_view lower_case, std::size_t from) {
  for (std::size_t at = text.find('<', from); at != std::string_view::npos; at = text.find('<', at + 1))
    if (script::equal_word(text.substr(at, lower_case.size()), lower_case)) return at;
  return text.size();
}

// The units of a page's scripts: of its server blocks and <script> elements, of all of it for "all_php".
inline std::vector<script::Unit> units_of_page(std::string_view page, std::string_view extension,
                                               const TextCoding& coding, bool all_php = false,
                                               const script::ScriptNames& names = {}) {
  using namespace script;
  PageScripts scripts(language_of_extension(extension));
  std::vector<std::vector<Piece>> blocks;
  if (all_php) blocks.push_back({Piece{.language = Language::kPhp, .begin = 0, .end = page.size()}});
  for (std::size_t at = 0; !all_php && at < page.size();) {
    const std::size_t server = find_server_block(page, at);
    const std::size_t element = find_word(page, "<script", at);
    const std::size_t begin = std::min(server, element);
    if (begin >= page.size()) break;
    const std::size_t end = server < element ? server_block_end(page, server)
                                             : std::min(find_word(page, "</script>", element) + 9, page.size());
    blocks.emplace_back();
    scripts.add_block(page, begin, end, blocks.back());
    at = end;
  }
  const DestinationRules rules(names);
  ScriptUnits finder(page, coding, rules);
  for (const auto& block : blocks) finder.follow(block);
  finder.turn();
  std::vector<Unit> units;
  for (const auto& block : blocks) finder.units(block, units);
  return units;
}

}  // namespace kavo::test
