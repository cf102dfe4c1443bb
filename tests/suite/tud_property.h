// What must hold for a bilingual document of any bytes, for the fuzzer and its replayed seeds.
#pragma once

#include <string>
#include <string_view>

#include "common/block_reader.h"
#include "platform/failure.h"
#include "platform/ports.h"
#include "suite/document/bilingual_document.h"
#include "support/memory_files.h"

namespace kavo::test {

// "" when it holds. A document that opens keeps its texts when a segment is changed and saved, and everything else in
// it; one that does not open is left alone. The first byte of the input says how long the blocks are.
inline std::string broken_tud_property(std::string_view input) {
  if (input.empty()) return {};
  const BlockSizeScope blocks(static_cast<unsigned char>(input.front()) % 64 + 1u);
  MemoryFiles files;
  PortsScope scope;
  ports().files = &files;
  const std::u16string path = u"C:\\work\\a.tud";
  files.put(path, input.substr(1));
  try {
    BilingualDocument document(path);
    if (document.size() == 0) return {};
    const std::size_t changed = document.size() / 2;
    try {
      document.set_segment(changed, document.segment(changed).source, TranslationStatus::kFuzzy, 40);
    } catch (const failure&) {
      return {};  // codes that a foreign document does not pair
    }
    document.save();
    const BilingualDocument again(path);
    if (again.size() != document.size()) return "the count of segments changed";
    for (std::size_t i = 0; i < again.size(); ++i) {
      if (again.segment(i).source != document.segment(i).source) return "a source text changed";
      if (again.segment(i).target != document.segment(i).target) return "a target text changed";
      if (i != changed && again.segment(i).status != document.segment(i).status) return "a status changed";
    }
    document.save_open_tag(u"C:\\work\\a.otf");
  } catch (const failure&) {
    // Refused, with a reason.
  }
  if (files.all_files().size() > 2) return "a file was left behind";
  return {};
}

}  // namespace kavo::test
