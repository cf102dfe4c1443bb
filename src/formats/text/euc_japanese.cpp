#include "formats/text/euc_japanese.h"

#include <utility>

namespace kavo {
namespace {

constexpr unsigned char kHalfWidth = 0x8E;  // leads a half-width katakana

bool is_high(unsigned char byte) { return byte >= 0xA1 && byte <= 0xFE; }
bool is_katakana(unsigned char byte) { return byte >= 0xA1 && byte <= 0xDF; }

// Converts two bytes of EUC to Shift-JIS. Both codings give row and cell of the same table, but Shift-JIS packs two
// rows into one lead byte.
std::pair<unsigned char, unsigned char> to_shift_jis(unsigned char first, unsigned char second) {
  const unsigned row = first - 0xA1u, cell = second - 0xA1u;
  const unsigned lead = row / 2 + (row < 62 ? 0x81 : 0xC1);
  const unsigned trail = row % 2 == 0 ? cell + (cell < 63 ? 0x40 : 0x41) : cell + 0x9F;
  return {static_cast<unsigned char>(lead), static_cast<unsigned char>(trail)};
}

std::pair<unsigned char, unsigned char> from_shift_jis(unsigned char lead, unsigned char trail) {
  const bool is_second_row = trail >= 0x9F;
  const unsigned row = (lead - (lead < 0xE0 ? 0x81u : 0xC1u)) * 2 + (is_second_row ? 1 : 0);
  const unsigned cell = is_second_row ? trail - 0x9Fu : trail - (trail < 0x7F ? 0x40u : 0x41u);
  return {static_cast<unsigned char>(row + 0xA1), static_cast<unsigned char>(cell + 0xA1)};
}

class EucJapanese final : public CodePage {
 public:
  unsigned number() const override { return kEucJapanese; }
  bool is_lead_byte(unsigned char byte) const override { return byte == kHalfWidth || is_high(byte); }

  std::u16string decode(std::string_view bytes) const override {
    std::string shift_jis;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
      const auto first = static_cast<unsigned char>(bytes[i]);
      const auto second = static_cast<unsigned char>(i + 1 < bytes.size() ? bytes[i + 1] : 0);
      if (first == kHalfWidth && is_katakana(second)) {
        shift_jis += bytes[++i];
      } else if (is_high(first) && is_high(second)) {
        const auto [lead, trail] = to_shift_jis(first, second);
        shift_jis += static_cast<char>(lead);
        shift_jis += static_cast<char>(trail);
        ++i;
      } else {
        shift_jis += first < 0x80 ? bytes[i] : '?';
      }
    }
    return page_->decode(shift_jis);
  }

  std::string encode(std::u16string_view text) const override {
    constexpr unsigned char kLastLead = 0xEF;  // beyond it are user-defined characters and duplicates
    std::string bytes;
    const std::string shift_jis = page_->encode(text);
    for (std::size_t i = 0; i < shift_jis.size(); ++i) {
      const auto first = static_cast<unsigned char>(shift_jis[i]);
      if (is_katakana(first)) {
        bytes += static_cast<char>(kHalfWidth);
        bytes += shift_jis[i];
      } else if (page_->is_lead_byte(first) && i + 1 < shift_jis.size()) {
        const auto second = static_cast<unsigned char>(shift_jis[++i]);
        if (first > kLastLead) {
          bytes += '?';
          continue;
        }
        const auto [row, cell] = from_shift_jis(first, second);
        bytes += static_cast<char>(row);
        bytes += static_cast<char>(cell);
      } else {
        bytes += first < 0x80 ? shift_jis[i] : '?';
      }
    }
    return bytes;
  }

 private:
  const std::unique_ptr<CodePage> page_ = make_code_page("932");
};

}  // namespace

std::unique_ptr<CodePage> make_euc_japanese() { return std::make_unique<EucJapanese>(); }

}  // namespace kavo
