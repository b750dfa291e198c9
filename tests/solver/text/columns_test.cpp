#include "text/columns.h"

#include <gtest/gtest.h>

#include <utility>

namespace linfit {
namespace {

class Columns : public testing::TestWithParam<std::pair<const char*, const char*>> {};

// Not bytes: the columns stay in line, and no character is cut in two.
TEST_P(Columns, AreCharacters) {
  const auto& [text, field] = GetParam();
  EXPECT_EQ(RightJustified(text, 8), field);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, Columns,
    testing::Values(std::pair{"", "        "}, std::pair{"abc", "     abc"},
                    std::pair{"123456789", "12345678"}, std::pair{"H\xC3\xB6he", "    H\xC3\xB6he"},
                    std::pair{"123456\xC3\xA4\xC3\xB6\xC3\xBC", "123456\xC3\xA4\xC3\xB6"},
                    std::pair{"\xF0\x9F\x98\x80", "       \xF0\x9F\x98\x80"},
                    // Bytes that belong to no character: one column each.
                    std::pair{"a\xE4z", "     a\xE4z"}, std::pair{"\xE2\x82", "      \xE2\x82"},
                    std::pair{"\x80\x80\x80\x80\x80\x80\x80\x80\x80\x80",
                              "\x80\x80\x80\x80\x80\x80\x80\x80"}));

}  // namespace
}  // namespace linfit
