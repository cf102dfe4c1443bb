// What the common helpers need to know about a form and a text box. The classes of `forms` derive from these.
#pragma once

#include <cstdint>
#include <string>

namespace kavo {

struct Extent {
  std::int32_t width = 0;
  std::int32_t height = 0;
};

// A loaded form. It is in the list of loaded forms for as long as the object lives.
class FormFrame {
 public:
  explicit FormFrame(std::u16string name);
  virtual ~FormFrame();
  FormFrame(const FormFrame&) = delete;
  FormFrame& operator=(const FormFrame&) = delete;

  const std::u16string& name() const { return name_; }
  virtual Extent extent() const = 0;         // in pixels
  virtual Extent screen_extent() const = 0;  // of the screen that shows it
  virtual void move(std::int32_t left, std::int32_t top) = 0;

  static bool is_loaded(std::u16string_view name);

 private:
  std::u16string name_;
};

class TextBoxFrame {
 public:
  virtual ~TextBoxFrame() = default;
  virtual std::int32_t text_length() const = 0;
  virtual void select(std::int32_t start, std::int32_t length) = 0;
};

}  // namespace kavo
