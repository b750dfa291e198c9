// The writing sequence in a whole run on the scripted libraries.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/solver/driver/trace.h"

namespace linfit {
namespace {

using doubles::RunSolver;
using doubles::ScriptedRun;
using Lines = std::vector<std::string>;

constexpr const char* kModel = "fit 3.1 1\nfit 4.9 2\nfit 7.2 3\nfit 8.8 4\nfit 11 5\n";

Lines SymbolsStarted(const ScriptedRun& run) {
  Lines names;
  for (const std::string& line : LinesOf(run, {"tdxDataWriteStrStart"})) {
    const std::size_t first = line.find('"') + 1;
    names.push_back(line.substr(first, line.find('"', first) - first));
  }
  return names;
}

TEST(WriteResultsFile, CallsInOrder) {
  const ScriptedRun run = RunSolver(kModel);
  ExpectSolution(run);
  Lines calls = LinesOf(run, {"tdx"});
  const auto version = std::find(calls.begin(), calls.end(), "tdxGetDLLVersion");
  ASSERT_NE(version, calls.end());
  calls.erase(calls.begin(), version);
  ASSERT_GT(calls.size(), 8U);
  EXPECT_EQ(calls[1], "tdxOpenWrite \"linfit.tdx\" \"linfit\"");
  EXPECT_EQ(calls[2], "tdxDataWriteStrStart \"r2\" \"R Squared\" 0 1 0");
  EXPECT_EQ(calls.back(), "tdxClose");
  EXPECT_EQ(SymbolsStarted(run), (Lines{"r2", "rss", "df", "sigma", "resvar", "estimate", "se",
                                        "tval", "pval", "resid", "fitted", "covar", "confint"}));
  EXPECT_EQ(LinesOf(run, {"tdxDataWriteDone"}).size(), 13U);
  EXPECT_EQ(LinesOf(run, {"tdxErrorCount"}).size(), 13U);
  EXPECT_TRUE(Contains(calls, "tdxDataWriteStr 3 0 0 0 0"));  // the degrees of freedom
  // A shorter key leaves nothing of the longer one before it.
  const auto is_covar = [](const std::string& line) {
    return line.starts_with("tdxDataWriteStr \"x1\" \"x1\" ");
  };
  EXPECT_EQ(std::count_if(calls.begin(), calls.end(), is_covar), 1);
  for (const char* stream : {"tevStatC", "tevLog"}) {
    const Lines texts = doubles::TextsOf(run, stream);
    const auto line =
        std::find(texts.begin(), texts.end(), "TDX library version: scripted results file");
    ASSERT_TRUE(line != texts.end() && line != texts.begin()) << stream;
    EXPECT_EQ(*(line - 1), "") << stream;
    EXPECT_EQ(*(line + 1), "TDX file: linfit.tdx") << stream;
  }
}

TEST(WriteResultsFile, NameFromTheOptionsIsTrimmed) {
  const ScriptedRun run = RunSolver(std::string(kModel) +
                                    "tmoOptFile = 1\noptGetStrStr(\"TDX_FILE_NAME\") = \"my file"
                                    ".tdx   \"\n");
  EXPECT_EQ(LinesOf(run, {"tdxOpenWrite"}), Lines{"tdxOpenWrite \"my file.tdx\" \"linfit\""});
  EXPECT_TRUE(Contains(doubles::TextsOf(run, "tevLog"), "TDX file: my file.tdx"));
}

TEST(WriteResultsFile, VersionFailuresStopNothing) {
  const std::pair<const char*, const char*> cases[] = {
      {"tdxGetDLLVersion = 0 \"7\"\n", "TDX library version: ** Failed tdxGetDLLVersion() **"},
      {"tdxGetDLLVersion = 1 \"\"\n",
       "TDX library version: ** tdxGetDLLVersion() returned blank!! **"},
  };
  for (const auto& [script, line] : cases) {
    const ScriptedRun run = RunSolver(std::string(kModel) + script);
    ExpectSolution(run);
    EXPECT_TRUE(Contains(doubles::TextsOf(run, "tevStatC"), line)) << script;
    EXPECT_TRUE(Contains(doubles::TextsOf(run, "tevLog"), line)) << script;
  }
}

struct FileFailure {
  const char* script;
  const char* text;
  std::size_t symbols;  // started until then
  bool closed;
};
std::ostream& operator<<(std::ostream& out, const FileFailure& failure) {
  return out << failure.script;
}

// The option library's create entry has the same name; it isn't used here.
class FailingFile : public testing::TestWithParam<FileFailure> {};
TEST_P(FailingFile, IsFatal) {
  const ScriptedRun run = RunSolver(std::string(kModel) + GetParam().script);
  ExpectFatalStop(run, GetParam().text);
  EXPECT_EQ(SymbolsStarted(run).size(), GetParam().symbols);
  EXPECT_EQ(!LinesOf(run, {"tdxClose"}).empty(), GetParam().closed);
}
INSTANTIATE_TEST_SUITE_P(
    Scripts, FailingFile,
    testing::Values(FileFailure{"XCreate = null\n",
                                "Could not initialize TDX:Error while creating object", 0, false},
                    FileFailure{"tdxOpenWrite = 0\n", "Could not open for write:linfit.tdx", 0,
                                false},
                    FileFailure{"tdxErrorCount(\"estimate\") = 1\ntdxGetLastError = "
                                "7\ntdxErrorStr(7) = 1 \"disk full\"\n",
                                "TDX error(estimate):disk full", 6, false},
                    FileFailure{"tdxErrorCount(\"confint\") = 2\ntdxErrorStr = 1 \"odd\"\n",
                                "TDX error(confint):odd", 13, false},
                    FileFailure{"tdxClose = 1\n", "Error closing TDX file", 13, true}));

}  // namespace
}  // namespace linfit
