#include "regression/labelled_name.h"

#include <gtest/gtest.h>

#include <string>

namespace linfit {
namespace {

TEST(LabelledName, DisplayNames) {
  NameTable names;
  AppendName(names, 2, "x  ", 3);
  AppendLabel(names, "it's", 4, '"');
  AppendLabel(names, "1947", 5, '\'');
  AppendLabel(names, "usa  ", 6, ' ');
  AppendName(names, 3, "const", 0);
  AppendIntercept(names);
  AppendBlank(names);
  EXPECT_EQ(DisplayName(names, 0), "x(\"it's\",'1947',usa)");
  EXPECT_EQ(DisplayName(names, 1), "const");
  EXPECT_EQ(DisplayName(names, 2), "Intercept");
  EXPECT_EQ(DisplayName(names, 3), "");
  EXPECT_EQ(Dimension(names, 0), 3);
  EXPECT_EQ(Dimension(names, 2), -1);
  EXPECT_EQ(Dimension(names, 3), 0);
  EXPECT_EQ(SymbolName(names, 0), "x");
  EXPECT_EQ(SymbolName(names, 3), "");
  EXPECT_EQ(LabelOf(names, 0, 2), "usa");
  EXPECT_EQ(LabelNumber(names, 0, 1), 5);
}

TEST(LabelledName, KeepsToTheLimits) {
  NameTable names;
  const std::string text(70, 'a');
  AppendName(names, 1, text, 21);
  for (int k = 0; k < kMaxLabels; ++k) AppendLabel(names, text, 1, '\'');
  SetFlatKey(names, 0, text);
  EXPECT_EQ(Dimension(names, 0), 20);
  EXPECT_EQ(SymbolName(names, 0), text.substr(0, 63));
  EXPECT_EQ(LabelOf(names, 0, 19), text.substr(0, 63));
  EXPECT_EQ(FlatKey(names, 0), text.substr(0, 63));
  EXPECT_EQ(DisplayName(names, 0).size(), 250U);
}

TEST(LabelledName, RelabelledInterceptKeepsItsDisplayName) {
  NameTable names;
  AppendName(names, 7, "b", 1);
  AppendLabel(names, "i1", 1, ' ');
  AppendIntercept(names);
  RelabelRecord(names, 1, 2, 7, "b", "Intercept");
  EXPECT_EQ(Dimension(names, 1), 2);
  EXPECT_EQ(SymbolNumber(names, 1), 7);
  EXPECT_EQ(SymbolName(names, 1), "b");
  EXPECT_EQ(LabelOf(names, 1, 1), "Intercept");
  EXPECT_EQ(LabelNumber(names, 1, 0), -1);
  EXPECT_EQ(DisplayName(names, 1), "Intercept");
  EXPECT_EQ(LabelOf(names, 0, 0), "i1");
}

// A dictionary may give the dimension of an intercept to a symbol of the model.
TEST(LabelledName, AnInterceptOfTheModelKeepsItsName) {
  NameTable names;
  AppendName(names, 7, "b", 0);
  AppendName(names, 8, "const", -1);
  EXPECT_EQ(Dimension(names, 1), -1);
  EXPECT_EQ(DisplayName(names, 1), "const");
  EXPECT_EQ(LabelOf(names, 1, 0), "");
  RelabelRecord(names, 1, 1, 7, "b", "Intercept");
  EXPECT_EQ(SymbolName(names, 1), "b");
  EXPECT_EQ(LabelOf(names, 1, 0), "Intercept");
  EXPECT_EQ(DisplayName(names, 1), "const");
}

TEST(LabelledName, MemoryFollowsContent) {
  NameTable names;
  const std::size_t count = 100000;
  for (std::size_t i = 0; i < count; ++i) {
    const std::string text = std::to_string(i);
    // Two symbols in turn, at the beginning: each name is stored once all the same.
    const bool odd = i < 1000 && i % 2 == 1;
    AppendName(names, odd ? 9 : 5, odd ? "odd" : "x", 1);
    AppendLabel(names, text, static_cast<std::int32_t>(i), ' ');
  }
  EXPECT_EQ(names.symbols.size(), 2U);
  EXPECT_EQ(DisplayName(names, 999), "odd(999)");
  EXPECT_EQ(DisplayName(names, count - 1), "x(99999)");
  const std::size_t used = names.groups.size() * sizeof(NameGroup) + names.label_text.size() +
                           sizeof(std::int32_t) * 2 * names.label_starts.size();
  EXPECT_LE(used, count * 15);
}

}  // namespace
}  // namespace linfit
