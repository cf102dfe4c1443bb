#include "formats/script/control_flow.h"

#include <gtest/gtest.h>

namespace kavo::script {
namespace {

bool divides(std::string_view block, Language server) {
  PageScripts scripts(server);
  std::vector<Piece> pieces;
  scripts.add_block(block, 0, block.size(), pieces);
  return !pieces.empty() && flow_of(block, pieces.front()).divides();
}

struct Case {
  const char* block;
  bool divides;
};

TEST(ControlFlow, OfVbScript) {
  const Case cases[] = {
      {"<% If n > 0 Then %>", true},
      {"<%IF a THEN%>", true},
      {"<% x = 1\r\nIf n > 0 Then ' more\r\n%>", true},
      {"<% If n > 0 _\r\n Then %>", true},
      {"<% If n > 0 Then x = 1 %>", false},
      {"<% If n Then x = 1 Else y = 2 %>", false},
      {"<% If n Then x = 1 : y = 2 %>", false},
      {"<% If n > 0 Then\nx = 1\nEnd If %>", false},
      {"<% Else %>", true},
      {"<% ElseIf b Then %>", true},
      {"<% End If %>", true},
      {"<% x = 1 : End If %>", true},
      {"<% End If : If b Then %>", true},
      {"<% For i = 1 To 3 %>", true},
      {"<% For Each a In b : n = n + 1 : Next %>", false},
      {"<% Next %>", true},
      {"<% rs.MoveNext\nLoop %>", true},
      {"<% rs.MoveNext %>", false},
      {"<% Do While Not rs.EOF %>", true},
      {"<% Wend %>", true},
      {"<% Select Case a\nCase 1 %>", true},
      {"<% Case Else %>", true},
      {"<% Sub Show() %>", true},
      {"<% Private Sub Show() %>", true},
      {"<% Exit Sub %>", false},
      {"<% Response.End %>", false},
      {"<% ' If a Then %>", false},
      {"<% s = \"If a Then\" %>", false},
      {"<%= If %>", false},
      {"<%= n %>", false},
      {"<%@ language=\"VBScript\" %>", false},
      {"<%-- If a Then --%>", false},
      {"<% %>", false},
      {"<% If", false},
      {"<%", false},
  };
  for (const Case& c : cases) EXPECT_EQ(divides(c.block, Language::kVbScript), c.divides) << c.block;
}

TEST(ControlFlow, OfLanguagesWithBraces) {
  const Case cases[] = {
      {"<% if (a) { %>", true},
      {"<% } else { %>", true},
      {"<% } %>", true},
      {"<% for (int i = 0; i < n; i++) { %>", true},
      {"<% if (a) { out.print(b); } %>", false},
      {"<% int[] a = {1, 2}; %>", false},
      {"<% x = \"{\"; %>", false},
      {"<% // {\n x = 1; %>", false},
      {"<% if (a) %>", true},
      {"<% else %>", true},
      {"<% x = 1; if (a) %>", true},
      {"<% if (a) x = 1; %>", false},
      {"<% case 1: %>", true},
      {"<% break; case 2: %>", true},
      {"<% switch (a) { case 1: b = 1; } %>", false},
      {"<%! void f() { %>", false},
      {"<%= a ? \"{\" : \"b\" %>", false},
      {"<% out.print(a); %>", false},
      {"<% { %>", true},
  };
  for (const Language language : {Language::kJava, Language::kJavaScript})
    for (const Case& c : cases) EXPECT_EQ(divides(c.block, language), c.divides) << c.block;
}

TEST(ControlFlow, OfPhp) {
  const Case cases[] = {
      {"<?php if ($a): ?>", true},
      {"<?php else: ?>", true},
      {"<?php endif; ?>", true},
      {"<?php endif ?>", true},
      {"<? foreach ($a as $b) { ?>", true},
      {"<?php foreach ($a as $b): ?>", true},
      {"<?php } ?>", true},
      {"<?php echo $a; ?>", false},
      {"<?php echo $a ?>", false},
      {"<?= $a ?>", false},
      {"<?php if ($a) echo 1; ?>", false},
      {"<?php $a = \"{$b}\"; ?>", false},
      {"<?php", false},
  };
  for (const Case& c : cases) EXPECT_EQ(divides(c.block, Language::kUnknown), c.divides) << c.block;
}

TEST(ControlFlow, AnUnreadLanguageIsUnknown) { EXPECT_FALSE(divides("<% if ($a) { %>", Language::kUnknown)); }

TEST(ControlFlow, ClientScriptsDivideNothing) {
  EXPECT_FALSE(divides("<script>if (a) {</script>", Language::kVbScript));
}

TEST(ControlFlow, CountsConstructsThatEndAndBegin) {
  const struct {
    const char* block;
    Language server;
    std::size_t closes;
    bool parts;
    std::size_t opens;
  } cases[] = {
      {"<% If a Then\nIf b Then %>", Language::kVbScript, 0, false, 2},
      {"<% If a Then\nFor Each b In c %>", Language::kVbScript, 0, false, 2},
      {"<% ElseIf b Then %>", Language::kVbScript, 0, true, 0},
      {"<% End If\nNext %>", Language::kVbScript, 2, false, 0},
      {"<% End If\nIf b Then %>", Language::kVbScript, 1, false, 1},
      {"<% } else { %>", Language::kJava, 1, false, 1},
      {"<% }} for (;;) { %>", Language::kJava, 2, false, 1},
      {"<?php if ($a): ?>", Language::kPhp, 0, false, 1},
      {"<?php else: ?>", Language::kPhp, 0, true, 0},
      {"<?php elseif ($b): ?>", Language::kPhp, 0, true, 0},
      {"<?php endforeach; endif ?>", Language::kPhp, 2, false, 0},
      {"<?php switch ($a): case 1: ?>", Language::kPhp, 0, false, 1},
  };
  for (const auto& c : cases) {
    PageScripts scripts(c.server);
    std::vector<Piece> pieces;
    const std::string_view block = c.block;
    scripts.add_block(block, 0, block.size(), pieces);
    ASSERT_EQ(pieces.size(), 1u) << c.block;
    const Flow flow = flow_of(block, pieces.front());
    EXPECT_EQ(flow.closes, c.closes) << c.block;
    EXPECT_EQ(flow.parts, c.parts) << c.block;
    EXPECT_EQ(flow.opens, c.opens) << c.block;
  }
}

// The "?>" of a block may stand in a literal or a comment; then the PHP goes on behind the block.
TEST(ControlFlow, TellsWherePhpGoesOn) {
  const struct {
    const char* block;
    bool goes_on;
    bool divides;
  } cases[] = {
      {"<?php a(); ?>", false, false},
      {"<?php a('?>", true, false},
      {"<?php if ($a) { b('?>", true, true},
      {"<?= a('?>", true, false},
      {"<?= $a ?>", false, false},
      {"<?php /* ?>", true, false},
      {"<?php // it's ?>", false, false},
      {"<?php a(<<<X\n?>", true, false},
      {"<?php a();", true, false},
      {"<?php", true, false},
      {"<script><?php a('?></script>", false, false},
      {"<% a('%>", false, false},
  };
  for (const auto& c : cases) {
    PageScripts scripts(Language::kJava);
    std::vector<Piece> pieces;
    const std::string_view block = c.block;
    scripts.add_block(block, 0, block.size(), pieces);
    ASSERT_FALSE(pieces.empty()) << c.block;
    const Flow flow = flow_of(block, pieces.back());
    EXPECT_EQ(flow.goes_on, c.goes_on) << c.block;
    EXPECT_EQ(flow.divides(), c.divides) << c.block;
  }
}

}  // namespace
}  // namespace kavo::script
