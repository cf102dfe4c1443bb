#include "suite/document/xliff_package.h"

#include <algorithm>

#include "common/block_reader.h"
#include "common/document_names.h"
#include "common/path_parts.h"
#include "common/pending_file.h"
#include "platform/failure.h"
#include "platform/formatted.h"
#include "platform/ports.h"
#include "platform/unicode.h"
#include "suite/document/base64.h"
#include "suite/document/xliff_outline.h"

namespace kavo {
namespace {

// Converts ASCII to the document's coding and back.
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

// The attributes of a start tag that declare namespaces, each with the blank before it.
std::vector<std::string> declarations_in(std::string_view tag) {
  std::vector<std::string> declarations;
  for (std::size_t at = tag.find("xmlns"); at != tag.npos; at = tag.find("xmlns", at + 1)) {
    const std::size_t open = tag.find_first_of("\"'", at);
    const std::size_t close = open == tag.npos ? open : tag.find(tag[open], open + 1);
    if (close == tag.npos) break;
    declarations.push_back(' ' + std::string(tag.substr(at, close + 1 - at)));
    at = close;
  }
  return declarations;
}

// The name of a declaration: " xmlns:x=".
std::string_view name_of(std::string_view declaration) { return declaration.substr(0, declaration.find('=') + 1); }

// Writes the documents of a package one after the other.
class Packer {
 public:
  Packer(std::span<const BilingualDocument* const> documents, std::u16string_view target)
      : documents_(documents), file_(target) {}

  void pack() {
    for (const BilingualDocument* const document : documents_) {
      outlines_.push_back(read_outline(document->path()));
      const XliffOutline& outline = outlines_.back();
      if (documents_.size() > 1 &&
          (outline.coding == XmlCoding::kAsciiBased || outline.coding != outlines_.front().coding))
        refuse(*document, ": documents with different codings cannot be in one file: save each of them in UTF-8");
      if (outline.files.size() != 1) refuse(*document, ": the document holds more than one file");
    }
    BlockReader first(documents_.front()->path());
    const AsciiForm form(outlines_.front().coding);
    copy_up_to(first, outlines_.front().files.front().whole.begin);
    root_declarations_ = declarations_in(root_tag(0));
    write_document(0, first);
    for (std::size_t i = 1; i < documents_.size(); ++i) {
      file_.write(form.to_bytes("\n"));
      BlockReader reader(documents_[i]->path());
      reader.seek(outlines_[i].files.front().whole.begin);
      write_document(i, reader);
    }
    copy_up_to(first, first.size());
    first = BlockReader();  // an open file cannot be replaced everywhere
    file_.commit();
  }

 private:
  [[noreturn]] static void refuse(const BilingualDocument& document, const std::string& reason) {
    throw failure(FailureNumber::kInvalidCall, to_utf16(path_to_host(document.path()) + reason));
  }

  void copy_up_to(BlockReader& reader, std::uint64_t position) {
    read_up_to(reader, position, [&](std::string_view bytes) { file_.write(bytes); });
  }

  std::string root_tag(std::size_t index) const {
    const XmlPlace place = outlines_[index].root_tag;
    std::string bytes;
    BlockReader reader(documents_[index]->path());
    reader.seek(place.begin);
    read_up_to(reader, place.end, [&](std::string_view piece) { bytes += piece; });
    return AsciiForm(outlines_[index].coding).to_text(bytes);
  }

  // Writes the file element with the skeleton inside. The reader is at the element's beginning, and afterwards at its
  // end.
  void write_document(std::size_t index, BlockReader& reader) {
    const BilingualDocument& document = *documents_[index];
    const XliffOutline& outline = outlines_[index];
    const XliffOutline::FilePart& part = outline.files.front();
    const AsciiForm form(outline.coding);
    if (index != 0) write_file_tag(index, reader);
    if (!part.has_skeleton_inside) {
      const auto skeleton = document.locate_skeleton();
      if (!skeleton)
        throw failure(FailureNumber::kFileNotFound,
                      to_utf16("The skeleton of " + path_to_host(document.path()) + " is missing"));
      if (part.skeleton.end == 0) refuse(document, ": the document names no skeleton");
      copy_up_to(reader, part.skeleton_tag.begin);
      std::string bytes;
      read_up_to(reader, part.skeleton.end, [&](std::string_view piece) { bytes += piece; });
      write_skeleton(skeleton->path, form, form.to_text(bytes));
    }
    copy_up_to(reader, part.whole.end);
  }

  // The namespaces that the document's root declares, but not the package's, are declared here.
  void write_file_tag(std::size_t index, BlockReader& reader) {
    const AsciiForm form(outlines_[index].coding);
    std::string bytes;
    read_up_to(reader, outlines_[index].files.front().start_tag.end, [&](std::string_view piece) { bytes += piece; });
    const std::string tag = form.to_text(bytes);
    std::string missing;
    for (const std::string& declaration : declarations_in(root_tag(index)))
      if (std::ranges::find(root_declarations_, declaration) == root_declarations_.end() &&
          tag.find(name_of(declaration)) == tag.npos)
        missing += declaration;
    const std::size_t name_end = form.to_bytes(tag.substr(0, tag.find_first_of(" \t\r\n/>"))).size();
    file_.write(std::string_view(bytes).substr(0, name_end));
    file_.write(form.to_bytes(missing));
    file_.write(std::string_view(bytes).substr(name_end));
  }

  // Writes the skeleton in the place of the old element.
  void write_skeleton(const std::u16string& path, const AsciiForm& form, const std::string& old) {
    // "x:" of "<x:skl>"
    const std::string prefix = old.substr(1, old.find("skl") - 1);
    file_.write(form.to_bytes("<" + prefix + "skl><" + prefix + "internal-file form=\"base64\">"));
    Base64Encoder encoder;
    for (BlockReader content(path); content.more(); content.consume(content.window().size())) {
      std::string text;
      encoder.encode(content.window(), text);
      file_.write(form.to_bytes(text));
    }
    std::string end;
    encoder.finish(end);
    file_.write(form.to_bytes(end + "</" + prefix + "internal-file></" + prefix + "skl>"));
  }

  std::span<const BilingualDocument* const> documents_;
  PendingFile file_;
  std::vector<XliffOutline> outlines_;
  std::vector<std::string> root_declarations_;  // of the package
};

// True when the bytes rule out a second file element, in codings that contain ASCII. An XML parser takes many times as
// long, and most documents that are rebuilt are long and have only one.
bool has_one_file_tag(std::u16string_view path) {
  constexpr std::string_view kName = "file";
  std::size_t count = 0;
  char before = 0;  // the byte before the window
  for (BlockReader reader(path);;) {
    const std::string_view window = reader.window();
    if (reader.position() == 0 && window.size() >= 2 &&
        (window[0] == 0 || window[1] == 0 || window[0] == '\xFE' || window[0] == '\xFF'))
      return false;  // UTF-16
    std::size_t done = 0;
    for (std::size_t at = window.find(kName); at != window.npos; at = window.find(kName, done)) {
      const char last = at == 0 ? before : window[at - 1];
      count += last == '<' || last == ':' ? 1 : 0;
      done = at + kName.size();
    }
    if (count > 1) return false;
    // The window may end inside the name.
    done = std::max(done, window.size() - std::min(window.size(), kName.size() - 1));
    if (done != 0) before = window[done - 1];
    reader.consume(done);
    if (!reader.more()) return count == 1;
  }
}

}  // namespace

void pack_documents(std::span<const BilingualDocument* const> documents, std::u16string_view target) {
  Packer(documents, target).pack();
}

bool is_package(std::u16string_view path) {
  try {
    const bool is_document = equal_ignoring_ascii_case(extension_of(path), u"tud");
    if (is_document && has_one_file_tag(path)) return false;
    const XliffOutline outline = read_outline(path);
    return outline.files.size() > 1 || (outline.files.front().has_skeleton_inside && !is_document);
  } catch (const failure& reason) {
    if (reason.is(FailureNumber::kInvalidCall) || !ports().files->info(path)) return false;
    throw failure(reason.number(), formatted(u"{} cannot be read: {}", path_to_host(path), reason.description()),
                  reason.source());
  }
}

std::vector<std::u16string> unpack_documents(std::u16string_view path, std::u16string_view folder) {
  const XliffOutline outline = read_outline(path);
  std::vector<std::u16string> documents;
  for (const XliffOutline::FilePart& part : outline.files) {
    if (!part.has_skeleton_inside)
      throw failure(FailureNumber::kInvalidCall,
                    to_utf16(path_to_host(path) + ": a document in it has no skeleton inside"));
    const std::u16string unnamed = std::u16string(folder) + u"\\unpacked";
    BlockReader reader(path);
    PendingFile file(unnamed);
    const auto keep = [&](std::string_view bytes) { file.write(bytes); };
    read_up_to(reader, outline.files.front().whole.begin, keep);
    reader.seek(part.whole.begin);
    read_up_to(reader, part.whole.end, keep);
    reader.seek(outline.files.back().whole.end);
    read_up_to(reader, reader.size(), keep);
    file.commit();

    const TudHeader header = header_of(unnamed);
    if (header.original.empty() || header.target_language.empty())
      throw failure(FailureNumber::kInvalidCall,
                    to_utf16(path_to_host(path) + ": a document in it does not say what it was made from"));
    documents.push_back(tud_name_of(std::u16string(folder) + u"\\" + core_file_name(header.original),
                                    to_utf16(header.target_language)));
    if (ports().files->info(documents.back()))
      throw failure(FailureNumber::kInvalidCall,
                    to_utf16(path_to_host(path) + ": two documents in it are called " + header.original));
    ports().files->rename_file(unnamed, documents.back());
  }
  return documents;
}

}  // namespace kavo
