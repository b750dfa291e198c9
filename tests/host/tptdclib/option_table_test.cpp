#include "tptdclib/option_table.h"

#include <gtest/gtest.h>

#include "tests/support/program.h"

namespace {

using host::OptionTable;
using testing_support::TemporaryDirectory;

const char* const kDefinition =
    "* comment\n# comment\n\n"
    "MAXN integer 1000 Largest number of observations\n"
    "name\tString  'it''s'  A name\r\n";

class Options : public testing::Test {
 protected:
  bool Define(const std::string& text) {
    testing_support::WriteFile(directory_ / "x.def", text);
    return table_.ReadDefinition(directory_ / "x.def");
  }
  bool Set(const std::string& text) {
    testing_support::WriteFile(directory_ / "x.opt", text);
    return table_.ReadParameterFile(directory_ / "x.opt");
  }
  std::string LastMessage() {
    return table_.Messages().empty() ? "" : table_.Messages().back().text;
  }

  TemporaryDirectory directory_;
  OptionTable table_;
};

TEST_F(Options, ReadsEveryWayOfWriting) {
  ASSERT_TRUE(Define(kDefinition)) << LastMessage();
  EXPECT_EQ(table_.Integer("maxn"), 1000);
  EXPECT_EQ(table_.Text("NAME"), "it's");
  struct Case {
    const char* line;
    int maxn;
    const char* name;
  };
  const Case cases[] = {
      {"MAXN 5", 5, "it's"},
      {"  maxn=6  \r\n* MAXN 7\n#MAXN 8\n\n", 6, "it's"},
      {"MaxN = -2147483648", -2147483648, "it's"},
      {"maxn\t=\t+2147483647", 2147483647, "it's"},
      {"name = \"with \"\"quotes\"\" and blank \"", 1000, "with \"quotes\" and blank "},
      {"name C:\\data\\x=1.tdx", 1000, "C:\\data\\x=1.tdx"},
      {"name ''", 1000, ""},
      {"name = 12", 1000, "12"},
  };
  for (const Case& c : cases) {
    ASSERT_TRUE(Define(kDefinition));
    EXPECT_TRUE(Set(c.line)) << c.line << ": " << LastMessage();
    EXPECT_EQ(table_.Integer("MAXN"), c.maxn) << c.line;
    EXPECT_EQ(table_.Text("name"), c.name) << c.line;
  }
  EXPECT_TRUE(table_.Messages().empty());
}

TEST_F(Options, RefusesOptionLinesWithTheirNumber) {
  ASSERT_TRUE(Define(kDefinition));
  const std::pair<std::string, const char*> cases[] = {
      {"MAXM 5", "unknown option \"MAXM\""},
      {"MAXN", "MAXN: no value"},
      {"MAXN =", "MAXN: no value"},
      {"MAXN 5 6", "unexpected text after the value: 6"},
      {"MAXN = 5 # five", "unexpected text after the value: # five"},
      {"MAXN 5.0", "\"5.0\" is not an integer"},
      {"MAXN 1e3", "is not an integer"},
      {"MAXN +-3", "is not an integer"},
      {"MAXN '5'", "is not an integer"},
      {"MAXN ==5", "\"=5\" is not an integer"},
      {"MAXN 2147483648", "does not fit in 32 bits"},
      {"MAXN -99999999999999999999", "does not fit in 32 bits"},
      {"name 'open", "closing quote is missing"},
      {"name 'a'b", "no blank after the closing quote"},
      {"name " + std::string(256, 'x'), "longer than 255"},
      {"= 5", "unknown option \"\""},
  };
  for (const auto& [line, message] : cases) {
    EXPECT_FALSE(Set("\n" + line + "\nMAXN 77\n")) << line;
    EXPECT_NE(LastMessage().find("x.opt(2): "), std::string::npos) << LastMessage();
    EXPECT_NE(LastMessage().find(message), std::string::npos) << LastMessage();
    EXPECT_EQ(table_.Integer("MAXN"), 77) << "the lines after a fault are still read";
  }
  EXPECT_FALSE(table_.ReadParameterFile(directory_ / "none.opt"));
  EXPECT_NE(LastMessage().find("none.opt"), std::string::npos);
}

TEST_F(Options, RefusesDefinitionsWithTheirNumber) {
  const std::pair<const char*, const char*> cases[] = {
      {"MAXN", "type of MAXN"},
      {"MAXN real 1 help", "found \"REAL\""},
      {"MAXN integer x help", "default of MAXN: \"x\" is not an integer"},
      {"MAXN integer 1", "MAXN has no line of help"},
      {"MAX-N integer 1 help", "\"MAX-N\" can't be a key"},
      {"NAME string help", "has no line of help"},
      {"name string 'x' help", "NAME is declared twice"},
  };
  for (const auto& [line, message] : cases) {
    EXPECT_FALSE(Define(std::string("Name string a help\n") + line)) << line;
    EXPECT_NE(LastMessage().find(message), std::string::npos) << LastMessage();
    EXPECT_NE(LastMessage().find("x.def(2): "), std::string::npos) << LastMessage();
    EXPECT_FALSE(Set("NAME b")) << "nothing is declared after a failure";
  }
}

TEST_F(Options, EchoesLinesAndWarns) {
  ASSERT_TRUE(Define(kDefinition));
  table_.SetEcho(true);
  EXPECT_TRUE(Set("* mine\nMAXN 5\nMAXN 6\nname " + std::string(254, 'x') + "\n"));
  std::vector<std::string> texts;
  for (const OptionTable::Message& message : table_.Messages()) {
    texts.push_back(std::to_string(static_cast<int>(message.kind)) + message.text);
  }
  ASSERT_EQ(texts.size(), 6U);
  EXPECT_EQ(texts[0], "1* mine");
  EXPECT_EQ(texts[1], "1MAXN 5");
  EXPECT_EQ(texts[2], "1MAXN 6");
  EXPECT_TRUE(texts[3].starts_with("2") && texts[3].ends_with("MAXN replaces its value of line 2"));
  EXPECT_EQ(texts[4] + texts[5].substr(1), "1name " + std::string(254, 'x'));
  EXPECT_EQ(table_.Text("MAXN"), "") << "a key of the other type";
  EXPECT_NE(LastMessage().find("no string option \"MAXN\""), std::string::npos);
}

}  // namespace
