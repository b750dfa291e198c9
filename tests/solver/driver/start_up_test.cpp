// Start-up: what is called in which order, and how each failure ends.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "tests/solver/driver/trace.h"

namespace linfit {
namespace {

using doubles::RunSolver;
using doubles::ScriptedRun;
using Lines = std::vector<std::string>;

TEST(StartUp, CallsInOrder) {
  const ScriptedRun run = RunSolver("");
  const Lines expected = Words(
      "palXCreate palSetAuditLine tevXCreate tevInitEnvironmentLegacy tmoXCreate "
      "tmoRegisterEnvironment tmoLoadDataLegacy tmoIndexBaseSet tmoObjStyleSet tevLogStat "
      "palGetAuditLine tevStatAudit palGetAuditLine tevLog palXFree tevLogStat tevStat tmoM tmoN "
      "tmoPinfSet tmoMinfSet tmoOptFile tmoObjVar tmoObjRow tmoDictionary tmoDict tmoGetRhsOne");
  Lines order = CallOrder(run);
  order.resize(expected.size());
  EXPECT_EQ(order, expected);

  const std::string audit =
      "\"_TAVO_Least Squares    28.2.0 r750fa45 Released Aug 19, 2019 WEI x86 64bit/MS "
      "Windows_OVAT_\"";
  for (const std::string& line :
       {"palSetAuditLine " + audit, "tevStatAudit " + audit, "tevLog " + audit,
        std::string("tmoIndexBaseSet 1"), std::string("tmoObjStyleSet 0"),
        std::string("tmoPinfSet 3.0000000000000002e+300"),
        std::string("tmoMinfSet 4.0000000000000002e+300")}) {
    EXPECT_TRUE(Contains(run.trace, line)) << line;
  }
  EXPECT_EQ(LinesOf(run, {"tevLogStat"}).size(), 7U);
  const Lines help = doubles::TextsOf(run, "tevStat");
  ASSERT_GE(help.size(), 23U);
  EXPECT_EQ(help[0], "  Format of linear least squares problem:");
  EXPECT_EQ(help[1], "");
  EXPECT_EQ(help[22], "        variables should be on the right.");
}

TEST(StartUp, AuditQueryTouchesNothingElse) {
  for (const char* argument : {"audit", "audit  "}) {
    const ScriptedRun run = RunSolver("palGetAuditLine = \"the line   \"\n", {argument});
    EXPECT_EQ(run.program.exit_code, 0);
    EXPECT_EQ(run.program.out, "the line\n");
    EXPECT_EQ(CallOrder(run), (Lines{"palXCreate", "palSetAuditLine", "palGetAuditLine"}));
  }
  for (const std::string argument : {"Audit", "audits", " audit"}) {
    const ScriptedRun run = RunSolver("tevInitEnvironmentLegacy = 1\n", {argument});
    EXPECT_EQ(run.trace.back(), "tevInitEnvironmentLegacy \"" + argument + "\"");
  }
  EXPECT_EQ(RunSolver("tevInitEnvironmentLegacy = 1\n", {}).trace.back(),
            "tevInitEnvironmentLegacy \"\"");
}

struct EarlyFailure {
  const char* script;
  std::string text;
  std::string message;
  const char* last_call;
};
std::ostream& operator<<(std::ostream& out, const EarlyFailure& failure) {
  return out << failure.script;
}

// Up to the loaded model nothing is freed, and the texts are on standard output, with the library's
// behind them.
class BeforeTheModelIsLoaded : public testing::TestWithParam<EarlyFailure> {};
TEST_P(BeforeTheModelIsLoaded, FailuresGoToStandardOutput) {
  const EarlyFailure& row = GetParam();
  const ScriptedRun run = RunSolver(row.script + std::string("\n"));
  EXPECT_EQ(run.program.exit_code, 0);
  EXPECT_EQ(run.program.out, row.text + row.message + "\n");
  EXPECT_EQ(Freed(run), Lines());
  const Lines order = CallOrder(run);
  EXPECT_EQ(order.empty() ? "" : order.back(), row.last_call);
}
INSTANTIATE_TEST_SUITE_P(
    Scripts, BeforeTheModelIsLoaded,
    testing::Values(EarlyFailure{"CpalXAPIVersion = 0 \"too old\"",
                                 "*** Could not create audit object: ", "too old", ""},
                    EarlyFailure{"palXCreate = null", "*** Could not create audit object: ",
                                 "Error while creating object", "palXCreate"},
                    EarlyFailure{"CtevXAPIVersion = 0 \"too old\"",
                                 "*** Could not create environment object: ", "too old",
                                 "palSetAuditLine"},
                    EarlyFailure{"CtmoXAPIVersion = 0 \"too old\"",
                                 "*** Could not create model object: ", "too old",
                                 "tevInitEnvironmentLegacy"},
                    EarlyFailure{"tmoRegisterEnvironment = 4 \"no such environment\"",
                                 "*** Could not register environment: ", "no such environment",
                                 "tmoRegisterEnvironment"},
                    EarlyFailure{"tmoLoadDataLegacy = 3 \"instance not found\"",
                                 "*** Could not load TAVO model data.", "instance not found",
                                 "tmoLoadDataLegacy"}));

TEST(StartUp, AZeroInALibrarysTextCutsNothing) {
  const std::string text("two\0parts", 9);
  const ScriptedRun run = RunSolver("tmoRegisterEnvironment = 4 \"" + text + "\"\n");
  EXPECT_EQ(run.program.out, "*** Could not register environment: " + text + "\n");
}

TEST(StartUp, AnEnvironmentThatCannotBeInitialized) {
  const ScriptedRun run = RunSolver("tevInitEnvironmentLegacy = -1\n");
  EXPECT_EQ(run.program.exit_code, 0);
  EXPECT_EQ(run.program.out, "*** Could not initialize environment.\n");
  EXPECT_EQ(Freed(run), Lines());
}

TEST(StartUp, FailuresAfterTheModelIsLoaded) {
  ExpectFatalStop(RunSolver("model 3 4\n"), "Number of observations (rows) is too small");
  ExpectFatalStop(RunSolver("tmoDictionary = 0\n"), "Control file error: Need dictionary file");

  const ScriptedRun run = RunSolver("CdctXAPIVersion = 0 \"too old\"\n");
  EXPECT_EQ(run.program.exit_code, 0);
  EXPECT_EQ(run.program.out, "*** Could not initialize dictionary library: too old\n");
  EXPECT_EQ(Lines(run.trace.end() - 3, run.trace.end()),
            (Lines{"tmoDict", "tmoXFree", "tevXFree"}));
}

// A copy of the solver with its libraries, apart from one.
ScriptedRun RunWithoutLibrary(const std::string& absent, const std::string& script) {
  const testing_support::TemporaryDirectory directory("without");
  std::filesystem::path solver;
  for (const auto& entry : std::filesystem::directory_iterator(doubles::DoublesDirectory())) {
    if (!entry.is_regular_file() || entry.path().stem() == absent) continue;
    const std::filesystem::path copy = directory.Path() / entry.path().filename();
    std::filesystem::copy_file(entry.path(), copy);
    if (copy.stem() == "linfit") solver = copy;
  }
  return doubles::RunScripted(solver, script, {"scripted.cntr"});
}

TEST(StartUp, AbsentLibraries) {
  ScriptedRun run = RunWithoutLibrary("kervdclib64", "");
  EXPECT_EQ(run.program.exit_code, 0);
  EXPECT_EQ(run.program.out.rfind("*** Could not create audit object: ", 0), 0U);
  EXPECT_EQ(run.trace, Lines());

  run = RunWithoutLibrary("tdxdclib64", "");
  EXPECT_EQ(run.program.exit_code, 0);
  EXPECT_EQ(Freed(run), (Lines{"palXFree", "tmoXFree", "tevXFree"}));
  EXPECT_EQ(LinesOf(run, {"tmoModelStatSet"}), Lines());
  EXPECT_EQ(doubles::TextsOf(run, "tevLog").back().rfind("Could not initialize TDX:", 0), 0U);

  // Without an option file the option library isn't missed.
  ExpectSolution(RunWithoutLibrary("tptdclib64", ""));
  run = RunWithoutLibrary("tptdclib64", "tmoOptFile = 1\n");
  ExpectSolution(run);
  EXPECT_TRUE(Contains(run.trace, "tevStatC \"Could not load option library.\""));
  EXPECT_TRUE(Contains(run.trace, "tevLog \"Could not load option library.\""));
}

}  // namespace
}  // namespace linfit
