// Judges what a text looks like: rules for words, and for everything that is not words.
#include <algorithm>
#include <iterator>
#include <vector>

#include "formats/text/text_coding.h"
#include "suite/filters/script/script_rules.h"

namespace kavo::script {
namespace {

bool is_large(char c) { return c >= 'A' && c <= 'Z'; }
bool is_small(char c) { return c >= 'a' && c <= 'z'; }
bool is_wide(char c) { return static_cast<unsigned char>(c) >= 0x80; }
bool is_word_letter(char c) { return is_letter(c) || is_wide(c); }
bool is_space(char c) { return is_blank(c) || ends_line(c); }

bool is_one_of(std::string_view word, std::initializer_list<std::string_view> words) {
  return std::find(words.begin(), words.end(), word) != words.end();
}

std::string small(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(), lower);
  return result;
}

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && is_space(text.front())) text.remove_prefix(1);
  while (!text.empty() && is_space(text.back())) text.remove_suffix(1);
  return text;
}

// True for what may separate two words: blanks, an operand, the colon of "place:what happened" (not the colon of
// "http://").
bool is_gap(std::string_view text, std::size_t at) {
  const char c = text[at];
  if (is_space(c) || c == kOperandMark) return true;
  return c == ':' && at > 0 && at + 1 < text.size() && is_word_letter(text[at - 1]) && is_word_letter(text[at + 1]);
}

std::vector<std::string_view> split(std::string_view text) {
  std::vector<std::string_view> parts;
  for (std::size_t at = 0; at < text.size();) {
    while (at < text.size() && is_gap(text, at)) ++at;
    const std::size_t begin = at;
    while (at < text.size() && !is_gap(text, at)) ++at;
    if (at > begin) parts.push_back(text.substr(begin, at - begin));
  }
  return parts;
}

// Removes the punctuation around a word.
std::string_view bare(std::string_view token) {
  constexpr std::string_view kBefore = "([{\"'*-+<>#.,:;!?|~^=&/";
  constexpr std::string_view kBehind = ")]}\"'.,:;!?*-+<>|~^=&/";
  while (!token.empty() && kBefore.find(token.front()) != std::string_view::npos) token.remove_prefix(1);
  while (!token.empty() && kBehind.find(token.back()) != std::string_view::npos) token.remove_suffix(1);
  return token;
}

// True for the letters of one word: "don't", "e-mail", "and/or", "group(s)".
bool is_ordinary(std::string_view word) {
  if (word.empty() || !is_word_letter(word.front())) return false;
  // Names in programs are written in ASCII, so anything else is a word.
  if (is_wide(word.front())) return true;
  bool has_small = false;
  std::size_t humps = 0;
  for (std::size_t i = 0; i < word.size(); ++i) {
    const char c = word[i];
    if (is_small(c) || is_wide(c)) has_small = true;
    if (is_large(c) && i > 0 && is_small(word[i - 1])) ++humps;
    if (is_word_letter(c)) continue;
    const bool joins = c == '\'' || c == '-' || c == '/' || c == '(' || c == ')' || c == '&';
    if (!joins || (i + 1 < word.size() && !is_word_letter(word[i + 1]) && word[i + 1] != 's')) return false;
  }
  if (humps != 0) return false;
  // Capitals are a word if they contain a vowel: "OK", "ERROR".
  const std::string letters = small(word);
  return has_small || letters.find_first_of("aeiouy") != std::string::npos;
}

// True for "Adv.Options", false for "happyaxis.jsp".
bool is_dotted(std::string_view token) {
  bool begins = true;
  std::size_t dots = 0;
  for (const char c : token) {
    if (c == '.') {
      ++dots;
      begins = true;
      continue;
    }
    if (begins ? !is_large(c) : !is_small(c)) return false;
    begins = false;
  }
  return dots == 1 && !begins && !token.starts_with('.');
}

bool has_extension(std::string_view token) {
  const std::size_t dot = token.rfind('.');
  if (dot == std::string_view::npos || dot == 0 || token.size() - dot > 6 || token.size() - dot < 3) return false;
  if (is_wide(token.front())) return false;
  return std::all_of(token.begin() + static_cast<std::ptrdiff_t>(dot) + 1, token.end(),
                     [](char c) { return is_letter(c) || is_digit(c); });
}

bool is_address(std::string_view token) {
  const std::string text = small(token);
  for (const std::string_view part : {"://", "mailto:", "javascript:", "vbscript:", "www.", "file:", "ldap:", "jdbc:"})
    if (text.find(part) != std::string::npos) return true;
  if (std::any_of(token.begin(), token.end(), is_wide)) return false;
  const std::size_t at = token.find('@');
  return at != std::string_view::npos && at > 0 && token.find('.', at) != std::string_view::npos;
}

// "-a", "--force" of a command line
bool is_option(std::string_view token) {
  if (token.size() == 2) return token[0] == '-' && is_letter(token[1]);
  return token.size() > 3 && token.starts_with("--") && is_small(token[2]) && !token.ends_with('-');
}

// "/path/to", "a\b", "name=value", "?id=", "../a/"
bool is_machine_token(std::string_view token) {
  if (is_address(token) || token.find_first_of("=\\_{}<>#$") != std::string_view::npos) return true;
  if (is_option(token) || token.starts_with("../") || token.starts_with("./")) return true;
  const std::string_view word = bare(token);
  if (token.find('/') != std::string_view::npos && !is_ordinary(word)) return true;
  // "images/", "/images", ".json" of "name.json", "call()"
  if (token.size() > 2 && (token.ends_with('/') || (token.front() == '/' && is_small(token[1])))) return true;
  if (token.size() > 2 && token.front() == '.' && is_small(token[1])) return true;
  return has_extension(word) || token.find("()") != std::string_view::npos;
}

// The text with each run of white space as one blank, and none at the beginning.
std::string one_blank(std::string_view text) {
  std::string result;
  for (const char c : text) {
    if (!is_space(c))
      result += c;
    else if (!result.empty() && result.back() != ' ')
      result += ' ';
  }
  return result;
}

// The rest of a statement in small letters: "where a.id = b.id", "order by name". `all` has a blank before each word.
bool is_query_part(std::string_view all) {
  const std::string_view text = all.substr(1);
  const auto begins = [&](std::initializer_list<std::string_view> words) {
    return std::ranges::any_of(words, [&](std::string_view word) { return text.starts_with(word); });
  };
  if (begins({"group by ", "order by ", "left join ", "inner join ", "left outer join "})) return true;
  if (!begins({"from ", "where ", "and ", "or ", "set ", "values ", "having ", "on ", "(select "})) return false;
  return std::ranges::any_of(std::initializer_list<std::string_view>{" = ", "=", " is null", " is not null", " like ",
                                                                     " in (", " between ", "`"},
                             [&](std::string_view sign) { return text.find(sign) != std::string_view::npos; });
}

bool is_query(std::string_view original) {
  const std::string text = one_blank(original) + " ";
  const std::string all = " " + small(text);
  const auto holds = [&](std::string_view what) { return all.find(what) != std::string::npos; };
  const auto begins = [&](std::string_view what) { return std::string_view(all).substr(1).starts_with(what); };
  // "Select an item from the list" is a sentence.
  const auto words = split(all);
  const bool is_sentence =
      words.size() > 1 && is_one_of(words[1], {"a", "an", "the", "one", "your", "this", "which", "from", "at", "any",
                                               "another", "some", "what", "where"});
  if (begins("select ") && !is_sentence && (holds(" from ") || holds("*"))) return true;
  for (const std::string_view verb : {"insert into ", "replace into ", "delete from ", "create table ", "drop table ",
                                      "alter table ", "truncate table ", "exec "})
    if (begins(verb)) return true;
  if (begins("update ") && holds(" set ")) return true;
  // Statements, and parts of statements, whose keywords are in capitals.
  const std::string_view first = std::string_view(text).substr(0, text.find(' '));
  const std::string_view rest = std::string_view(text).substr(first.size() + 1);
  const std::string_view second = rest.substr(0, rest.find(' '));
  const bool second_is_large = second.size() > 1 && std::all_of(second.begin(), second.end(), is_large);
  if (second_is_large &&
      is_one_of(first, {"SELECT", "SHOW", "LOCK", "UNLOCK", "REPAIR", "OPTIMIZE", "ANALYZE", "CREATE", "DROP", "ALTER",
                        "ORDER", "GROUP", "INNER", "LEFT", "RIGHT", "UNION", "GRANT"}))
    return true;
  if (is_one_of(first, {"SELECT", "FROM", "WHERE", "VALUES", "SET", "AND", "OR", "LIMIT", "UNION", "HAVING", "JOIN"}))
    return true;
  for (const std::string_view part : {" FROM ", " WHERE ", " ORDER BY ", " GROUP BY ", " LIKE "})
    if (text.find(part) != std::string::npos) return true;
  return std::string_view("abcdefghijklmnopqrstuvwxyz(").find(text.front()) != std::string_view::npos &&
         is_query_part(all);
}

// "color: red; width: 10px"
bool is_style(std::string_view text) {
  const std::string all = small(text);
  if (all.find(':') == std::string::npos) return false;
  std::size_t parts = 0;
  for (std::size_t at = 0; at < all.size();) {
    const std::size_t end = std::min(all.find(';', at), all.size());
    const std::string_view part = trimmed(std::string_view(all).substr(at, end - at));
    at = end + 1;
    if (part.empty()) continue;
    const std::size_t colon = part.find(':');
    if (colon == std::string_view::npos || colon == 0) return false;
    const std::string_view name = trimmed(part.substr(0, colon));
    if (!std::all_of(name.begin(), name.end(), [](char c) { return is_small(c) || c == '-'; })) return false;
    const std::string_view stem = name.substr(0, name.find('-'));
    if (!is_one_of(stem,
                   {"color",       "background",   "font",     "width",  "height", "display", "margin",   "padding",
                    "border",      "text",         "position", "left",   "top",    "right",   "bottom",   "float",
                    "visibility",  "overflow",     "z",        "cursor", "line",   "clear",   "vertical", "white",
                    "dialogwidth", "dialogheight", "filter",   "min",    "max",    "list",    "letter",   "opacity"}))
      return false;
    ++parts;
  }
  return parts != 0;
}

// "yyyy-mm-dd", "0.00", "#,##0", "H:i:s"
bool is_format(std::string_view text) {
  if (text.empty()) return false;
  std::size_t letters = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (is_wide(c)) return false;
    if (!is_letter(c)) continue;
    if (std::string_view("yYmMdDhHsSzZaAEijnNlFGgT").find(c) == std::string_view::npos) return false;
    ++letters;
  }
  const std::string all = small(text);
  return letters != 0 && letters < 12 &&
         (all.find("yy") != std::string::npos || all.find("mm") != std::string::npos ||
          all.find("h:i") != std::string::npos || all.find("hh") != std::string::npos || all == "y-m-d" ||
          all.find("m/d") != std::string::npos || all == "d.m.y");
}

// {id:"1",total:2}: an object as data
bool is_object(std::string_view text) {
  if ((!text.starts_with("{") || !text.ends_with("}")) && (!text.starts_with("[{") || !text.ends_with("}]")))
    return false;
  for (std::size_t at = text.find(':'); at != std::string_view::npos; at = text.find(':', at + 1))
    if (is_name_byte(text[at - 1]) && (text[at + 1] == '"' || text[at + 1] == '\'' || text[at + 1] == kOperandMark))
      return true;
  return false;
}

// "toolbar=no,width=300", "if(x){", "Provider=a;Data Source=b"
bool is_code(std::string_view text) {
  const std::string all = small(text);
  for (const std::string_view part : {"function(", "function (",   "return ",   "window.",   "document.", "this.",
                                      "var ",      "charset=",     "toolbar=",  "width=",    "height=",   "=yes",
                                      "=no",       "data source=", "driver=",   "provider=", "){",        ");",
                                      "();",       "&&",           "\":",       "||",        "==",        "!=",
                                      "=\"",       "='",           "<%",        "%>",        "<?",        "<!doctype",
                                      "<!--",      "2>&1",         "/dev/null", "; then ",   "; fi"})
    if (all.find(part) != std::string::npos && (part != "return " || all.starts_with(part)) &&
        (part != "var " || all.starts_with(part)))
      return true;
  const std::string_view end = trimmed(text);
  // "bgcolor = "
  const std::size_t equals = end.find('=');
  if (equals != std::string_view::npos && is_ordinary(trimmed(end.substr(0, equals)))) return true;
  return end.ends_with(";") || end.ends_with("{") || end == "}" || is_object(end);
}

// "Log4j", "ISO", "Foo!"
bool is_short_capitals(std::string_view word) {
  constexpr std::size_t kLongest = 4;
  return word.size() <= kLongest && std::all_of(word.begin(), word.end(), is_large) && word != "OK" && word != "YES" &&
         word != "NO" && word != "HELP";
}

bool is_product_name(std::string_view word) {
  return word.size() > 2 && is_large(word.front()) && std::any_of(word.begin(), word.end(), is_small) &&
         std::all_of(word.begin(), word.end(), [](char c) { return is_word_letter(c) || is_digit(c); });
}

// "Done.", "Loading...", "Really?", "Name: ", and "failed." after a value
bool ends_as_sentence(std::string_view text, std::string_view word) {
  if (text.empty() || is_short_capitals(word)) return false;
  const char last = text.back();
  if (is_small(word.front()) && text.front() == kOperandMark && (last == '.' || last == '!')) return true;
  if (is_small(word.front()) && !text.ends_with("...")) return false;
  return last == '.' || last == '!' || last == '?' ||
         (last == ':' && std::any_of(word.begin(), word.end(), is_small)) || text.ends_with("\u2026");
}

// "- None -", "-- Any --": the entry of a list that stands for no other
bool is_framed(std::string_view text, std::string_view word) {
  const std::size_t dashes = text.find_first_not_of('-');
  return dashes != 0 && dashes < text.size() && is_space(text[dashes]) && text.ends_with('-') && is_large(word.front());
}

Looks single_word(std::string_view text, std::string_view word) {
  if (is_dotted(word)) return {Look::kDotted, {}};
  if (!is_ordinary(word)) return {Look::kMachine, "a name of programs"};
  if (is_one_of(small(word), {"null", "true", "false", "undefined", "nothing", "nan", "nil", "void", "checked",
                              "selected", "disabled", "readonly", "multiple", "nowrap"}))
    return {Look::kConstant, {}};
  if (ends_as_sentence(text, word) || is_framed(text, word)) return {Look::kPhrase, {}};
  // "NOT_FOUND" without its "_": programs write their codes in capitals, too.
  const bool is_capitals = is_short_capitals(word) || (word.size() > 4 && std::ranges::all_of(word, is_large));
  return {is_small(word.front()) || is_capitals ? Look::kSmall : Look::kWord, {}};
}

// Replaces marks, blanks and symbols beyond ASCII, which are not letters, with ASCII characters.
std::string with_plain_marks(std::string_view text) {
  std::string result;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t length = std::max<std::size_t>(utf8_character_length(text.substr(at)), 1);
    const std::string_view character = text.substr(at, length);
    at += length;
    const char32_t c = length > 1 ? utf8_code_point(character) : U'\0';
    if (c == U'\u2019')
      result += '\'';
    else if (c == U'\u2026')
      result += "...";
    else if ((c >= 0x80 && c < 0xC0 && c != 0xAA && c != 0xB5 && c != 0xBA) || (c >= 0x2000 && c < 0x2C00) ||
             (c >= 0x3000 && c < 0x3005))
      result += ' ';
    else
      result += character;
  }
  return result;
}

// "en-US"
bool is_language(std::string_view text) {
  return text.size() == 5 && text[2] == '-' && is_letter(text[0]) && is_letter(text[1]) && is_large(text[3]) &&
         is_large(text[4]) && is_small(text[0]) == is_small(text[1]);
}

Looks look_at_plain(std::string_view text) {
  text = trimmed(text);
  if (std::none_of(text.begin(), text.end(), is_word_letter)) return {Look::kEmpty, {}};
  if (is_language(text)) return {Look::kMachine, "a language"};
  for (const std::string_view scheme : {"javascript:", "vbscript:"})
    if (small(text.substr(0, scheme.size())) == scheme) return {Look::kMachine, "an address"};
  // "module:name"
  const bool is_one = std::none_of(text.begin(), text.end(), [](char c) { return is_space(c) || c == kOperandMark; });
  if (const std::size_t colon = text.find(':'); is_one && colon != std::string_view::npos && is_gap(text, colon))
    return {Look::kMachine, "a name of programs"};
  if (is_query(text)) return {.look = Look::kMachine, .reason = "a query", .is_query = true};
  if (is_style(text)) return {Look::kMachine, "a style"};
  if (is_format(text)) return {Look::kMachine, "a format"};
  if (is_code(text)) return {Look::kMachine, "code"};
  std::size_t words = 0, machines = 0;
  std::string_view word;
  const std::vector<std::string_view> tokens = split(text);
  for (const std::string_view token : tokens) {
    if (std::none_of(token.begin(), token.end(), is_word_letter)) continue;
    const std::string_view core = bare(token);
    if (!is_machine_token(token) && is_ordinary(core)) {
      ++words;
      if (word.empty()) word = core;
    } else {
      ++machines;
    }
  }
  if (words == 0) {
    if (tokens.size() == 1 && machines == 1 && !is_address(tokens.front()) &&
        (is_dotted(bare(tokens.front())) || is_product_name(bare(tokens.front()))))
      return {Look::kDotted, {}};
    return {Look::kMachine, "a name, a path or an address"};
  }
  if (words == 1 && machines == 0) return single_word(text, word);
  // Mostly names: "a.b c=d of".
  if (machines > words * 2) return {Look::kMachine, "names of programs"};
  const bool has_sign = std::any_of(text.begin(), text.end(), [](char c) {
    return is_large(c) || is_wide(c) || c == '.' || c == '!' || c == '?' || c == ':' || c == ',' || c == kOperandMark;
  });
  if (words + machines == 2 && !has_sign) return {Look::kSmallPhrase, {}};
  const bool is_sentence =
      is_large(text.front()) && std::string_view(".!?").find(text.back()) != std::string_view::npos;
  const bool is_telling = is_large(text.front()) && words > 2 && machines == 0;
  return {.look = Look::kPhrase, .reason = {}, .is_sentence = is_sentence && words > 2, .is_telling = is_telling};
}

}  // namespace

Looks look_at(std::string_view text) { return look_at_plain(with_plain_marks(text)); }

}  // namespace kavo::script
