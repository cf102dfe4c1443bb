// Code pages as tables, filled by asking the C library's converter once for every character. The converter itself is
// not used on documents: its descriptors keep state, cost a call for each block and disagree with Windows about invalid
// bytes.
#include "platform/code_page.h"

#include <fcntl.h>
#include <iconv.h>

#include <array>
#include <cerrno>
#include <map>
#include <mutex>
#include <optional>
#include <vector>

#include "platform/adapters.h"
#include "platform/failure.h"
#include "platform/formatted.h"
#include "platform/posix/host.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

constexpr unsigned kUtf8 = 65001;
constexpr char16_t kEscapeBase = 0xDC00;

class Utf8CodePage final : public CodePage {
 public:
  unsigned number() const override { return kUtf8; }
  bool is_lead_byte(unsigned char) const override { return false; }
  std::u16string decode(std::string_view bytes) const override { return to_utf16(bytes); }
  std::string encode(std::u16string_view text) const override { return to_utf8(text); }
};

// Gives the answers of IsDBCSLeadByteEx.
bool is_lead_byte_of(unsigned number, unsigned char byte) {
  switch (number) {
    case 932:
      return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC);
    case 936:
    case 949:
    case 950:
      return byte >= 0x81 && byte <= 0xFE;
    default:
      return false;
  }
}

class Converter {
 public:
  Converter(const char* to, const char* from) : descriptor_(::iconv_open(to, from)) {
    if (reinterpret_cast<std::intptr_t>(descriptor_) != -1) return;
    const int error = errno;
    // iconv_open(3) sets EINVAL whatever was wrong with the converter's file, even when no more files can be opened. This
    // throws the reason then.
    open_host("/dev/null", O_RDONLY);
    throw failure(FailureNumber::kDeviceError,
                  formatted(u"The system's converter from {} to {} cannot be loaded (iconv_open: {}). Install the "
                            u"package of the C library again",
                            from, to, host_failure(error).description()));
  }
  ~Converter() { ::iconv_close(descriptor_); }
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;

  // One character in the other encoding, at most 8 bytes; nothing when it does not exist there or only a similar one
  // does.
  std::optional<std::string> convert(std::string_view character) {
    ::iconv(descriptor_, nullptr, nullptr, nullptr, nullptr);
    std::array<char, 4> in{};
    character.copy(in.data(), in.size());
    std::array<char, 8> out;
    char* from = in.data();
    char* to = out.data();
    std::size_t from_left = character.size();
    std::size_t to_left = out.size();
    if (::iconv(descriptor_, &from, &from_left, &to, &to_left) != 0) return std::nullopt;
    // Some converters hold a letter back in case an accent follows.
    if (::iconv(descriptor_, nullptr, nullptr, &to, &to_left) != 0) return std::nullopt;
    return std::string(out.data(), out.size() - to_left);
  }

 private:
  iconv_t descriptor_;
};

// All characters of one code page. The code of a character is its byte, or lead byte * 256 + trail byte. An entry 0
// means that there is no such character, except for the character 0 itself.
struct Tables {
  // UTF-16 units by code.
  std::vector<char16_t> units = std::vector<char16_t>(0x10000);
  // Codes by UTF-16 unit.
  std::vector<std::uint16_t> bytes = std::vector<std::uint16_t>(0x10000);
};

std::uint16_t code_of(std::string_view bytes) {
  std::uint16_t code = 0;
  for (const char byte : bytes) code = static_cast<std::uint16_t>(code << 8 | static_cast<unsigned char>(byte));
  return code;
}

void add_decoded(Converter& converter, std::string_view bytes, Tables& tables) {
  const std::optional<std::string> unit = converter.convert(bytes);
  if (!unit || unit->size() != 2) return;
  const auto low = static_cast<unsigned char>((*unit)[0]);
  const auto high = static_cast<unsigned char>((*unit)[1]);
  tables.units[code_of(bytes)] = static_cast<char16_t>(high << 8 | low);
}

std::string converter_name(unsigned number) {
  switch (number) {
    case 10000:
      return "MACINTOSH";
    case 10007:
      return "MAC-CYRILLIC";
    case 10029:
      return "MAC-CENTRALEUROPE";
    default:
      return "CP" + std::to_string(number);
  }
}

Tables make_tables(unsigned number) {
  Tables tables;
  const std::string name = converter_name(number);
  Converter decoder("UTF-16LE", name.c_str());
  for (int first = 0; first < 256; ++first) {
    const std::array<char, 2> lead = {static_cast<char>(first), 0};
    if (!is_lead_byte_of(number, static_cast<unsigned char>(first))) {
      add_decoded(decoder, {lead.data(), 1}, tables);
      continue;
    }
    for (int second = 0; second < 256; ++second) {
      const std::array<char, 2> pair = {static_cast<char>(first), static_cast<char>(second)};
      add_decoded(decoder, {pair.data(), 2}, tables);
    }
  }
  // Where two codes mean one character, the converter knows which of them to write.
  Converter encoder(name.c_str(), "UTF-16LE");
  for (unsigned unit = 1; unit < 0x10000; ++unit) {
    if (unit >= 0xD800 && unit <= 0xDFFF) continue;
    const std::array<char, 2> little_endian = {static_cast<char>(unit & 0xFF), static_cast<char>(unit >> 8)};
    const std::optional<std::string> code = encoder.convert({little_endian.data(), 2});
    if (!code || code->empty() || code->size() > 2) continue;
    const bool is_pair = is_lead_byte_of(number, static_cast<unsigned char>(code->front()));
    if (is_pair == (code->size() == 2)) tables.bytes[unit] = code_of(*code);
  }
  return tables;
}

// Made at the first use of a code page and then kept, because it takes some milliseconds.
const Tables& tables_of(unsigned number) {
  static std::mutex mutex;
  static std::map<unsigned, Tables> made;
  const std::lock_guard lock(mutex);
  const auto found = made.find(number);
  return found != made.end() ? found->second : made.emplace(number, make_tables(number)).first->second;
}

class TableCodePage final : public CodePage {
 public:
  explicit TableCodePage(unsigned number) : number_(number), tables_(tables_of(number)) {}

  unsigned number() const override { return number_; }
  bool is_lead_byte(unsigned char byte) const override { return is_lead_byte_of(number_, byte); }

  std::u16string decode(std::string_view bytes) const override {
    std::u16string text;
    text.reserve(bytes.size());
    for (std::size_t i = 0; i < bytes.size(); ++i) {
      const auto byte = static_cast<unsigned char>(bytes[i]);
      std::size_t code = byte;
      if (is_lead_byte(byte)) {
        code = i + 1 < bytes.size() ? std::size_t{byte} << 8 | static_cast<unsigned char>(bytes[i + 1]) : 0;
        if (tables_.units[code] != 0) ++i;
      }
      const bool is_invalid = tables_.units[code] == 0 && byte != 0;
      text += is_invalid ? static_cast<char16_t>(kEscapeBase + byte) : tables_.units[code];
    }
    return text;
  }

  std::string encode(std::u16string_view text) const override {
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
      const char16_t unit = text[i];
      const std::uint16_t code = tables_.bytes[unit];
      if (code > 0xFF) bytes += static_cast<char>(code >> 8);
      if (code != 0 || unit == 0) {
        bytes += static_cast<char>(code & 0xFF);
      } else if (unit >= kEscapeBase + 0x80 && unit <= kEscapeBase + 0xFF) {
        bytes += static_cast<char>(unit - kEscapeBase);
      } else {
        bytes += '?';
        const bool is_high_half = unit >= 0xD800 && unit <= 0xDBFF;
        if (is_high_half && i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] <= 0xDFFF) ++i;
      }
    }
    return bytes;
  }

 private:
  unsigned number_;
  const Tables& tables_;
};

}  // namespace

// This is only the default. The command replaces it with the code page of the document.
const CodePage& system_code_page() {
  static const Utf8CodePage code_page;
  return code_page;
}

std::unique_ptr<CodePage> make_code_page(std::string_view name) {
  const unsigned number = code_page_number(name);
  if (number == kUtf8) return std::make_unique<Utf8CodePage>();
  return std::make_unique<TableCodePage>(number);
}

}  // namespace kavo
