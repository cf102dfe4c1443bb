// Turns a translation into the bytes of a script, and proves that the script stays what it was.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "suite/filters/filter.h"
#include "suite/filters/script/script_place.h"

namespace kavo::script {

class ScriptWriting {
 public:
  // Both must outlive the object. `coding` is the coding of the rebuilt file.
  ScriptWriting(const Hole& hole, const TextCoding& coding);

  // Appends the translation (coded text). Throws `failure` 5 with the place when a value is where it must not be, when
  // a character cannot be written in any way, and when the result would be read as something else.
  void write(std::string_view translation, std::string& bytes);

  // A code that write() has appended unchanged, and where it is in what was appended.
  struct WrittenCode {
    std::size_t number = 0;  // in Hole::codes
    std::size_t begin = 0;
    std::size_t end = 0;
  };
  const std::vector<WrittenCode>& codes() const { return written_codes_; }

 private:
  struct Part {
    std::string_view text;  // the text of a run
    const Hole::Code* code = nullptr;
  };
  // A server block inside a code: another language, which the script around it does not see.
  struct ServerBlock {
    std::size_t begin = 0;
    std::size_t end = 0;
  };

  void text(std::string_view text, bool before_name, std::string& bytes);
  std::string in_markup(std::string_view text) const;
  std::string without_tags(std::string_view text) const;
  void code(const Part& part, const Part* next, std::string& bytes);
  void go_to(LiteralForm form, std::string& bytes);
  std::string_view bytes_of(const Hole::Code& code) const;
  const SegmentPlace::Code& place_of_code(const Hole::Code& code) const;
  void check_order(const std::vector<Part>& parts) const;
  std::vector<ServerBlock> server_blocks_in(std::string_view code) const;
  bool add_tokens(LiteralForm before, std::string_view bytes, LiteralForm after,
                  std::span<const ServerBlock> server_blocks, std::string& tokens) const;
  [[noreturn]] void refuse(std::u16string_view reason) const;

  const Hole& hole_;
  const TextCoding& coding_;
  SegmentPlace place_;
  LiteralForm form_ = LiteralForm::kDouble;  // the form of the literal that is being written
  std::string expected_;                     // the tokens outside of literals
  std::vector<ServerBlock> server_blocks_;   // in the bytes that are being written
  std::vector<WrittenCode> written_codes_;
};

}  // namespace kavo::script
