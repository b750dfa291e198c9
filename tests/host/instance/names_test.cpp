#include "instance/names.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace host {
namespace {

TEST(Names, ShareSymbolsAndLabelsInTheDictionary) {
  Dictionary dictionary;
  DictionaryBuilder builder(dictionary);
  ElementNames names;
  for (const ElementName& name : std::vector<ElementName>{
           {"fit", {"a", "b"}}, {"fit", {"b", "a"}}, {"a", {}}, {"fit", {"x y", "it's"}}}) {
    builder.Append(names, name);
  }
  EXPECT_EQ(dictionary.symbols, (TextList{"fit", "a"}));
  EXPECT_EQ(dictionary.labels, (TextList{"a", "b", "x y", "it's"}));
  EXPECT_EQ(DisplayName(dictionary, names, 1), "fit(b,a)");
  EXPECT_EQ(DisplayName(dictionary, names, 2), "a");
  EXPECT_EQ(DisplayName(dictionary, names, 3), "fit('x y',\"it's\")");
}

}  // namespace
}  // namespace host
