// Every function that the solver calls in a library answers nonsense at one of its calls, or is
// missing: the solver must come to its ordinary end. The names are the solver's own lists.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <set>
#include <string>
#include <vector>

#include "binding/dctmf9glu.h"
#include "binding/optf9glu.h"
#include "binding/palmf9glu.h"
#include "binding/tdxf9glu.h"
#include "binding/tevmf9glu.h"
#include "binding/tmomf9glu.h"
#include "tests/doubles/scripted_run.h"

namespace {

using doubles::ScriptedRun;

#define FUNCTION_NAME(name, ...) names.emplace_back(#name)

std::vector<std::string> FunctionNames() {
  std::vector<std::string> names;
  using namespace linfit;
  LINFIT_PAL_FUNCTIONS(FUNCTION_NAME);
  LINFIT_TEV_FUNCTIONS(FUNCTION_NAME);
  LINFIT_TMO_FUNCTIONS(FUNCTION_NAME);
  LINFIT_DCT_FUNCTIONS(FUNCTION_NAME);
  LINFIT_OPT_FUNCTIONS(FUNCTION_NAME);
  LINFIT_TDX_FUNCTIONS(FUNCTION_NAME);
  return names;
}

const char* const kScript = "tmoOptFile = 1\nmessage 2 \"a message\"\nmessage 3 \"another\"\n";

std::size_t CountCalls(const ScriptedRun& run, const std::string& function) {
  return static_cast<std::size_t>(
      std::count_if(run.trace.begin(), run.trace.end(), [&](const std::string& line) {
        return line == function || line.starts_with(function + " ");
      }));
}

// The sample of every test run, or all of them.
const bool all_faults = std::getenv("LINFIT_ALL_FAULTS") != nullptr;

std::vector<std::string> Answers() {
  if (!all_faults) return {"null", "-1"};
  return {"0", "1", "-1", "2147483647", "-2147483648", "1e308", "null", "1 \"\""};
}

void ExpectOrdinaryEnd(const std::string& fault) {
  SCOPED_TRACE(fault);
  const ScriptedRun run = doubles::RunSolver(kScript + fault + "\n");
  EXPECT_EQ(run.program.exit_code, 0);
  EXPECT_EQ(run.program.err, "");
  // The same calls to the end, or a text that says why not.
  const bool whole = CountCalls(run, "tmoUnloadSolutionLegacy") == 1;
  EXPECT_TRUE(whole || !run.program.out.empty() || CountCalls(run, "tevLog") > 0);
}

TEST(LibraryFaults, EndTheRunInOrder) {
  const ScriptedRun good = doubles::RunSolver(kScript);
  for (const std::string& function : FunctionNames()) {
    const std::size_t calls = CountCalls(good, function);
    const std::set<std::size_t> places =
        all_faults ? std::set<std::size_t>{1, 2, calls} : std::set<std::size_t>{calls};
    for (const std::size_t call : places) {
      if (call == 0 || call > calls) continue;
      for (const std::string& answer : Answers()) {
        ExpectOrdinaryEnd(function + "#" + std::to_string(call) + " = " + answer);
      }
    }
  }
}

TEST(LibraryFaults, AMissingFunctionIsNamedWhenItIsCalled) {
  const ScriptedRun good = doubles::RunSolver(kScript);
  for (const std::string& function : FunctionNames()) {
    if (CountCalls(good, function) == 0) continue;
    const ScriptedRun run = doubles::RunSolver(kScript + ("refuse " + function) + "\n");
    EXPECT_EQ(run.program.exit_code, 123) << function;
    EXPECT_NE(run.program.out.find(function), std::string::npos) << run.program.out;
  }
}

}  // namespace
