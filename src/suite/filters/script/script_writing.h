// From a translation to the bytes of a script, and the proof that they are the script that they were.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "suite/filters/filter.h"
#include "suite/filters/script/script_place.h"

namespace kavo::script {

class ScriptWriting {
 public:
  // Both must outlive the object; `coding` is that of the rebuilt file.
  ScriptWriting(const Hole& hole, const TextCoding& coding);

  // Appends the translation (coded text). Throws `failure` 5 with the place when a value stands where it may not, when
  // a character can be written in no way, and when the result would not be read as it is meant.
  void write(std::string_view translation, std::string& bytes);

  // A code that write() put out as it was; places in what it appended.
  struct WrittenCode {
    std::size_t number = 0;  // in Hole::codes
    std::size_t begin = 0;
    std::size_t end = 0;
  };
  const std::vector<WrittenCode>& codes() const { return written_codes_; }

 private:
  struct Part {
    std::string_view text;  // of a run
    const Hole::Code* code = nullptr;
  };

  void text(std::string_view text, bool before_name, std::string& bytes);
  std::string in_markup(std::string_view text) const;
  void code(const Part& part, const Part* next, std::string& bytes);
  void go_to(LiteralForm form, std::string& bytes);
  std::string_view bytes_of(const Hole::Code& code) const;
  const SegmentPlace::Code& place_of_code(const Hole::Code& code) const;
  void check_order(const std::vector<Part>& parts) const;
  void add_tokens(LiteralForm before, std::string_view bytes, LiteralForm after, std::string& tokens,
                  bool& is_whole) const;
  [[noreturn]] void refuse(std::u16string_view reason) const;

  const Hole& hole_;
  const TextCoding& coding_;
  SegmentPlace place_;
  LiteralForm form_ = LiteralForm::kDouble;  // of the literal being written
  std::string expected_;                     // the tokens outside of literals
  std::vector<WrittenCode> written_codes_;
};

}  // namespace kavo::script
