#include "suite/skeleton_packing.h"

#include <algorithm>

#include "common/block_reader.h"
#include "common/pending_file.h"
#include "platform/failure.h"
#include "suite/base64.h"

namespace kavo {
namespace {

class SkeletonPlace final : public TudEvents {
 public:
  void skeleton_place(XmlPlace start, XmlPlace all) override {
    start_tag = start;
    whole = all;
  }
  XmlPlace start_tag;
  XmlPlace whole;
};

// ASCII in the document's coding, and back.
class AsciiForm {
 public:
  explicit AsciiForm(XmlCoding coding)
      : low_(coding == XmlCoding::kUtf16Big ? 1 : 0),
        width_(coding == XmlCoding::kUtf16Little || coding == XmlCoding::kUtf16Big ? 2 : 1) {}
  std::string to_bytes(std::string_view text) const {
    if (width_ == 1) return std::string(text);
    std::string bytes(text.size() * 2, '\0');
    for (std::size_t i = 0; i < text.size(); ++i) bytes[i * 2 + low_] = text[i];
    return bytes;
  }
  std::string to_text(std::string_view bytes) const {
    if (width_ == 1) return std::string(bytes);
    std::string text;
    for (std::size_t i = low_; i < bytes.size(); i += 2) text += bytes[i];
    return text;
  }

 private:
  std::size_t low_;
  std::size_t width_;
};

// Hands everything up to a position of the file to `take`.
template <class Take>
void read_up_to(BlockReader& reader, std::uint64_t position, const Take& take) {
  while (reader.position() < position) {
    if (reader.window().empty() && !reader.more()) return;
    const auto length = std::min<std::uint64_t>(reader.window().size(), position - reader.position());
    take(reader.window().substr(0, static_cast<std::size_t>(length)));
    reader.consume(static_cast<std::size_t>(length));
  }
}

}  // namespace

void copy_with_skeleton(const BilingualDocument& document, std::u16string_view target) {
  if (document.header().has_skeleton_inside) {
    copy_file(document.path(), target);
    return;
  }
  const auto skeleton = document.locate_skeleton();
  if (!skeleton) throw failure(FailureNumber::kFileNotFound, u"The skeleton of " + document.path() + u" is missing");
  SkeletonPlace place;
  XmlCoding coding = XmlCoding::kUtf8;
  read_tud(document.path(), place, nullptr, &coding);
  if (place.whole.end == 0)
    throw failure(FailureNumber::kInvalidCall, document.path() + u": the document names no skeleton");

  PendingFile file(target);
  BlockReader reader(document.path());
  const auto keep = [&](std::string_view bytes) { file.write(bytes); };
  read_up_to(reader, place.start_tag.begin, keep);
  std::string bytes;
  read_up_to(reader, place.whole.end, [&](std::string_view piece) { bytes += piece; });
  const AsciiForm form(coding);
  const std::string old = form.to_text(bytes);
  // "x:" of "<x:skl>"
  const std::string prefix = old.substr(1, old.find("skl") - 1);
  file.write(form.to_bytes("<" + prefix + "skl><" + prefix + "internal-file form=\"base64\">"));
  Base64Encoder encoder;
  for (BlockReader content(skeleton->path); content.more(); content.consume(content.window().size())) {
    std::string text;
    encoder.encode(content.window(), text);
    file.write(form.to_bytes(text));
  }
  std::string end;
  encoder.finish(end);
  file.write(form.to_bytes(end + "</" + prefix + "internal-file></" + prefix + "skl>"));
  read_up_to(reader, reader.size(), keep);
  reader = BlockReader();  // an open file cannot be replaced everywhere
  file.commit();
}

}  // namespace kavo
