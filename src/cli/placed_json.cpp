#include "cli/placed_json.h"

#include <iterator>
#include <vector>

#include "platform/failure.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

using nlohmann::ordered_json;

// Reads characters and counts the lines that have passed.
class CountingIterator {
 public:
  using iterator_category = std::input_iterator_tag;
  using value_type = char;
  using difference_type = std::ptrdiff_t;
  using pointer = const char*;
  using reference = const char&;

  CountingIterator(const char* at, std::size_t* line) : at_(at), line_(line) {}
  reference operator*() const { return *at_; }
  CountingIterator& operator++() {
    if (*at_++ == '\n') ++*line_;
    return *this;
  }
  CountingIterator operator++(int) {
    CountingIterator before = *this;
    ++*this;
    return before;
  }
  bool operator==(const CountingIterator& other) const { return at_ == other.at_; }

 private:
  const char* at_;
  std::size_t* line_;
};

// Notes the line of each key. The reader has just passed the key's last quote when it reports it.
class KeyLines final : public nlohmann::json_sax<ordered_json> {
 public:
  KeyLines(std::map<std::string, std::size_t>& lines, const std::size_t& line) : lines_(lines), line_(line) {}

  bool null() override { return value(); }
  bool boolean(bool) override { return value(); }
  bool number_integer(number_integer_t) override { return value(); }
  bool number_unsigned(number_unsigned_t) override { return value(); }
  bool number_float(number_float_t, const string_t&) override { return value(); }
  bool string(string_t&) override { return value(); }
  bool binary(binary_t&) override { return value(); }
  bool start_object(std::size_t) override { return begin(); }
  bool start_array(std::size_t) override { return begin(); }
  bool end_object() override { return end(); }
  bool end_array() override { return end(); }
  bool key(string_t& name) override {
    keys_.back() = name;
    const auto [known, is_new] = lines_.try_emplace(pointer(), line_);
    if (!is_new) doubled = name;
    return is_new;
  }
  bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception&) override { return false; }

  std::string doubled;  // the key that occurs twice

 private:
  static bool value() { return true; }
  bool begin() {
    keys_.emplace_back();
    return true;
  }
  bool end() {
    keys_.pop_back();
    return true;
  }
  std::string pointer() const {
    std::string text;
    for (const std::string& key : keys_) text += pointer_step(key);
    return text;
  }

  std::map<std::string, std::size_t>& lines_;
  const std::size_t& line_;
  std::vector<std::string> keys_;  // of each open object or list
};

}  // namespace

std::string pointer_step(std::string_view key) {
  std::string step = "/";
  for (const char c : key) {
    if (c == '~')
      step += "~0";
    else if (c == '/')
      step += "~1";
    else
      step += c;
  }
  return step;
}

PlacedJson::PlacedJson(std::string_view text, std::string name) : name_(std::move(name)) {
  if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
  std::size_t line = 1;
  KeyLines handler(lines_, line);
  const CountingIterator begin(text.data(), &line), end(text.data() + text.size(), &line);
  if (ordered_json::sax_parse(begin, end, &handler)) {
    value_ = ordered_json::parse(text);
    return;
  }
  const std::string place = name_ + ":" + std::to_string(line) + ": ";
  throw failure(FailureNumber::kInvalidCall,
                to_utf16(place + (handler.doubled.empty()
                                      ? "this is not JSON: here or just before, a comma, a quote or "
                                        "a bracket is missing or superfluous"
                                      : "the key \"" + handler.doubled + "\" occurs twice in the same object")));
}

std::string PlacedJson::place(std::string pointer) const {
  for (; !pointer.empty(); pointer.resize(pointer.rfind('/')))
    if (const auto found = lines_.find(pointer); found != lines_.end())
      return name_ + ":" + std::to_string(found->second) + ": ";
  return name_ + ": ";
}

}  // namespace kavo
