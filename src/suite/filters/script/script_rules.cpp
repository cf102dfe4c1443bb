#include "suite/filters/script/script_rules.h"

#include <algorithm>
#include <span>

namespace kavo::script {
namespace {

constexpr auto kArgument = PlaceKind::kArgument;
constexpr auto kAssigned = PlaceKind::kAssigned;
constexpr auto kReceiver = PlaceKind::kReceiver;
constexpr auto kUse = Effect::kUse;
constexpr auto kPasses = Effect::kPasses;

constexpr DestinationRow kRows[] = {
    // What people see.
    {kArgument, "write writeln print println echo <%=", kAny, kUse, Use::kPage, "output of the page"},
    {kArgument, "printf vprintf", 0, kUse, Use::kPage, "output of the page"},
    {kArgument, "printf vprintf", kAny, kUse, Use::kFilled, "filled into the page"},
    {kArgument, "die exit trigger_error wp_die", 0, kUse, Use::kPage, "output of the page"},
    {kArgument, "insertadjacenthtml", 1, kUse, Use::kPage, "output of the page"},
    {kArgument, "html", 0, kUse, Use::kPage, "content of an element"},
    {kArgument, "alert confirm prompt popup showmessage showmessagedialog", 0, kUse, Use::kShown, "a message box"},
    {kArgument, "msgbox inputbox", 0, kUse, Use::kShown, "a message box"},
    {kArgument, "msgbox", 2, kUse, Use::kShown, "the title of a message box"},
    {kArgument, "inputbox", 1, kUse, Use::kShown, "the title of a message box"},
    {kArgument,
     "createtextnode settext settitle setlabel setcaption settooltip settooltiptext setmessage adderror "
     "seterror setcustomvalidity setsubject setbody showstatus",
     kAny, kUse, Use::kShown, "a caption or message"},
    {kArgument, "mail wp_mail", 1, kUse, Use::kShown, "the subject of a mail"},
    {kArgument, "mail wp_mail", 2, kUse, Use::kShown, "the body of a mail"},
    {kArgument, "option", 0, kUse, Use::kShown, "an entry of a list"},
    {kAssigned, "innerhtml outerhtml html", kAny, kUse, Use::kPage, "content of an element"},
    {kAssigned,
     "innertext outertext textcontent text title caption alt placeholder tooltip tooltiptext statustext "
     "status defaultstatus subject body textbody htmlbody label message errormessage error_message prompt "
     "summary",
     kAny, kUse, Use::kShown, "a caption or message"},
    {kAssigned, "value defaultvalue", kAny, kUse, Use::kLikely, "the value of a field"},

    // What returns its argument, or a part of it.
    {kArgument, "array list aslist set of map hash vector", kAny, kPasses, Use::kNone, "an element of a list"},
    {kArgument, "iif", 0, kUse, Use::kInternal, "a condition"},
    {kArgument, "iif choose", kAny, kPasses, Use::kNone, "one of several values"},
    {kArgument,
     "trim ltrim rtrim ucase lcase cstr string tostring valueof strtoupper strtolower touppercase "
     "tolowercase ucfirst ucwords htmlspecialchars htmlentities htmlencode nl2br escapehtml escapexml "
     "stripslashes addslashes utf8_encode utf8_decode concat wordwrap str_pad left mid",
     0, kPasses, Use::kNone, "text that is changed"},
    {kArgument, "sprintf vsprintf format", 0, kPasses, Use::kNone, "text that is filled in"},
    {kArgument, "sprintf vsprintf format", kAny, kUse, Use::kFilled, "filled into a text"},
    {kReceiver,
     "replace replaceall concat touppercase tolowercase trim tostring fontcolor fontsize bold italics link "
     "format formatted",
     kAny, kPasses, Use::kNone, "text that is changed"},
    {kArgument, "append add push insert addelement additem unshift put", kAny, Effect::kInto, Use::kNone,
     "added to a text or a list"},

    // What only programs read.
    {kArgument,
     "session application request form querystring cookies servervariables item fields properties "
     "clientcertificate collect contents staticobjects parameters columns namedvalue",
     kAny, kUse, Use::kInternal, "the name of a value"},
    {kArgument,
     "getparameter getparametervalues getattribute removeattribute getproperty setproperty getheader "
     "setheader addheader header setdateheader getinitparameter getcookie setcookie getitem setitem "
     "removeitem getfield hasownproperty getenv ini_get ini_set putenv constant defined isset "
     "array_key_exists property_exists method_exists function_exists class_exists extension_loaded",
     kAny, kUse, Use::kInternal, "the name of a value"},
    {kArgument, "setattribute define put setvalue session_register assign", 0, kUse, Use::kInternal,
     "the name of a value"},
    {kArgument,
     "getelementbyid getelementsbyname getelementsbytagname getelementsbyclassname queryselector "
     "queryselectorall createelement createelementns selectsinglenode selectnodes createevent initevent "
     "addeventlistener attachevent removeeventlistener detachevent find closest is on bind "
     "addclass removeclass toggleclass hasclass css attr prop $ jquery",
     kAny, kUse, Use::kInternal, "the name of an element, an event or a style"},
    {kArgument,
     "createobject getobject activexobject xmlhttprequest forname newinstance lookup getbean loadlibrary "
     "getresource getresourceasstream usebean",
     kAny, kUse, Use::kInternal, "the name of a class or resource"},
    {kArgument,
     "open execute executequery executeupdate preparestatement preparecall query prepare rawquery exec "
     "mysql_query mysqli_query pg_query mysql_connect mysql_select_db mysqli_connect openrecordset "
     "createcommand addparam createparameter getconnection shell_exec passthru proc_open popen escapeshellarg",
     kAny, kUse, Use::kInternal, "a query or a data source"},
    {kArgument,
     "mappath include include_once require require_once fopen file is_dir "
     "file_get_contents file_put_contents opentextfile createtextfile fileexists folderexists getfile getfolder "
     "buildpath load loadxml navigate navigate2 location showmodaldialog opendir scandir glob readfile realpath chdir "
     "showmodelessdialog sendurl urlencode encodeurl escape encodeuricomponent parseurl url getrealpath "
     "regread regwrite regdelete run shellexecute basename dirname file_exists is_file mkdir unlink "
     "savetofile copyfile copy touch chmod chown rename rmdir is_readable is_writable is_writeable is_link",
     kAny, kUse, Use::kInternal, "an address or a path"},
    {kArgument, "redirect sendredirect forward transfer", 0, kUse, Use::kInternal, "an address or a path"},
    {kArgument, "fwrite fputs", kAny, kUse, Use::kInternal, "written to a file or a connection"},
    {kArgument,
     "instr instrrev indexof lastindexof startswith endswith equals equalsignorecase strpos stripos "
     "strstr strcasecmp strcmp strcomp compareto match preg_match preg_match_all preg_split ereg eregi test "
     "search split explode contains includes regexp compile matches getdelimiter filter filter_var str_contains "
     "str_starts_with str_ends_with strncmp strncasecmp strrpos substr_count sscanf fscanf version_compare in_array "
     "array_search",
     kAny, kUse, Use::kInternal | Use::kAsked, "searched for or compared"},
    {kArgument, "join implode", kAny, kUse, Use::kInternal, "a separator"},
    {kArgument, "replace preg_replace str_replace replaceall ereg_replace str_ireplace", 0, kUse, Use::kInternal,
     "searched for"},
    {kArgument,
     "date gmdate strftime formatdatetime formatdate simpledateformat decimalformat number_format dateadd "
     "datediff datepart strtotime setlocale createdate datetime date_default_timezone_set getinstance",
     kAny, kUse, Use::kInternal, "a format"},
    {kArgument,
     "gettext _ __ _e _x _n ngettext dgettext esc_html__ esc_attr__ getstring getmessage gettranslation "
     "translate tr t l lang i18n getlabel",
     kAny, kUse, Use::kInternal, "the key of a text kept elsewhere"},
    {kArgument,
     "settimeout setinterval eval execscript execglobal createfunction create_function function "
     "__doposback __dopostback",
     0, kUse, Use::kInternal, "script"},
    {kArgument, "log debug trace info warn error_log logerror syslog assert console", kAny, kUse, Use::kInternal,
     "a log for developers"},
    {kArgument, "mail wp_mail", kAny, kUse, Use::kInternal, "an address or a header"},
    {kArgument,
     "appendtolog setcontenttype setcharacterencoding setlanguage setencoding getbytes charset iconv "
     "mb_convert_encoding mb_internal_encoding htmlspecialchars htmlentities",
     kAny, kUse, Use::kInternal, "a coding or a type"},
    {kAssigned,
     "classname class csstext cssclass id name href src action method type cookie location url path style "
     "color background backgroundcolor bgcolor border width height display visibility position zindex cursor "
     "left top right bottom margin padding fontfamily fontsize fontweight overflow charset contenttype "
     "commandtext commandtype connectionstring provider source filter sort pattern tagname htmlfor target "
     "language lang codepage domain classid progid pathinfo referrer timeout buffer expires cachecontrol "
     "onclick onload onchange onmouseover onmouseout onsubmit event datasource datafield key field table "
     "columns indexfields selector align valign textalign font transition",
     kAny, kUse, Use::kInternal, "an attribute that programs read"},
};

// Words of a variable's name.
constexpr std::string_view kLikelyWords[] = {
    "msg",          "message", "messages", "text",    "title",       "caption",  "label",    "error",  "err",
    "errmsg",       "prompt",  "hint",     "warning", "warn",        "info",     "note",     "help",   "tip",
    "tooltip",      "subject", "greeting", "heading", "description", "lang",     "strings",  "txt",    "locale",
    "translations", "desc",    "question", "answer",  "reason",      "subtitle", "headline", "success"};
constexpr std::string_view kUnlikelyWords[] = {
    "sql",      "query",     "url",   "uri",    "path",    "file",     "filename", "folder",     "dir",    "key",
    "id",       "class",     "style", "css",    "color",   "colour",   "table",    "field",      "column", "cookie",
    "regex",    "pattern",   "type",  "format", "charset", "encoding", "conn",     "connection", "cmd",    "command",
    "action",   "method",    "src",   "href",   "name",    "xml",      "xpath",    "tag",        "var",    "param",
    "ext",      "extension", "host",  "domain", "server",  "user",     "password", "pwd",        "mode",   "event",
    "selector", "icon",      "img",   "image",  "keywords"};

// Words in the name of a function that has no row, or in the name of the object that it belongs to.
constexpr std::string_view kLogWords[] = {"log", "logger", "debug", "trace", "console"};
// A function with one of these words takes a message, but one that begins with "get" takes the key of a message.
constexpr std::string_view kMessageWords[] = {"error", "warning", "warn", "message", "msg", "notice"};
constexpr std::string_view kAskingWords[] = {"get", "is", "has", "find", "load"};
// "my_plugin_translate", "__esc"
constexpr std::string_view kTranslatingWords[] = {"translate", "translation", "gettext", "localize", "localise"};
constexpr DestinationRow kKey = {kArgument, "", kAny, kUse, Use::kInternal, "the key of a text kept elsewhere"};
constexpr DestinationRow kLog = {kArgument, "", kAny, kUse, Use::kInternal, "a log for developers"};

std::string small(std::string_view text) {
  std::string result(text);
  for (char& c : result) c = lower(c);
  while (result.size() > 1 && (result.front() == '$' || result.front() == '\\')) result.erase(0, 1);
  return result;
}

// "pagetitle", "errormessage"
bool ends_with_likely_word(std::string_view word) {
  return std::ranges::any_of(std::initializer_list<std::string_view>{"title", "message", "caption", "heading"},
                             [&](std::string_view end) { return word.ends_with(end); });
}

// Calls `action` with each word of a name such as "strErrorMessage" or "error_message", in small letters.
template <class Action>
void each_word(std::string_view name, Action&& action) {
  std::string word;
  for (std::size_t i = 0; i < name.size(); ++i) {
    const char c = name[i];
    const bool is_large = c >= 'A' && c <= 'Z';
    const bool after_small = i > 0 && name[i - 1] >= 'a' && name[i - 1] <= 'z';
    const bool before_small = i + 1 < name.size() && name[i + 1] >= 'a' && name[i + 1] <= 'z';
    if (!is_letter(c) || (is_large && (after_small || before_small))) {
      action(word);
      word.clear();
    }
    if (is_letter(c)) word += lower(c);
  }
  action(word);
}

bool has_word(std::string_view name, std::span<const std::string_view> words) {
  bool has = false;
  each_word(name, [&](std::string_view word) {
    has = has || std::ranges::find(words, word) != words.end();
    if (word.size() > 3 && word.ends_with('s'))
      has = has || std::ranges::find(words, word.substr(0, word.size() - 1)) != words.end();
  });
  return has;
}

// True for a function that looks up a text in a catalogue: "translate", "plugin_t", "__esc".
bool is_translating(std::string_view function) {
  if (function.starts_with("__") || has_word(function, kTranslatingWords)) return true;
  return function.size() > 2 && function.ends_with("_t");
}

}  // namespace

std::string_view unquoted(std::string_view text) {
  if (text.size() >= 2 && (text.front() == '"' || text.front() == '\'') && text.back() == text.front())
    return text.substr(1, text.size() - 2);
  return text;
}

namespace {

using NamedRows = std::unordered_map<std::string, std::vector<const DestinationRow*>>;

void add(const DestinationRow& row, NamedRows& rows) {
  for (std::size_t at = 0; at < row.names.size();) {
    const std::size_t end = std::min(row.names.find(' ', at), row.names.size());
    if (end > at) rows[std::string(row.names.substr(at, end - at))].push_back(&row);
    at = end + 1;
  }
}

const NamedRows& own_rows() {
  static const NamedRows rows = [] {
    NamedRows all;
    for (const DestinationRow& row : kRows) add(row, all);
    return all;
  }();
  return rows;
}

}  // namespace

DestinationRules::DestinationRules(const ScriptNames& names) : names_(names) {
  for (std::string* list : {&names_.texts, &names_.never})
    for (char& c : *list) c = lower(c);
  added_.push_back({kArgument, names_.never, kAny, kUse, Use::kInternal, "a function whose arguments are never texts"});
  added_.push_back({kArgument, names_.texts, kAny, kUse, Use::kPage, "a function whose arguments are texts"});
  for (const DestinationRow& row : added_) add(row, rows_);
  // The user's rows come first.
  for (auto& [name, rows] : rows_)
    if (const auto own = own_rows().find(name); own != own_rows().end())
      rows.insert(rows.end(), own->second.begin(), own->second.end());
}

const std::vector<const DestinationRow*>* DestinationRules::rows_of(const std::string& name) const {
  if (const auto found = rows_.find(name); found != rows_.end()) return &found->second;
  const auto found = own_rows().find(name);
  return found != own_rows().end() ? &found->second : nullptr;
}

const DestinationRow* DestinationRules::find(const Place& place, Language language) const {
  const PlaceKind kind = place.kind == PlaceKind::kEntry ? kAssigned : place.kind;
  if (kind != kArgument && kind != kAssigned && kind != kReceiver) return nullptr;
  const std::string_view last = !place.key.empty() ? unquoted(place.key) : unquoted(place.last);
  // These write to the server's console, not into the page.
  if (kind == kArgument && (place.name.starts_with("System.out.") || place.name.starts_with("System.err.")))
    return &kLog;
  if (kind == kArgument && place.name.size() > last.size() && place.name.ends_with(last) &&
      has_word(place.name.substr(0, place.name.size() - last.size()), kLogWords))
    return &kLog;
  const std::vector<const DestinationRow*>* const rows = rows_of(small(last));
  if (rows == nullptr) {
    if (kind != kArgument) return nullptr;
    return has_word(last, kLogWords) ? &kLog : is_translating(last) ? &kKey : nullptr;
  }
  // An entry with that name holds a state or the name of something, not a line of text or an attribute.
  if (place.kind == PlaceKind::kEntry && (equal_word(last, "status") || equal_word(last, "name"))) return nullptr;
  // A variable with that name is something else than an object's member.
  const bool is_variable = place.kind == kAssigned && !place.is_member && place.key.empty();
  // The exceptions are variables that every page in a browser has.
  if (is_variable && !(language == Language::kJavaScript && (last == "status" || last == "location"))) return nullptr;
  for (const DestinationRow* row : *rows) {
    if (row->kind != kind || (row->argument != kAny && row->argument != static_cast<int>(place.argument))) continue;
    // In Replace(text, what, with) the text comes first; in the method the text stands before the dot.
    if (language == Language::kVbScript && equal_word(last, "replace")) {
      static constexpr DestinationRow kReplaced = {kArgument, "replace",  0,
                                                   kPasses,   Use::kNone, "text that is changed"};
      static constexpr DestinationRow kWanted = {kArgument, "replace", 1, kUse, Use::kInternal, "searched for"};
      return place.argument == 1 ? &kWanted : &kReplaced;
    }
    return row;
  }
  return nullptr;
}

Use use_by_name(std::string_view name) {
  name = unquoted(name);
  Use use = Use::kNone;
  if (has_word(name, kLikelyWords)) use = use | Use::kLikely;
  each_word(name, [&](std::string_view word) {
    if (ends_with_likely_word(word)) use = use | Use::kLikely;
  });
  if (has_word(name, kUnlikelyWords)) use = use | Use::kUnlikely;
  return use;
}

Use use_by_function(std::string_view name) {
  return has_word(name, kMessageWords) && !has_word(name, kAskingWords) ? Use::kLikely : Use::kNone;
}

Decision decide(Use use, const Looks& looks, bool in_markup) {
  const bool is_shown = has(use, Use::kPage) || has(use, Use::kShown);
  const bool is_internal = has(use, Use::kInternal);
  switch (looks.look) {
    case Look::kEmpty:
      return {Verdict::kNone, "no words"};
    case Look::kMachine:
      return {Verdict::kNone, looks.reason};
    case Look::kDotted:
      if ((has(use, Use::kShown) || has(use, Use::kLikely)) && !is_internal) return {Verdict::kText, "a caption"};
      return {Verdict::kNone, "a name of programs"};
    case Look::kConstant:
      if (is_shown) return {Verdict::kDoubt, "a word that programs use as well"};
      return {Verdict::kNone, "a word of programs"};
    case Look::kSmall:
    case Look::kWord:
      if (is_shown && is_internal) return {Verdict::kDoubt, "shown, and read by programs as well"};
      if (is_shown && looks.look == Look::kSmall && has(use, Use::kUnlikely) && !has(use, Use::kLikely) && !in_markup)
        return {Verdict::kDoubt, "shown, but the name of its place says that programs read it"};
      if (is_shown) return {Verdict::kText, "shown"};
      if (is_internal || (has(use, Use::kUnlikely | Use::kNamed) && !in_markup))
        return {Verdict::kNone, "read by programs"};
      if (in_markup) return {Verdict::kText, "stands between tags"};
      if (has(use, Use::kFilled)) return {Verdict::kDoubt, "one word that is filled in, maybe into a tag"};
      if (has(use, Use::kLikely) && looks.look == Look::kWord)
        return {Verdict::kText, "its name says that people read it"};
      if (looks.look == Look::kSmall) return {Verdict::kNone, "one word, and nothing tells that it is shown"};
      return {Verdict::kDoubt, "one word, and nothing tells whether it is shown"};
    case Look::kSmallPhrase:
    case Look::kPhrase:
      if (is_shown) return {Verdict::kText, "shown"};
      if (is_internal) return {Verdict::kNone, "read by programs"};
      if (in_markup) return {Verdict::kText, "stands between tags"};
      if (has(use, Use::kUnlikely) && !has(use, Use::kLikely) && !looks.is_sentence)
        return {Verdict::kDoubt, "words, but the name of their place says that programs read them"};
      if (looks.look == Look::kSmallPhrase && !has(use, Use::kLikely))
        return {Verdict::kDoubt, "two words, and nothing tells whether they are shown"};
      return {Verdict::kText, "words"};
  }
  return {};
}

}  // namespace kavo::script
