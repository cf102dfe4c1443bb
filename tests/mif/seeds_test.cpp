// Replays the fuzzer's seeds: every build checks what a fuzzer would start from.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

#include "mif/mif_property.h"
#include "support/tries.h"

namespace kavo::test {
namespace {

TEST(MifSeeds, HoldTheProperty) {
  std::size_t count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(KAVO_MIF_SEEDS)) {
    std::ifstream file(entry.path(), std::ios::binary);
    std::string input((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    SCOPED_TRACE(entry.path().filename().string());
    ASSERT_FALSE(input.empty());
    ++count;
    for (char choice = 0; choice < 36; choice += kTriesAreExpensive ? 5 : 1) {
      input[0] = choice;
      EXPECT_EQ(broken_mif_property(input), "") << "with choice " << static_cast<int>(choice);
    }
  }
  EXPECT_GE(count, 12u);
}

TEST(MifSeeds, GeneratedInputHoldsTheProperty) {
  constexpr std::string_view parts[] = {"<MIFFile 7.00>",
                                        "<MIFFile 9.00>",
                                        "<Marker ",
                                        "<MTypeName `Index'>",
                                        "<MTypeName `index'>",
                                        "<MText `",
                                        "a;b:c'>",
                                        "<Pgf ",
                                        "<PgfTag `T'>",
                                        "<PgfNumFormat `",
                                        "\\x09 ",
                                        "<XRefFormats ",
                                        "<XRefName `",
                                        "<XRefDef `",
                                        "x'>",
                                        "<VariableFormats ",
                                        "<VariableName `n'>",
                                        "<VariableDef `d'>",
                                        ">",
                                        ">",
                                        "<",
                                        "`",
                                        "'",
                                        "#",
                                        " ",
                                        "\n",
                                        "\r\n",
                                        "\r",
                                        "=",
                                        "\n=GIF\n",
                                        "\n=EndInset\n",
                                        "=EndInset",
                                        "<KAVOObj 1>",
                                        "<KAVOObj 2>",
                                        "<KAVOObj ",
                                        "<KAVOObj End>",
                                        "<Para ",
                                        "<KAVOTag `a'>",
                                        "<String `A'>",
                                        "<KAVOSeg 1>",
                                        "\x1E",
                                        "\x8E\x60",
                                        "\x83\x5C",
                                        "text"};
  std::mt19937 random(11);
  for (int i = 0; i < tries(4000); ++i) {
    std::string input(1, static_cast<char>(random() % 36));
    for (unsigned count = random() % 60; count > 0; --count) input += parts[random() % std::size(parts)];
    ASSERT_EQ(broken_mif_property(input), "") << input;
  }
}

}  // namespace
}  // namespace kavo::test
