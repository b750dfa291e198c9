// From words to options, and the one line for words that can't be understood.
#include "tavolite/command/command_line.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "base/text_file.h"
#include "tavolite/system/standard_output.h"
#include "tests/support/program.h"

namespace host {
namespace {

using testing_support::TemporaryDirectory;
using testing_support::WriteFile;
using Words = std::vector<std::string>;

class CommandLine : public testing::Test {
 protected:
  CommandLine() {
    for (const char* name : {"t.csv", "t.TAB", "t.dat", "m.mod", "m.lp", "t.db"}) {
      WriteFile(directory / name, "");
    }
  }

  // Words that name one of the files above become its path.
  auto Parse(Words words) {
    for (std::string& word : words) {
      if (!word.empty() && std::filesystem::exists(directory / word)) word = Utf8(directory / word);
    }
    std::ostringstream out;
    auto asked = ParseCommandLine(words, out, err);
    EXPECT_EQ(out.str(), "");
    return asked;
  }
  SolveOptions Solve(Words words) {
    words.insert(words.begin(), "solve");
    return std::get<SolveOptions>(Parse(std::move(words)));
  }

  TemporaryDirectory directory;
  std::ostringstream err;
};

TEST_F(CommandLine, FillsTheOptions) {
  const SolveOptions table =
      Solve({"t.csv", "--response", "y", "--factor", "a,b", "--factor", "c", "--no-intercept",
             "--separator", "tab", "--listing", "x.lst", "--quiet"});
  EXPECT_EQ(table.input, directory / "t.csv");
  EXPECT_EQ(table.format, InputFormat::kCsv);
  EXPECT_EQ(table.table.response, "y");
  EXPECT_EQ(table.table.factors, (Words{"a,b", "c"}));
  EXPECT_EQ(table.table.intercept, Intercept::kNever);
  EXPECT_EQ(table.table.separator, '\t');
  EXPECT_EQ(table.listing, "x.lst");
  EXPECT_TRUE(table.quiet && !table.keep);
  const SolveOptions model = Solve({"m.mod", "--data", "t.dat", "--data-side", "right"});
  EXPECT_EQ(model.format, InputFormat::kMathProg);
  EXPECT_EQ(model.data_side, DataSide::kRight);
  EXPECT_EQ(Solve({"t.TAB"}).format, InputFormat::kTsv);
  EXPECT_EQ(Solve({"t.dat", "--query", "select 1"}).format, InputFormat::kSqlite);
  EXPECT_EQ(Solve({"t.csv", "--format", "free-mps"}).format, InputFormat::kFreeMps);
  const auto show = std::get<ShowOptions>(
      Parse({"show", "r.tdx", "se", "--limit", "9", "--format=json", "--output", "o"}));
  EXPECT_EQ(show.symbol, "se");
  EXPECT_EQ(show.limit, 9);
  EXPECT_EQ(show.format, ShowFormat::kJson);
}

struct Mistake {
  const char* name;
  Words words;
  const char* message;  // a part of it
};

const Mistake kMistakes[] = {
    {"Nothing", {}, "a command is missing: solve or show"},
    {"NoSuchCommand", {"sovle", "x"}, "there is no command \"sovle\"; the commands are solve and"},
    {"PartOfAnOption",
     {"solve", "t.csv", "--sep=;"},
     "no option --sep; the nearest is --separator"},
    {"NothingLikeIt", {"show", "r.tdx", "--xyz"}, "there is no option --xyz (tavolite show --help"},
    {"OneWordTooMany", {"show", "r", "s", "more"}, "there is no place for \"more\""},
    {"NoFile", {"solve"}, "MODEL is required"},
    {"Twice", {"solve", "t.csv", "--response", "y", "--response", "x"}, "--response: At Most 1"},
    {"BothIntercepts", {"solve", "t.csv", "--intercept", "--no-intercept"}, "excludes"},
    {"UnknownFormat", {"solve", "t.csv", "--format", "xls"}, "--format: xls not in {mod,mps,"},
    {"HugeLimit",
     {"show", "r", "--limit", "99999999999999999999"},
     "--limit: 99999999999999999999 is beyond 9223372036854775807"},
    {"NegativeLimit", {"show", "r", "--limit", "-1"}, "--limit: \"-1\" is not a whole number"},
    {"EmptySymbol", {"show", "r", ""}, "the symbol's name is empty"},
    {"Separator",
     {"solve", "t.csv", "--separator", "ab"},
     "--separator: \"ab\" is not a separator"},
    {"TableOptionForModel",
     {"solve", "m.mod", "--drop", "x"},
     "the options for tables don't apply"},
    {"ModelOptionForTable", {"solve", "t.csv", "--data", "t.dat"}, "are not for tables"},
    {"DataForLp", {"solve", "m.lp", "--data", "t.dat"}, "--data is for MathProg models only"},
    {"QueryForText", {"solve", "t.csv", "--query", "s"}, "--query is for SQLite files only"},
};

class Mistakes : public CommandLine, public testing::WithParamInterface<Mistake> {};

TEST_P(Mistakes, GetOneLine) {
  std::string line;
  try {
    const auto asked = Parse(GetParam().words);
    EXPECT_EQ(std::get<int>(asked), 2);
    line = err.str();
    EXPECT_TRUE(line.starts_with("tavolite: ") && line.ends_with("\n")) << line;
    line.pop_back();
  } catch (const std::exception& error) {
    line = error.what();
  }
  EXPECT_NE(line.find(GetParam().message), std::string::npos) << line;
  EXPECT_EQ(line.find('\n'), std::string::npos) << line;
}

INSTANTIATE_TEST_SUITE_P(CommandLine, Mistakes, testing::ValuesIn(kMistakes),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(StandardOutput, KeepsATerminalFromBeingSteered) {
  testing::internal::CaptureStdout();
  StandardOutput output(/*to_terminal=*/true);
  std::ostream out(&output);
  (out << "a\xC3").flush();
  out << "\xA9\x1B[31m\r\n\tb\x9B\rc\xE2\x82";
  EXPECT_EQ(output.End(), 0);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "a\xC3\xA9\\x1b[31m\n\tb\\x9b\\x0dc\\xe2\\x82");
}

#ifndef _WIN32
TEST(StandardOutput, ThatCantBeWrittenIsAFailure) {
  for (const char* target : {">/dev/full", ">&-"}) {
    const auto result = testing_support::RunProgram(
        "/bin/sh", {"-c", std::string("\"$0\" --help ") + target, TAVOLITE}, {});
    EXPECT_EQ(result.exit_code, 4) << target;
    EXPECT_TRUE(result.err.starts_with("tavolite: standard output can't be written: "))
        << result.err;
  }
}
#endif

}  // namespace
}  // namespace host
