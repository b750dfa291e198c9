// The option file in all its outcomes.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/solver/driver/trace.h"

namespace linfit {
namespace {

using doubles::RunSolver;
using doubles::ScriptedRun;
using Lines = std::vector<std::string>;

// The calls of the options' step: it comes before the first row is read. Of a message only the
// number.
Lines OptionCalls(const ScriptedRun& run) {
  Lines lines =
      LinesOf(run, {"tevGetStrOpt", "tmoNameOptFile", "opt", "XCreate", "XFree", "tmoGetRhs"});
  lines.erase(std::find(lines.begin(), lines.end(), "tmoGetRhsOne 2"), lines.end());
  for (std::string& line : lines) {
    if (line.rfind("optGetMessage", 0) == 0) line = line.substr(0, line.find(' ') + 2);
  }
  return lines;
}

const Lines kKeys = {"optGetIntStr \"ADD_CONSTANT_TERM\"", "optGetStrStr \"TDX_FILE_NAME\"",
                     "optGetIntStr \"DEBUG_LEVEL\"", "optGetIntStr \"MAXN\"",
                     "optGetIntStr \"MAXP\""};

bool ReadsKeys(const ScriptedRun& run) {
  return !LinesOf(run, {"optGetIntStr", "optGetStrStr"}).empty();
}

TEST(Options, NotAskedFor) {
  const ScriptedRun run = RunSolver("tmoOptFile = 0\n");
  ExpectSolution(run);
  EXPECT_EQ(OptionCalls(run), Lines());
  EXPECT_TRUE(Contains(run.trace, "tdxOpenWrite \"linfit.tdx\" \"linfit\""));
}

TEST(Options, ReadInOrder) {
  const ScriptedRun run = RunSolver(
      "tmoOptFile = 1\n"
      "tmoNameOptFile = \"my file.opt  \"\n"
      "tevGetStrOpt(\"NameSysDir\") = \"/sys dir/  \"\n"
      "optGetStrStr(\"TDX_FILE_NAME\") = \"my results.tdx\"\n"
      "message 1 \"first  \"\n"
      "message 5 \"second\"\n");
  ExpectSolution(run);
  Lines expected = {"XCreate",
                    "tevGetStrOpt \"NameSysDir\"",
                    "optReadDefinition \"/sys dir/optlinfit.def\"",
                    "optEchoSet 1",
                    "tmoNameOptFile",
                    "optReadParameterFile \"my file.opt\""};
  expected.insert(expected.end(), kKeys.begin(), kKeys.end());
  for (const char* line : {"optMessageCount", "optGetMessage 1", "optGetMessage 2", "XFree"}) {
    expected.emplace_back(line);
  }
  EXPECT_EQ(OptionCalls(run), expected);
  for (const char* line : {"tevStatC \"first\"", "tevLog \"first\"", "tevStatC \"second\"",
                           "tevLog \"second\"", "tdxOpenWrite \"my results.tdx\" \"linfit\""}) {
    EXPECT_TRUE(Contains(run.trace, line)) << line;
  }
}

TEST(Options, FaultyFilesLeaveTheDefaults) {
  const std::string faulty =
      "tmoOptFile = 2\n"
      "optGetIntStr(\"MAXN\") = 2\n"
      "message 3 \"line 4: unknown key\"\n";
  const ScriptedRun parameters = RunSolver(faulty + "optReadParameterFile = 1\n");
  ExpectSolution(parameters);
  EXPECT_FALSE(ReadsKeys(parameters));
  EXPECT_TRUE(Contains(parameters.trace, "tevStatC \"line 4: unknown key\""));
  EXPECT_TRUE(Contains(parameters.trace, "tevLog \"line 4: unknown key\""));

  const ScriptedRun definition = RunSolver(
      faulty + "optReadDefinition = 7\ntevGetStrOpt(\"NameSysDir\") = \"no separator\"\n");
  ExpectSolution(definition);
  EXPECT_FALSE(ReadsKeys(definition));
  EXPECT_EQ(LinesOf(definition, {"optReadParameterFile", "optEchoSet"}), Lines());
  const std::string text =
      "Option definition file \"no separatoroptlinfit.def\" not read successfully";
  const Lines log = doubles::TextsOf(definition, "tevLog");
  ASSERT_GE(log.size(), 3U);
  EXPECT_EQ(log[1], text);
  EXPECT_EQ(log[2], "line 4: unknown key");
  EXPECT_EQ(doubles::TextsOf(definition, "tevStatC")[0], text);
}

}  // namespace
}  // namespace linfit
