// What must hold for any bytes at all: the line reader gives what its simple twin gives, whatever the block size, and
// its lines together are the text. For the fuzzer and for the replay of its seeds.
#pragma once

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "common/block_reader.h"
#include "common/clsRetrieveFile.h"
#include "platform/ports.h"
#include "support/memory_files.h"

namespace kavo::test {

// The lines of a text in memory, exactly as the contract describes them.
inline std::vector<std::u16string> twin_lines(std::string_view bytes, std::size_t chunk, const CodePage& code_page) {
  std::vector<std::u16string> lines;
  std::u16string pending;
  for (;;) {
    std::size_t end = pending.find_first_of(u"\r\n");
    if (end != std::u16string::npos) {
      const char16_t other = pending[end] == u'\r' ? u'\n' : u'\r';
      end += end + 1 < pending.size() && pending[end + 1] == other ? 2 : 1;
      lines.push_back(pending.substr(0, end));
      pending.erase(0, end);
    } else if (!bytes.empty()) {
      std::size_t size = std::min(chunk, bytes.size());
      if (size < bytes.size() && code_page.is_lead_byte(static_cast<unsigned char>(bytes[size - 1]))) ++size;
      while (size < bytes.size() && code_page.incomplete_tail(bytes.substr(0, size)) != 0) ++size;
      pending += code_page.decode(bytes.substr(0, size));
      bytes.remove_prefix(size);
    } else {
      if (!pending.empty()) lines.push_back(pending);
      return lines;
    }
  }
}

// The first byte chooses the chunk size, the second the block size and the code page; the rest is the file. Returns
// what is wrong, "" when nothing is.
inline std::string broken_line_reader_property(std::string_view input) {
  if (input.size() < 2) return "";
  const auto choice = static_cast<unsigned char>(input[1]);
  const std::size_t chunk = 1 + static_cast<unsigned char>(input[0]);
  const BlockSizeScope block(1 + choice / 4);
  const char* names[] = {"utf-8", "932", "936", "1252"};
  const std::unique_ptr<CodePage> code_page = make_code_page(names[choice % 4]);
  input.remove_prefix(2);

  MemoryFiles files;
  files.put(u"C:\\file", input);
  const PortsScope scope;
  ports().files = &files;
  ports().code_page = code_page.get();
  clsRetrieveFile reader;
  reader.Filename(u"C:\\file");
  reader.ChunkSize(static_cast<std::int32_t>(chunk));
  if (!reader.OpenFile()) return "the file did not open";
  std::vector<std::u16string> lines;
  std::u16string line, text;
  while (reader.GetLineFromFile(line)) {
    lines.push_back(line);
    text += line;
  }
  if (!line.empty()) return "the end of the file leaves a line";
  if (lines != twin_lines(input, chunk, *code_page)) return "the twin reads other lines";
  // It is not defined where an invalid byte ends and the next character begins, so only valid texts are compared.
  const std::u16string whole = code_page->decode(input);
  const bool is_valid = std::ranges::none_of(whole, [](char16_t c) { return c >= 0xDC80 && c <= 0xDCFF; });
  if (is_valid && text != whole) return "a chunk cut a character";
  const bool ends_in_break = !text.empty() && (text.back() == u'\r' || text.back() == u'\n');
  const std::size_t terminated = lines.size() - (lines.empty() || ends_in_break ? 0 : 1);
  if (reader.LineNumber() != static_cast<std::int32_t>(terminated)) return "the line number is wrong";
  if (reader.Progress() != (input.empty() ? 0 : 100)) return "the progress is wrong at the end";
  return "";
}

}  // namespace kavo::test
