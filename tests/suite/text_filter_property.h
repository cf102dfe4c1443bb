// What must hold for a text of any bytes, for the fuzzer and its replayed seeds.
#pragma once

#include <string>
#include <string_view>

#include "common/block_reader.h"
#include "common/tud_names.h"
#include "platform/ports.h"
#include "suite/bilingual_document.h"
#include "suite/conversion.h"
#include "suite/pseudo_translation.h"
#include "support/memory_files.h"

namespace kavo::test {

// "" when it holds: unchanged the text comes back to the byte; translated, rebuilt and converted again it gives the
// translations, all of them, in order. The first byte of the input chooses the block size, the second the coding and
// whether it is a script file.
inline std::string broken_text_filter_property(std::string_view input) {
  if (input.size() < 2) return {};
  const BlockSizeScope blocks(static_cast<unsigned char>(input[0]) % 64 + 1u);
  const unsigned choice = static_cast<unsigned char>(input[1]);
  constexpr unsigned kCodePages[] = {65001, 1252, 932};
  const std::string_view bytes = input.substr(2);
  MemoryFiles files;
  PortsScope scope;
  ports().files = &files;

  const std::u16string extension = choice / 3 % 2 == 0 ? u".txt" : u".scr";
  const auto convert = [&](const std::u16string& stem) {
    ConversionRequest request;
    request.document = u"C:\\work\\" + stem + extension;
    request.tud = tud_name_of(request.document, u"FR");
    request.source_language = u"EN-US";
    request.target_language = u"FR";
    request.source_code_page = kCodePages[choice % 3];
    request.filter = u"K19TXT";
    ProgressEvent progress;
    convert_document(request, progress);
    return request.tud;
  };
  const auto rebuild = [&](const std::u16string& tud, const std::u16string& stem) {
    BilingualDocument(tud).save_open_tag(u"C:\\work\\x.otf");
    ProgressEvent progress;
    create_target({u"C:\\work\\" + stem + extension, u"C:\\work\\x.otf", skeleton_name_of(tud), u"FR", u""}, progress);
    return files.get(u"C:\\work\\" + stem + extension);
  };

  files.put(u"C:\\work\\a" + extension, bytes);
  const std::u16string tud = convert(u"a");
  if (rebuild(tud, u"b") != bytes) return "the unchanged text is not the source";

  BilingualDocument document(tud);
  // In a double-byte code page a broken lead byte takes whatever a translation puts behind it as its trail byte.
  const bool may_merge = document.header().source_code_page == 932;
  const PseudoTranslation pseudo(document.header());
  for (std::size_t i = 0; i < document.size(); ++i)
    document.set_segment(i, pseudo.of(document.segment(i).source), TranslationStatus::kTranslated, 0);
  document.save();
  rebuild(tud, u"c");
  const BilingualDocument again(convert(u"c"));
  if (may_merge) return {};
  if (again.size() != document.size()) return "the translated text has another count of segments";
  for (std::size_t i = 0; i < again.size(); ++i)
    if (again.segment(i).source != document.segment(i).target) return "a translation did not come back";
  return {};
}

}  // namespace kavo::test
