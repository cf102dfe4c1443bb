#include "formats/script/page_scripts.h"

#include <gtest/gtest.h>

#include <string>

namespace kavo::script {
namespace {

// The pieces of a block in turn, each as "language[code]", with "+" in front of one that goes on.
std::string pieces_of(std::string_view block) {
  PageScripts scripts(Language::kVbScript);
  std::vector<Piece> pieces;
  scripts.add_block(block, 0, block.size(), pieces);
  const char* const names[] = {"?", "vb", "js", "java", "php"};
  std::string shown;
  for (const Piece& piece : pieces) {
    shown += piece.goes_on ? "+" : "";
    shown += names[static_cast<std::size_t>(piece.language)];
    shown += "[" + std::string(block.substr(piece.begin, piece.end - piece.begin)) + "]";
  }
  return shown;
}

TEST(PageScripts, PiecesOfABlock) {
  const struct {
    const char* name;
    std::string_view block;
    std::string_view pieces;
  } cases[] = {
      {"statements", "<% a %>", "vb[ a ]"},
      {"a value", "<%= a %>", "vb[ a ]"},
      {"a comment", "<%-- a --%>", ""},
      {"PHP", "<?php a ?>", "php[ a ]"},
      {"an element", "<script>a</script>", "js[a]"},
      {"in capitals", "<SCRIPT LANGUAGE=VBScript>a</SCRIPT>", "vb[a]"},
      {"of Java", "<java>a</java>", "java[a]"},
      {"a tag that is not closed", "<script a", ""},
      {"no end tag", "<script>a", "js[a]"},
      {"blanks in the end tag", "<script>a</script >", "js[a]"},
      {"another end tag", "<script>'</b>'</scripts></script>", "js['</b>'</scripts>]"},
      {"an end tag in quotes", "<script>'</script>' <b </script>", "js[']"},
      {"a value in it", "<script>a<%= b %>c</script>", "js[a]vb[ b ]+js[c]"},
      {"at its end", "<script>a<%= b %></script>", "js[a]vb[ b ]"},
      {"two side by side", "<script><%= b %><%= c %>d</script>", "vb[ b ]+js[]vb[ c ]+js[d]"},
      {"an end tag in a value", "<script>a<% b = \"</script>\" %>c</script>", "js[a]vb[ b = \"</script>\" ]+js[c]"},
      {"a tag in a value at the end", "<script>a<% b = \"</p> <c\" %>", "js[a]vb[ b = \"</p> <c\" ]"},
      {"a server's element", "<script runat=server>a <% b %></script>", "vb[a <% b %>]"},
      {"data", "<script type=\"application/json\">{\"a\": 1}</script>", ""},
      {"another element", "<p>a</p>", ""},
      {"half a comment", "<", ""},
  };
  for (const auto& row : cases) EXPECT_EQ(pieces_of(row.block), row.pieces) << row.name;
}

}  // namespace
}  // namespace kavo::script
