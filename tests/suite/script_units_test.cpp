#include <gtest/gtest.h>

#include "script_page.h"

namespace kavo::test {
namespace {

using script::Unit;
using script::Verdict;

// One line for each unit, in order: "? " before a doubtful one, operands and tags in braces.
std::string units(std::string_view page, std::string_view extension = "asp", const script::ScriptNames& names = {}) {
  const TextCoding utf8(kUtf8CodePage);
  std::string result;
  for (const Unit& unit : units_of_page(page, extension, utf8, false, names)) {
    if (!result.empty()) result += '|';
    if (unit.verdict == Verdict::kDoubt) result += "? ";
    for (const auto& part : unit.parts)
      result += part.is_code ? "{" + std::string(page.substr(part.begin, part.end - part.begin)) + "}" : part.text;
    EXPECT_FALSE(unit.reason.empty());
  }
  return result;
}

struct Case {
  const char* name;
  const char* extension;
  std::string_view page;
  std::string_view expected;
};

const Case kCases[] = {
    // What becomes one text.
    {"joined", "asp", "<% Response.Write \"Hello \" & name & \", welcome\" %>", "Hello {\" & name & \"}, welcome"},
    {"operands at the ends stay outside", "asp", "<% Response.Write a & \" Hello \" & b %>", "Hello"},
    {"escaped quotes", "htm", "<script>alert(\"Field \\\"Name\\\" is empty\")</script>", "Field \"Name\" is empty"},
    {"escaped apostrophe", "htm", "<script>alert('It\\'s')</script>", "It's"},
    {"texts in an operand are texts of their own", "asp",
     "<% MsgBox \"You have \" & IIf(n = 1, \"one item\", \"many items\") & \" left\" %>",
     "You have {\" & IIf(n = 1, \"one item\", \"many items\") & \"} left|one item|many items"},
    {"appended texts are texts of their own", "php", "<?php $msg .= 'Hello you'; $msg .= ' and you'; echo $msg; ?>",
     "Hello you|and you"},
    {"template", "htm", "<script>alert(`Hello ${name}, welcome`)</script>", "Hello {${name}}, welcome"},
    {"heredoc", "php", "<?php echo <<<E\nHello $name,\nwelcome\nE;\n?>", "Hello {$name},\nwelcome"},
    {"a value of the server in a client's text", "asp", "<script>alert('Hello <%= name %>, welcome')</script>",
     "Hello {<%= name %>}, welcome"},
    {"a statement over several blocks", "jsp", "<% if (a) { %>x<% out.print(\"Hello you\"); } %>", "Hello you"},

    // Markup.
    {"tags of blocks end a text", "php", "<?php echo '<p>Hello <b>you</b>, hi</p><p>Bye</p>'; ?>",
     "Hello {<b>}you{</b>}, hi|Bye"},
    {"a tag over an operand", "asp", "<% Response.Write \"See <a href='\" & url & \"'>this page</a> now\" %>",
     "See {<a href='\" & url & \"'>}this page{</a>} now"},
    {"a tag from another literal", "asp", "<% Response.Write \"'>Expense \" & n & \"</a>\" %>", "Expense"},
    {"attributes", "php",
     "<?php echo '<img src=\"a b.gif\" alt=\"A picture\"><input type=submit value=\"Send it\">'; ?>",
     "A picture|Send it"},
    {"no words", "php", "<?php echo '<td>&nbsp;</td>', '<b>', '</b>', ': ', '123'; ?>", ""},
    {"script in markup", "php", "<?php echo '<script>var a = \"b c\";</scr'; ?>", ""},

    // Where it goes.
    {"message boxes", "asp", "<% MsgBox \"Done\", 64, \"Title\" : x = InputBox(\"Name\", \"Ask\", \"def\") %>",
     "Done|Title|Name|Ask"},
    {"keys and names", "asp",
     "<% Set c = Server.CreateObject(\"ADODB.Connection\") : c.Open \"Data Source Name\" : x = Session(\"User name\") "
     ": Response.Redirect \"Next page\" %>",
     ""},
    {"compared", "asp", "<% If a = \"Adv Options\" Then b = InStr(c, \"some words\") %>", ""},
    {"into a tag", "asp",
     "<% Response.Write \"<tr class='\" & IIf(a, \"odd\", \"even\") & \"'><td title='\" & IIf(a, \"first\", \"last\") "
     "& \"'>\" & IIf(a, \"many\", \"few\") %>",
     "first|last|many|few"},
    {"filled in", "php", "<?php printf('<tr class=\"%s\">%s', $a ? 'odd' : 'even', 'Well done'); ?>",
     "? odd|? even|Well done"},
    {"objects as data", "asp", "<% x = \"{ID:\"\"\" & id & \"\"\",step:\" & n & \"}\" : Response.Write x %>", ""},
    {"the entry for no entry", "php", "<?php $genres[''] = '- Unknown -'; $genres['a-b'] = '-a b-'; ?>",
     "- Unknown -|? -a b-"},
    {"logs", "php", "<?php debug_log('Comparing the entries'); writeLog('Comparing more'); ?>", ""},
    {"the server's output", "jsp", "<% System.out.println(\"Well done\"); out.println(\"Well done\"); %>", "Well done"},
    {"logs of an object", "php", "<?php $this->log->error('Some words here'); console.warn('Some more words'); ?>", ""},
    {"messages of functions", "php", "<?php showError('Failed'); show('Failed'); getErrorMessage('Failed'); ?>",
     "Failed|? Failed|? Failed"},
    {"fields of errors", "php", "<?php $errors['password'] = 'It does not fit'; $password = 'Not fit at all'; ?>",
     "It does not fit|? Not fit at all"},
    {"sentences", "php", "<?php $password = 'It does not fit.'; ?>", "It does not fit."},
    {"values of a template", "php",
     "<?php $t->assign(array('LIST' => '<b>Config</b>')); $t->assign('Two words', 'Three words here'); ?>",
     "Config|Three words here"},
    {"commands", "php",
     "<?php $c = '/usr/bin/list -L ' . $a . ' -a ' . $b . ' 2>&1'; exec($c); echo $c; $d = 'if [ -x /bin/a ]; then "
     "/bin/a ; fi'; echo $d; is_dir('../some/' . $a . '/words here'); ?>",
     ""},
    {"asked of a text that is shown", "jsp",
     "<% String type = \"Primary\"; if (\"Proxy\".equals(type) || type.startsWith(\"Pro\")) f(); %><%= type %>",
     "Primary"},
    {"by way of a variable", "asp", "<% s = \"Approved\" : Response.Write s %>", "Approved"},
    {"by way of a parameter", "asp", "<% Sub Show(text) : Response.Write text : End Sub : Show \"Approved\" %>",
     "Approved"},
    {"by way of a result", "jsp", "<%! String f() { return \"approved\"; } %><%= f() %>", "approved"},
    {"by way of a list", "htm", "<script>var s = new Array('Paused', 'Done'); a.innerHTML = s[i];</script>",
     "Paused|Done"},
    {"by way of an entry", "htm", "<script>var d = [{name: 'Pillar'}]; c.textContent = d[0].name;</script>", "Pillar"},
    {"a variable that only programs read", "asp", "<% s = \"Approved\" : Set o = CreateObject(s) %>", ""},
    {"a variable of a function is no other one's", "htm",
     "<script>function f(a) { alert(a) } function g(a) { h[a] = 1 } f('Approved'); g('Approver')</script>", "Approved"},
    {"by way of a loop", "php", "<?php foreach (array('Paused', 'Done') as $i => $s) { echo $s; } ?>", "Paused|Done"},
    {"by way of a list and a loop", "php",
     "<?php $l = array(); $l[] = 'Paused'; $l['x'] = 'Done'; foreach ($l as $s) print $s; ?>", "Paused|Done"},
    {"by way of a loop", "asp", "<% For Each s In Array(\"Paused\", \"Done\") : Response.Write s : Next %>",
     "Paused|Done"},
    {"by way of a loop", "htm", "<script>for (const s of ['Paused', 'Done']) alert(s);</script>", "Paused|Done"},
    {"a name that takes a sentence takes texts", "php",
     "<?php $o->note('It could not be found'); $o->note('not set'); $o->show('not set'); ?>",
     "It could not be found|not set|? not set"},
    {"a name that takes a query takes parts of it", "php",
     "<?php $s = 'SELECT a FROM b'; $s .= ' where known by all'; $t = ' where known by all'; ?>",
     "? where known by all|where known by all"},
    {"shown in small letters, in a place for programs", "asp",
     "<% page_class = \"wide\" : Response.Write page_class %>", "? wide"},
    {"what an entry is called", "php", "<?php $a = array('name' => 'Main folder', 'id' => 'Main folder'); ?>",
     "Main folder|? Main folder"},
    {"a state is no status line", "php", "<?php echo json_encode(array('status' => 'Missing')); ?>", "? Missing"},
    {"where a page goes, and why", "php", "<?php redirect('Next page', 'Please log in'); ?>", "Please log in"},
    {"written to a file", "php", "<?php $s = 'Made by the installer'; fwrite($f, $s); ?>", ""},
    {"keys of texts kept elsewhere", "php",
     "<?php echo t('Hello you'), l('Hello you'), my_plugin_t('Hello you'), __esc('Hello you'), autoTranslate('Hello'); "
     "?>",
     ""},
    {"keys of texts kept elsewhere", "php", "<?php echo _('Hello you'), gettext('Bye bye'); ?>", ""},
    {"text that is changed on its way", "php", "<?php echo htmlspecialchars(trim('Hello')); ?>", "Hello"},
    {"mail", "php", "<?php mail($to, 'Your order', 'Thank you.', 'From: shop') ?>", "Your order|Thank you."},
    {"doubt", "htm", "<script>foo('Approved')</script>", "? Approved"},

    // What it looks like.
    {"queries", "asp",
     "<% s = \"SELECT name FROM users\" : t = \"update users set name = 'x'\" : u = \" WHERE id = \" & id %>", ""},
    {"sentences that begin as queries", "asp",
     "<% MsgBox \"Select an item from the list\" : MsgBox \"Update failed\" %>",
     "Select an item from the list|Update failed"},
    {"paths, addresses, formats", "php",
     "<?php $a = 'inc/page.php'; $b = 'http://a.b/c_d'; $c = 'yyyy-MM-dd'; $d = 'me@host.org'; $e = 'text/html; "
     "charset=utf-8'; ?>",
     ""},
    {"names with a colon", "php", "<?php $o->showError('core:report'); $o->showError('Failed:by hand'); ?>",
     "Failed:by hand"},
    {"codes in capitals", "php", "<?php showError('NOTFOUND'); echo 'WARNING'; ?>", "WARNING"},
    {"words of a name that are not parted", "php", "<?php $pagetitle = 'Sandbox'; $pagebox = 'Sandbox'; ?>",
     "Sandbox|? Sandbox"},
    {"parts of paths", "php", "<?php echo 'images/' . $a . '.json'; $b = '/view_' . $c . '.json'; ?>", ""},
    {"data", "php", "<?php echo '{\"text\": \"' . $a . '\", \"id\": 1'; ?>", ""},
    {"parts of queries", "php",
     "<?php $a = ' from users u where u.id = 3'; $b = ' and u.id is null'; $c = ' order by name'; ?>", ""},
    {"calls", "php", "<?php echo 'getTag() - Sample writer'; echo 'init()'; ?>", "getTag() - Sample writer"},
    {"code shown in a sentence", "php",
     "<?php echo 'You may use <code>$a = \\'b\\';</code> or <tt>f();</tt>'; echo '<p><code>f();</code></p>'; ?>",
     "You may use {<code>}$a = 'b';{</code>} or {<tt>}f();{</tt>}"},
    {"the end of a sentence", "php", "<?php $o->f($a . ' failed.'); $o->f($a . ' failed'); ?>", "failed."},
    {"languages and scripts", "php", "<?php $a = 'en-US'; $b['x'] = sprintf('javascript:go(%s)', $c); ?>", ""},
    {"styles", "htm", "<script>a.innerHTML = 'color: red; width: 10px'; b('toolbar=no,width=300')</script>", ""},
    {"names", "htm", "<script>a.innerHTML = 'myVariable' + 'some_name' + 'a.b.c'</script>", ""},
    {"other scripts", "php", "<?php echo 'Привет', '注意'; ?>", "Привет|注意"},

    // Comments.
    {"comments", "asp", "<% ' it's \"no text\"\nRem \"nor this\"\nResponse.Write \"Yes you\" %>", "Yes you"},
    {"comments", "htm", "<script>// it's 'no text'\n/* \"nor this one\" */ alert('Yes you')</script>", "Yes you"},
    {"comments", "php", "<?php # it's 'no text'\n// nor \"this one\"\necho 'Yes you'; ?>", "Yes you"},
    {"comments", "jsp", "<%-- out.print(\"no text\") --%><% // it's \"none\"\nout.print(\"Yes you\"); %>", "Yes you"},

    // Languages.
    {"declared by the page", "asp", "<%@ language=JScript %><% Response.Write('Hello you') %>", "Hello you"},
    {"of an element", "asp", "<script language=vbscript>MsgBox \"Hello \" & _\n\"you\"</script>", "Hello you"},
    {"without a lexer", "asp", "<%@ language=PerlScript %><% print 'Hello you' %>", "? Hello you"},
    {"data", "htm", "<script type='application/json'>{\"a\": \"Hello you\"}</script>", ""},
};

TEST(ScriptUnits, TextsOfPages) {
  for (const Case& row : kCases) {
    SCOPED_TRACE(std::string(row.name) + ", " + row.extension);
    EXPECT_EQ(units(row.page, row.extension), row.expected);
  }
}

TEST(ScriptUnits, NamesThatTheUserAdds) {
  EXPECT_EQ(units("<% foo \"Approved\" %>", "asp", {"foo bar", ""}), "Approved");
  EXPECT_EQ(units("<% Response.Write \"Hello you\" %>", "asp", {"", "Write"}), "");
}

TEST(ScriptUnits, OrderOfCodes) {
  const TextCoding utf8(kUtf8CodePage);
  const auto can_move = [&](std::string_view page, std::string_view extension) {
    const auto found = units_of_page(page, extension, utf8);
    EXPECT_EQ(found.size(), 1u);
    return !found.empty() && found.front().can_move;
  };
  EXPECT_TRUE(can_move("<% MsgBox \"a b \" & n & \" items\" %>", "asp"));
  EXPECT_TRUE(can_move("<script>alert('There are ' + n + ' items')</script>", "htm"));
  EXPECT_FALSE(can_move("<script>alert(n + 1 + ' items of ' + m + ' are left')</script>", "htm"));
  EXPECT_FALSE(can_move("<% MsgBox \"a b \" + n + \" items\" %>", "asp"));
}

}  // namespace
}  // namespace kavo::test
