#include "suite/filters/html/embedded_writing.h"

#include "platform/failure.h"
#include "suite/filters/script/script_writing.h"

namespace kavo::html {
namespace {

// Stands for what the server writes into a script, where only the script matters.
constexpr std::string_view kAnyValue = "_";

std::string as_markup(std::string_view text) {
  std::string markup;
  for (const char c : text) {
    switch (c) {
      case '&':
        markup += "&amp;";
        break;
      case '<':
        markup += "&lt;";
        break;
      case '>':
        markup += "&gt;";
        break;
      case '"':
        markup += "&quot;";
        break;
      default:
        markup += c;
    }
  }
  return markup;
}

}  // namespace

// Reads bytes of the rebuilt page as their language sees them.
EmbeddedValue EmbeddedWriting::read(std::string_view bytes) const {
  if (!coding_.is_utf16()) return read_embedded(bytes, !is_server(), coding_);
  std::string utf8;
  coding_.decode_run(bytes, utf8);
  return read_embedded(utf8, !is_server(), TextCoding(kUtf8CodePage));
}

// The hole as its language sees it.
Hole EmbeddedWriting::script_hole() const {
  Hole script = hole_;
  script.context = place_.script;
  script.original.clear();
  for (Hole::Code& code : script.codes) {
    const EmbeddedValue value = read(bytes_of(code));
    code.begin = script.original.size();
    std::size_t done = 0;
    for (const auto& server : value.server_code) {
      script.original.append(value.text, done, server.begin - done) += kAnyValue;
      done = server.end;
    }
    script.original.append(value.text, done);
    code.end = script.original.size();
  }
  script.index_codes();
  return script;
}

std::vector<EmbeddedWriting::Part> EmbeddedWriting::script_parts(std::string_view translation) const {
  const Hole script = script_hole();
  const TextCoding utf8(kUtf8CodePage);
  std::string text;
  script::ScriptWriting writing(script, utf8);
  writing.write(translation, text);
  std::vector<Part> parts;
  std::size_t done = 0;
  for (const script::ScriptWriting::WrittenCode& code : writing.codes()) {
    if (code.begin > done) parts.push_back({text.substr(done, code.begin - done)});
    parts.push_back({{}, &hole_.codes[code.number]});
    done = code.end;
  }
  if (done < text.size()) parts.push_back({text.substr(done)});
  return parts;
}

std::vector<EmbeddedWriting::Part> EmbeddedWriting::markup_parts(std::string_view translation) const {
  std::vector<Part> parts;
  CodedTextReader reader(translation);
  for (CodedPart part; reader.next(part);) {
    if (part.is_code)
      parts.push_back({{}, hole_.find(part)});
    else
      parts.push_back({as_markup(part.text)});
  }
  return parts;
}

void EmbeddedWriting::write(std::string_view translation, std::string& bytes) {
  const std::vector<Part> parts =
      place_.embedding == Embedding::kPage ? markup_parts(translation) : script_parts(translation);
  std::string meant;
  std::string written;
  for (const Part& part : parts) {
    if (part.code != nullptr) {
      written += bytes_of(*part.code);
      meant += read(bytes_of(*part.code)).text;
      continue;
    }
    std::string text;
    append_embedded(part.text, place_, text);
    meant += is_server() ? text : read_embedded(text, true, TextCoding(kUtf8CodePage)).text;
    encode_(text, written);
  }
  if (!is_server() && read(written).text != meant)
    throw failure(FailureNumber::kInvalidCall, place_of(hole_) + u": the translation would change the tag around it");
  bytes += written;
}

}  // namespace kavo::html
