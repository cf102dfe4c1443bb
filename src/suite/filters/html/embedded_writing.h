// Turns the translation of an embedded text into the bytes of its tag, and proves that a browser will read the intended
// script there.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "suite/filters/html/embedded_text.h"

namespace kavo::html {

class EmbeddedWriting {
 public:
  // Appends text in the coding of the rebuilt page. The callee decides what becomes of characters that this coding
  // lacks.
  using Encode = std::function<void(std::string_view utf8, std::string& bytes)>;

  // `coding` is the coding of the rebuilt page. It, `hole` and the context of `place` must outlive the object.
  EmbeddedWriting(const Hole& hole, const EmbeddedPlace& place, const TextCoding& coding, Encode encode)
      : hole_(hole), place_(place), coding_(coding), encode_(std::move(encode)) {}

  // Throws `failure` 5 with the place when the translation cannot be written there.
  void write(std::string_view translation, std::string& bytes);

 private:
  struct Part {
    std::string text;  // UTF-8, as the embedded language sees it
    const Hole::Code* code = nullptr;
  };
  std::vector<Part> script_parts(std::string_view translation) const;
  std::vector<Part> markup_parts(std::string_view translation) const;
  EmbeddedValue read(std::string_view bytes) const;
  Hole script_hole() const;
  std::string_view bytes_of(const Hole::Code& code) const {
    return std::string_view(hole_.original).substr(code.begin, code.end - code.begin);
  }
  bool is_server() const { return place_.embedding == Embedding::kServer; }

  const Hole& hole_;
  EmbeddedPlace place_;
  const TextCoding& coding_;
  Encode encode_;
};

}  // namespace kavo::html
