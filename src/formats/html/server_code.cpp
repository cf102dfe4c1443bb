#include "formats/html/server_code.h"

#include "common/byte_scan.h"

namespace kavo {

bool ServerCode::begins(std::string_view text) noexcept {
  if (text.size() < 2 || text[0] != '<') return false;
  if (text[1] == '%') return true;
  if (text[1] != '?') return false;
  // "<?php", "<?=" and "<? " are code; "<?xml ...>" and other processing instructions are not.
  if (text.size() < 3) return false;
  const char c = text[2];
  return c == '=' || c == ' ' || c == '\t' || c == '\r' || c == '\n' ||
         begins_with_ignoring_case(text.data() + 2, text.data() + text.size(), "php");
}

void ServerCode::enter(std::uint64_t position, bool php) {
  active_ = in_block_ = true;
  in_tag_ = false;
  closer_ = php ? '?' : '%';
  quote_ = last_ = 0;
  position_ = position + 2;
}

void ServerCode::enter_in_tag(std::uint64_t position, bool php, char quote) {
  enter(position, php);
  in_tag_ = true;
  quote_ = quote;
}

void ServerCode::feed(std::string_view bytes) {
  const char* p = bytes.data();
  const char* const end = p + bytes.size();
  for (; p != end && active_; ++p) {
    if (in_block_) {
      if (*p == '>' && last_ == closer_) {
        in_block_ = false;
        active_ = in_tag_;
        last_ = 0;
        continue;
      }
    } else if (last_ == '<' && (*p == '%' || *p == '?')) {
      in_block_ = true;
      closer_ = *p;
      last_ = 0;
      continue;
    } else if (quote_ != 0) {
      if (*p == quote_) quote_ = 0;
    } else if (*p == '"' || *p == '\'') {
      quote_ = *p;
    } else if (*p == '>') {
      active_ = false;
      continue;
    }
    last_ = *p;
  }
  position_ += bytes.size();
}

}  // namespace kavo
