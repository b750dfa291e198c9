// Hostile tables, each handed to the command: one line that says what and where, exit status 2, and
// nothing left behind.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/program.h"

namespace {

using testing_support::RunProgram;
using testing_support::TemporaryDirectory;

std::string Repeated(const std::string& text, std::size_t count) {
  std::string result;
  result.reserve(text.size() * count);
  for (std::size_t i = 0; i < count; ++i) {
    result += text;
  }
  return result;
}

struct HostileTable {
  const char* name;
  std::string text;
  std::string line;  // "tavolite: t.csv" goes before it
  std::vector<std::string> options{};
};

const std::string kHeader = "y,x,z\n";
const std::string kGood = "1,2,3\n3,4,4\n4,4,5\n7,9,9\n";

std::vector<HostileTable> Tables() {
  const std::string number_hint =
      " is not a number (text columns need --label, --factor or --drop; a missing value is "
      "an empty field or NA)";
  return {
      {"nothing", "", ": the table is empty"},
      {"blank lines", "\n  \n\r\n", ": the table is empty"},
      {"a mark alone", "\xEF\xBB\xBF", ": the table is empty"},
      {"header alone", kHeader, ": the table has no rows"},
      {"header without line end", "y,x", ": the table has no rows"},
      {"one column", "y\n1\n2\n",
       ":1: only one column, with ',' as the separator (--separator sets another)"},
      {"unclosed quote", kHeader + kGood + "1,\"2,3\n" + kGood,
       ":6: the quote that opens here is not closed"},
      {"UTF-16", std::string("\xFF\xFEy\0,\0x\0\n\0", 10),
       ":1: the file is in UTF-16; UTF-8 is needed"},
      {"UTF-16, the other way", std::string("\xFE\xFF\0y\0,", 6),
       ":1: the file is in UTF-16; UTF-8 is needed"},
      {"text with escapes", kHeader + "1,\x1B[2J\x07\xFF,3\n",
       ":2: column \"x\": \"\\x1b[2J\\x07\\xff\"" + number_hint},
      {"line ends of old systems", "x,y\r1,2\r3,4\r",
       ":1: --response: there is no column \"y\"; the columns are x, y\\x0d1, 2\\x0d3, 4"},
      {"10 MB field", kHeader + kGood + "1," + std::string(10U << 20U, '7') + ",3\n" + kGood,
       ":6: longer than 8 MB (a quote that is never closed?)"},
      {"10 MB quoted", kHeader + "1,\"" + Repeated("text\n", 2U << 20U) + "\",3\n",
       ":2: longer than 8 MB (a quote that is never closed?)"},
      {"10 MB header", "y," + std::string(10U << 20U, 'x') + "\n1,2\n",
       ":1: longer than 8 MB (a quote that is never closed?)"},
      {"1 MB number", kHeader + "1," + std::string(1U << 20U, '7') + ",3\n",
       ":2: column \"x\": \"" + std::string(40, '7') + "...\" is beyond the range of a double"},
      {"all missing", kHeader + "1,,3\nNA,2,3\n",
       ": every one of the 2 rows has a missing value (--drop leaves out a column that is empty)"},
      {"long label",
       "y,x,z\n1,2," + std::string(64, 'a') + "\n",
       ":2: column \"z\": \"" + std::string(40, 'a') + "...\" is longer than 63 bytes",
       {"--label", "z"}},
      {"named like the intercept", "y,Intercept\n1,2\n2,4\n3,5\n",
       ": a regressor is named \"Intercept\" like the one that is added; rename it, or use "
       "--no-intercept"},
  };
}

class HostileTables : public testing::TestWithParam<HostileTable> {};

TEST_P(HostileTables, OneLineStatusTwoAndNothingLeft) {
  const HostileTable& table = GetParam();
  const TemporaryDirectory directory;
  const TemporaryDirectory work;
  testing_support::WriteFile(directory / "t.csv", table.text);
  std::vector<std::string> arguments{
      "solve",    "t.csv",     "--response", "y",
      "--solver", FAKE_SOLVER, "--work",     testing_support::Utf8(work.Path())};
  arguments.insert(arguments.end(), table.options.begin(), table.options.end());
  const auto result = RunProgram(TAVOLITE, arguments, {directory.Path(), {}});
  EXPECT_EQ(result.exit_code, 2);
  EXPECT_EQ(result.err, "tavolite: t.csv" + table.line + "\n");
  EXPECT_EQ(result.out, "");
  EXPECT_TRUE(std::filesystem::is_empty(work.Path()));
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(directory.Path()), {}), 1);
}

INSTANTIATE_TEST_SUITE_P(Command, HostileTables, testing::ValuesIn(Tables()), [](const auto& test) {
  std::string name = test.param.name;
  std::replace_if(
      name.begin(), name.end(),
      [](char c) { return std::isalnum(static_cast<unsigned char>(c)) == 0; }, '_');
  return name;
});

}  // namespace
