#include "suite/filters/script/script_proof.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/failure.h"
#include "platform/unicode.h"

namespace kavo::test {
namespace {

using script::Language;

// A script file in which "[[source=>target]]" is a segment. `step` is how many bytes of what stands between segments
// come at a time.
std::string refusal_of(Language language, std::string_view blocks, std::size_t step) {
  const TextCoding coding(kUtf8CodePage);
  script::ScriptProof proof(language, coding, coding);
  Hole hole;
  try {
    while (!blocks.empty()) {
      if (blocks.starts_with("[[")) {
        const std::size_t middle = blocks.find("=>");
        const std::size_t end = blocks.find("]]");
        ++hole.number;
        proof.add({blocks.substr(2, middle - 2), blocks.substr(middle + 2, end - middle - 2), &hole});
        blocks.remove_prefix(end + 2);
        continue;
      }
      const std::string_view bytes = blocks.substr(0, std::min(blocks.find("[["), step));
      proof.add({bytes, bytes});
      blocks.remove_prefix(bytes.size());
    }
    proof.finish();
  } catch (const failure& reason) {
    return to_utf8(reason.description());
  }
  return "";
}

struct Case {
  const char* name;
  Language language;
  std::string_view script;
  const char* refused = "";  // the segment that the message names
};

constexpr Case kCases[] = {
    {"another text", Language::kVbScript, R"(<% MsgBox "[[Hi=>Salut ""vous""]]" : x = 1 %>)"},
    {"operands that change places", Language::kVbScript,
     R"(<% MsgBox "[[a " & n(1) & " b " & m & "=>b " & m & " a " & n(1) & "]]" %>)"},
    {"escapes of VBScript", Language::kVbScript, R"(<% MsgBox "[[a=>b" & vbCrLf & "c" & ChrW(233) & "]]" %>)"},
    {"texts that a plus joins", Language::kVbScript, R"(<% MsgBox "[[Hi " + "you=>Salut]]" + n %>)"},
    {"a plus in a value", Language::kVbScript, R"(<% MsgBox "[[a " & n + 1 & " b=>b " & n & 1 & " a]]" %>)",
     "segment 1"},
    {"a plus that is gone", Language::kVbScript, R"(<% MsgBox "[[a " + n & " b=>b " & n & " a]]" %>)", "segment 1"},
    {"a call that is no escape", Language::kVbScript, R"(<% MsgBox "[[a=>b" & ChrW(x) & "]]" %>)", "segment 1"},
    {"a quote that ends the literal", Language::kVbScript, R"(<% MsgBox "[[Hi=>Hi" you]]" %>)", "segment 1"},
    {"a quote that opens another one", Language::kVbScript, R"(<% MsgBox "[[Hi=>Hi" & "]]", "[[b=>c]]" : x = "y" %>)"},
    {"a statement in a translation", Language::kVbScript, R"(<% MsgBox "[[Hi=>Hi" : Quit : x = "]]" %>)", "segment 1"},
    {"a comment in a translation", Language::kVbScript, "<% MsgBox \"[[Hi=>Hi\" ' ]]\"\r\n%>", "segment 1"},
    {"an operand that is missing", Language::kVbScript, R"(<% MsgBox "[[a " & n & " b=>a b]]" %>)", "segment 1"},
    {"an operand that stands twice", Language::kVbScript, R"(<% MsgBox "[[a " & n & " b=>a " & n & n & " b]]" %>)",
     "segment 1"},
    {"a key that changes in an operand", Language::kVbScript,
     R"(<% MsgBox "[[a " & rs("b") & " c=>a " & rs("d") & " c]]" %>)", "segment 1"},
    {"an end of the block", Language::kVbScript, R"(<% MsgBox "[[a=>b %>]]" : x = "y" %>)", "segment 1"},
    {"the second of two is named", Language::kVbScript, R"(<% MsgBox "[[a=>b]]" : MsgBox "[[c=>d"]]" : x = "y" %>)",
     "segment 2"},
    {"a marker on a line of its own", Language::kPhp, "<?php echo <<<'E'\n[[a=>b\n<!-- ASP2HTML 9 -->\nc]]\nE;\n?>",
     "segment 1"},
    {"a line of a document that ends it", Language::kPhp, "<?php echo <<<E\n[[a=>b\nE;\nx();\n<<<E\n]]\nE;\n?>",
     "segment 1"},
    {"several texts in one literal", Language::kPhp, "<?php echo '<p>[[a=>b]]</p><p>[[c=>\\'d\\'. \\'e\\']]</p>'; ?>"},
    {"a literal that is cut between two texts", Language::kPhp,
     "<?php echo '<p>[[a=>b' . 'c]]</p><p>[[d=>e]]</p>'; ?>"},
    {"a value in braces", Language::kPhp, R"(<?php echo "[[Hi $you, yes=>{$you}r]]"; ?>)"},
    {"two values side by side", Language::kPhp, R"(<?php echo "[[$a and $b too=>$b$a]]"; ?>)"},
    {"a member in braces", Language::kPhp, R"(<?php echo "[[Hi $a->b, yes=>{$a->b}r]]"; ?>)"},
    {"a value that a text inserts", Language::kPhp, R"(<?php echo "[[Hi you=>Hi $you]]"; ?>)", "segment 1"},
    {"a value that comes first", Language::kPhp, R"(<?php echo "[[$you said=>dit $you]]"; ?>)"},
    {"a template", Language::kJavaScript, "<script>alert(`[[${a} of ${b.c('d')}=>x ${b.c('d')} y ${a}]]`)</script>"},
    {"a template with another key", Language::kJavaScript,
     "<script>alert(`[[${a} of ${b.c('d')}=>${b.c('e')} y ${a}]]`)</script>", "segment 1"},
    {"an end tag", Language::kJavaScript, "<script>alert('[[a=>b</script>]]')</script>", "segment 1"},
    {"server blocks in a client's text", Language::kVbScript,
     "<script>alert('[[a <%= b(\"c\") %> d <%= e %>=>d <%= e %> x <%= b(\"c\") %>]]')</script>"},
    {"server blocks that come side by side", Language::kVbScript,
     "<script>alert('[[a <%= b(\"'\") %> d <%= e %>=>d <%= e %><%= b(\"'\") %>]]')</script>"},
    {"a server block that stands twice, side by side", Language::kVbScript,
     "<script>alert('[[a <%= b %> d <%= e %>=>d <%= e %><%= e %>]]')</script>", "segment 1"},
    {"a server block with a literal that has no end", Language::kVbScript,
     "<script>alert('[[a <%= b \" %> d <%= e %>=>d <%= e %> a <%= b \" %>]]')</script>"},
    {"a server block that is gone", Language::kVbScript,
     "<script>alert('[[a <%= b %> d <%= e %>=>d <%= e %>]]')</script>", "segment 1"},
    {"a server block between two literals", Language::kVbScript,
     "<script>alert('[[a ' + <%= b %> + 'c=>x ' + <%= b %> + 'y]]')</script>"},
    {"Java", Language::kJava, R"(<% out.print("[[a " + n + " b=>\u00e9 " + n + " \"c\"]]"); %>)"},
    {"a language that is not known", Language::kUnknown, R"(<% print "[[a=>b]]"; $x = 'y'; %>)"},
    {"its quote", Language::kUnknown, R"(<% print "[[a=>b" c]]"; $x = 'y'; %>)", "segment 1"},
};

TEST(ScriptProof, RefusesAChangedScript) {
  for (const Case& row : kCases) {
    const std::string file = "\r\n<!-- ASP2HTML 1 -->\r\n<% x = 1 %>\r\n<!-- ASP2HTML 2 Q -->\r\n" +
                             std::string(row.script) + "\r\n<!-- ASP2HTML 3 -->\r\n<% y = 2 %>\r\n";
    for (const std::size_t step : {std::size_t{1}, std::size_t{7}, file.size()}) {
      const std::string reason = refusal_of(row.language, file, step);
      if (*row.refused == '\0')
        EXPECT_EQ(reason, "") << row.name << ", " << step;
      else
        EXPECT_TRUE(reason.starts_with(row.refused)) << row.name << ", " << step << ": " << reason;
    }
  }
}

TEST(ScriptProof, ReadsTheLanguageThatThePageDeclares) {
  const std::string file =
      "\r\n<!-- ASP2HTML 1 -->\r\n<%@ language=JScript %>\r\n<!-- ASP2HTML 2 -->\r\n"
      "<% Response.Write('[[it\\'s=>c\\'est]]'); %>\r\n";
  EXPECT_EQ(refusal_of(Language::kVbScript, file, 5), "");
}

// Where segments stand in an operand, its tokens are counted.
TEST(ScriptProof, OperandsThatHoldSegments) {
  const TextCoding coding(kUtf8CodePage);
  const auto holds = [&](std::string_view source, std::string_view target) {
    script::ScriptProof proof(Language::kVbScript, coding, coding);
    Hole hole;
    hole.number = 3;
    hole.line = 4;
    hole.column = 5;
    try {
      proof.add({"<!-- ASP2HTML 1 -->\r\n<% MsgBox \"", "<!-- ASP2HTML 1 -->\r\n<% MsgBox \""});
      proof.add({source, target, &hole, true});
      proof.add({"\" %>\r\n", "\" %>\r\n"});
      proof.finish();
    } catch (const failure& reason) {
      EXPECT_EQ(to_utf8(reason.description()),
                "segment 3 (line 4, column 5): the translation would change the script around it");
      return false;
    }
    return true;
  };
  EXPECT_TRUE(holds(R"(a " & f("b " & c) & ")", R"(x " & f("" & c & " y" & vbCrLf & "") & ")"));
  EXPECT_FALSE(holds(R"(a " & f("b " & c) & ")", R"(x " & f("" & c & " y" & d) & ")"));
  EXPECT_FALSE(holds(R"(a " & f("b " & c) & ")", R"(x " & f("y") & ")"));
}

}  // namespace
}  // namespace kavo::test
