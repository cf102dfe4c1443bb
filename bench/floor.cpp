// The floor of every comparison: reads a file in blocks, looks at every byte once and writes the same bytes.
// floor INPUT OUTPUT
#include <cstddef>
#include <cstdio>
#include <vector>

#include "common/byte_scan.h"

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: floor INPUT OUTPUT\n");
    return 2;
  }
  std::FILE* in = std::fopen(argv[1], "rb");
  std::FILE* out = std::fopen(argv[2], "wb");
  if (in == nullptr || out == nullptr) {
    std::perror("floor");
    return 1;
  }
  std::setvbuf(in, nullptr, _IONBF, 0);
  std::setvbuf(out, nullptr, _IONBF, 0);
  std::vector<char> block(256 * 1024);
  std::size_t found = 0;
  for (std::size_t got; (got = std::fread(block.data(), 1, block.size(), in)) > 0;) {
    const char* end = block.data() + got;
    for (const char* p = block.data(); (p = kavo::find_any<'<', '>'>(p, end)) != end; ++p) ++found;
    if (std::fwrite(block.data(), 1, got, out) != got) {
      std::perror("floor");
      return 1;
    }
  }
  std::fclose(in);
  if (std::fclose(out) != 0) {
    std::perror("floor");
    return 1;
  }
  std::fprintf(stderr, "%zu\n", found);
  return 0;
}
