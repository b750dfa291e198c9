#include "regression/labelled_name.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace linfit {
namespace {

TEST(LabelledName, DisplayNames) {
  NameTable names;
  const std::vector<LabelText> labels = {{"it's", 4, '"'}, {"1947", 5, '\''}, {"usa  ", 6, ' '}};
  AppendName(names, 2, "x  ", labels.data(), 3);
  AppendName(names, 3, "const", nullptr, 0);
  AppendIntercept(names);
  AppendBlank(names);
  EXPECT_EQ(DisplayName(names, 0), "x(\"it's\",'1947',usa)");
  EXPECT_EQ(DisplayName(names, 1), "const");
  EXPECT_EQ(DisplayName(names, 2), "Intercept");
  EXPECT_EQ(DisplayName(names, 3), "");
  EXPECT_EQ(names.records[0].dimension, 3);
  EXPECT_EQ(names.records[2].dimension, -1);
  EXPECT_EQ(names.records[3].dimension, 0);
  EXPECT_EQ(SymbolName(names, 0), "x");
  EXPECT_EQ(SymbolName(names, 3), "");
  EXPECT_EQ(LabelOf(names, 0, 2), "usa");
  EXPECT_EQ(LabelNumber(names, 0, 1), 5);
}

TEST(LabelledName, KeepsToTheLimits) {
  NameTable names;
  const std::string text(70, 'a');
  const std::vector<LabelText> labels(21, LabelText{text, 1, '\''});
  AppendName(names, 1, text, labels.data(), 21);
  SetFlatKey(names, 0, text);
  EXPECT_EQ(names.records[0].dimension, 20);
  EXPECT_EQ(SymbolName(names, 0), text.substr(0, 63));
  EXPECT_EQ(LabelOf(names, 0, 19), text.substr(0, 63));
  EXPECT_EQ(FlatKey(names, 0), text.substr(0, 63));
  EXPECT_EQ(DisplayName(names, 0).size(), 250U);
}

TEST(LabelledName, RelabelledInterceptKeepsItsDisplayName) {
  NameTable names;
  const LabelText label{"i1", 1, ' '};
  AppendName(names, 7, "b", &label, 1);
  AppendIntercept(names);
  RelabelRecord(names, 1, 2, 7, "b", "Intercept");
  EXPECT_EQ(names.records[1].dimension, 2);
  EXPECT_EQ(names.records[1].symbol_number, 7);
  EXPECT_EQ(SymbolName(names, 1), "b");
  EXPECT_EQ(LabelOf(names, 1, 1), "Intercept");
  EXPECT_EQ(LabelNumber(names, 1, 0), -1);
  EXPECT_EQ(DisplayName(names, 1), "Intercept");
  EXPECT_EQ(LabelOf(names, 0, 0), "i1");
}

// A dictionary may give the dimension of an intercept to a symbol of the model.
TEST(LabelledName, AnInterceptOfTheModelKeepsItsName) {
  NameTable names;
  AppendName(names, 7, "b", nullptr, 0);
  AppendName(names, 8, "const", nullptr, -1);
  EXPECT_EQ(names.records[1].dimension, -1);
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
    const LabelText label{text, static_cast<std::int32_t>(i), ' '};
    // Two symbols in turn: each name is stored once all the same.
    AppendName(names, i % 2 == 0 ? 5 : 9, i % 2 == 0 ? "even" : "odd", &label, 1);
  }
  EXPECT_EQ(names.symbols.size(), 2U);
  EXPECT_EQ(DisplayName(names, count - 1), "odd(99999)");
  const std::size_t used =
      count * sizeof(LabelledName) + names.labels.size() * sizeof(Label) + names.text.size();
  EXPECT_LE(used, count * 51);
}

}  // namespace
}  // namespace linfit
