#include "suite/pseudo_translation.h"

#include "suite/coded_text.h"

namespace kavo {
namespace {

// Letters of Western European code pages, which FrameMaker's own coding has too.
std::string_view accented(char letter) {
  switch (letter) {
    case 'A':
      return "À";
    case 'E':
      return "É";
    case 'I':
      return "Î";
    case 'N':
      return "Ñ";
    case 'O':
      return "Õ";
    case 'U':
      return "Ü";
    case 'a':
      return "á";
    case 'c':
      return "ç";
    case 'e':
      return "è";
    case 'i':
      return "ï";
    case 'n':
      return "ñ";
    case 'o':
      return "ô";
    case 'u':
      return "ü";
    case 'y':
      return "ÿ";
    default:
      return {};
  }
}

}  // namespace

std::string pseudo_translation(std::string_view coded, const TextCoding& coding) {
  std::string result = "[";
  std::string ignored;
  CodedTextReader reader(coded);
  for (CodedPart part; reader.next(part);) {
    if (part.is_code) {
      append_code(result, part.kind, part.text);
      continue;
    }
    for (const char c : part.text) {
      const std::string_view letter = accented(c);
      bool is_known = !letter.empty();
      if (is_known) coding.encode(letter, ignored, [&](std::string_view, std::string&) { is_known = false; });
      if (is_known)
        result += letter;
      else
        result += c;
    }
    ignored.clear();
  }
  return result += ']';
}

}  // namespace kavo
