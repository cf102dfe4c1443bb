// What holds for the RTF operations on any bytes at all: they do what the slow model says, and extracting and inserting
// gives back every byte. For the fuzzer and for the replay of its seeds.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

#include "common/block_reader.h"
#include "office/clsRTFUtil.h"
#include "office/rtf_model.h"
#include "platform/ports.h"
#include "support/fake_clock.h"
#include "support/fake_desktop.h"
#include "support/memory_files.h"

namespace kavo::test {

// The first byte says how: block size (its upper seven bits, 0 for the usual one), and whether the rest is a document
// (even) or a document and its side file with "\n--\n" between them (odd). Answers what does not hold, "" when all
// does.
inline std::string broken_rtf_property(std::string_view input) {
  if (input.empty()) return {};
  const auto head = static_cast<unsigned char>(input[0]);
  input.remove_prefix(1);

  MemoryFiles files;
  FakeDesktop desktop;
  FakeClock clock;
  PortsScope ports_scope;
  ports().files = &files;
  ports().desktop = &desktop;
  ports().clock = &clock;
  BlockSizeScope block_size(head >> 1);

  const std::u16string document_name = u"C:\\WORK\\d.rtf";
  const std::u16string objects_name = u"C:\\WORK\\d.obj";
  clsRTFUtil util;
  util.RTFFile(document_name);

  if (head % 2 != 0) {
    constexpr std::string_view separator = "\n--\n";
    const std::size_t cut = std::min(input.find(separator), input.size());
    const std::string_view document = input.substr(0, cut);
    const std::string_view objects = input.substr(std::min(cut + separator.size(), input.size()));
    files.put(document_name, document);
    files.put(objects_name, objects);
    const auto model = model_insert(document, objects);
    if (util.InsertObjects() != model.result) return "insertion: another result";
    if (files.get(document_name) != model.rtf) return "insertion: another document";
    if (files.get(objects_name) != objects) return "insertion: the side file changed";
    return files.all_files().size() == 2 ? "" : "insertion: files left over";
  }

  files.put(document_name, input);
  const auto model = model_extract(input);
  if (util.ExtractObjects() != (model ? 0 : 1)) return "extraction: another result";
  if (!model) return files.get(document_name) == input && files.all_files().size() == 1 ? "" : "refusal: files changed";
  if (files.get(document_name) != model->rtf) return "extraction: another document";
  if (files.get(objects_name) != model->objects) return "extraction: other objects";
  if (util.InsertObjects() != 0) return "round trip: objects missing";
  if (files.get(document_name) != input) return "round trip: another document";
  return files.all_files().size() == 2 ? "" : "round trip: files left over";
}

}  // namespace kavo::test
