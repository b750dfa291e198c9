// The model check, the extraction as the debug dump shows it, and the estimation's failures.
#include <gtest/gtest.h>

#include <string>

#include "tests/solver/driver/trace.h"

namespace linfit {
namespace {

using doubles::RunSolver;
using doubles::ScriptedRun;
using Lines = std::vector<std::string>;

std::string Option(const std::string& key, int value) {
  return "tmoOptFile = 1\noptGetIntStr(\"" + key + "\") = " + std::to_string(value) + "\n";
}

const std::string kInequality = "tmoGetEquTypeOne(6) = 1\n";
const std::string kTwoEntries = "entry 3 1 0.5\n";
const std::string kBounded = "tmoGetVarLowerOne(2) = 0\n";

struct Refusal {
  std::string script;
  const char* text;
};
std::ostream& operator<<(std::ostream& out, const Refusal& refusal) {
  return out << refusal.script;
}

// The default model: five observations, one coefficient, the intercept added.
class Refused : public testing::TestWithParam<Refusal> {};
TEST_P(Refused, ByTheFirstRuleThatIsBroken) {
  ExpectFatalStop(RunSolver(GetParam().script), GetParam().text);
}
INSTANTIATE_TEST_SUITE_P(
    Scripts, Refused,
    testing::Values(
        Refusal{Option("MAXN", 4) + Option("MAXP", 1) + kInequality, "maxn limit exceeded"},
        Refusal{Option("MAXP", 1) + kInequality, "maxp limit exceeded"},
        Refusal{Option("MAXN", -1), "maxn limit exceeded"},
        Refusal{kInequality + kTwoEntries + kBounded, "Only equality constraints are allowed"},
        Refusal{kTwoEntries + kBounded, "Objective variable must occur only in free objective row"},
        Refusal{"model 4 2\nentry 2 2 1\n",
                "Objective variable must occur only in free objective row"},
        Refusal{kBounded, "Only free variables are allowed."},
        Refusal{"tmoGetVarUpperOne(2) = 1e300\n", "Only free variables are allowed."},
        Refusal{"tmoGetVarLowerOne(2) = -1e300\ntmoGetVarUpperOne(2) = 1e300\n",
                "Only free variables are allowed."},
        Refusal{"tmoGetVarLowerOne(2) = -3e300\n", "Only free variables are allowed."},
        Refusal{"tmoM = 2000000000\ntmoN = 2000000000\n" + Option("MAXN", 2000000000) +
                    Option("MAXP", 2000000000),
                "Could not allocate memory"}));

TEST(ModelCheck, LimitsThemselvesPass) {
  ExpectSolution(RunSolver(Option("MAXN", 5) + Option("MAXP", 2)));
  ExpectSolution(RunSolver(Option("ADD_CONSTANT_TERM", 0) + Option("MAXP", 1)));
  // The row in which the objective variable stands isn't looked at, nor is the objective row's
  // type.
  ExpectSolution(RunSolver("tmoGetEquTypeOne(1) = 0\n"));
}

// The dump's lines, put together from their pieces.
Lines Dump(const ScriptedRun& run) {
  Lines lines;
  std::string line;
  bool inside = false;
  for (const std::string& call : run.trace) {
    if (call.rfind("tevStatCoff", 0) == 0) break;
    if (inside) {
      const std::size_t start = call.find('"');
      line += call.substr(start + 1, call.size() - start - 2);
      if (call.rfind("tevStatPChar", 0) != 0) {
        lines.push_back(line);
        line.clear();
      }
    }
    if (call.rfind("tevStatCon", 0) == 0) inside = true;
  }
  EXPECT_EQ(line, "");
  return lines;
}

TEST(Extraction, DebugDump) {
  const ScriptedRun run = RunSolver(Option("DEBUG_LEVEL", 1) +
                                    "fit 1 10 1e-7\nfit 2 20 -3\nfit -3 30 4\nfit 4 40 7\n"
                                    "fit 5.5 50 1e9\nfit 6 -60 0\n");
  ExpectSolution(run);
  const Lines expected = {
      "MATRIX A:",
      "     10.0000000  1.0000000E-07      1.0000000",
      "     20.0000000     -3.0000000      1.0000000",
      "     30.0000000      4.0000000      1.0000000",
      "     40.0000000      7.0000000      1.0000000",
      "     50.0000000  1.0000000E+09      1.0000000",
      "    -60.0000000      0.0000000      1.0000000",
      "VECTOR RHS:",
      "      1.0000000      2.0000000     -3.0000000      4.0000000      5.5000000",
      "      6.0000000",
  };
  EXPECT_EQ(Dump(run), expected);
  EXPECT_EQ(LinesOf(run, {"tevStatPChar"}).size(), 6U * 2U + 5U);
  EXPECT_TRUE(Dump(RunSolver("")).empty());
}

// Row and column of the objective may stand anywhere; the numbering closes the gap.
TEST(Extraction, ObjectiveAnywhere) {
  const std::string common = Option("DEBUG_LEVEL", 1) +
                             "optGetIntStr(\"ADD_CONSTANT_TERM\") = 0\n" +
                             "fit 1 11 21\nfit 2 12 23\nfit 3 13 22\n";
  for (const char* objective : {"1 1", "2 2", "4 3"}) {
    SCOPED_TRACE(objective);
    const ScriptedRun run = RunSolver(common + "objective " + objective + "\n");
    ExpectSolution(run);
    const Lines expected = {
        "MATRIX A:",
        "     11.0000000     21.0000000",
        "     12.0000000     23.0000000",
        "     13.0000000     22.0000000",
        "VECTOR RHS:",
        "      1.0000000      2.0000000      3.0000000",
    };
    EXPECT_EQ(Dump(run), expected);
  }
}

// An entry in the objective row goes to the next row, whose own entry overwrites it; from the last
// row it is dropped.
TEST(Extraction, EntryInTheObjectiveRow) {
  const std::string start =
      Option("DEBUG_LEVEL", 1) + "optGetIntStr(\"ADD_CONSTANT_TERM\") = 0\nmodel 4 2\n";
  const std::string entries = "entry 1 2 -1\nentry 2 2 -2\nentry 3 2 -3\nentry 4 2 -4\n";
  const auto matrix = [](const ScriptedRun& run) {
    Lines lines = Dump(run);
    lines.resize(4);
    return lines;
  };
  EXPECT_EQ(matrix(RunSolver(start + "objective 2 1\nentry 2 1 1\n" + entries)),
            (Lines{"MATRIX A:", "      1.0000000", "      3.0000000", "      4.0000000"}));
  EXPECT_EQ(matrix(RunSolver(start + "objective 2 1\nentry 2 1 1\nentry 2 2 -5\n")),
            (Lines{"MATRIX A:", "      0.0000000", "      5.0000000", "      0.0000000"}));
  EXPECT_EQ(matrix(RunSolver(start + "objective 4 1\nentry 4 1 1\n" + entries)),
            (Lines{"MATRIX A:", "      1.0000000", "      2.0000000", "      3.0000000"}));
}

TEST(Extraction, NamesComeFromTheDictionary) {
  const ScriptedRun run = RunSolver(
      "fit 1 1 5\nfit 2 3 6\nfit 4 4 9\nfit 5 6 1\nfit 7 7 2\n"
      "name column 2 b \"it's\" '1947'\nname column 3 income\n");
  ExpectSolution(run);
  const Lines log = doubles::TextsOf(run, "tevLog");
  const auto is_line = [&](const std::string& name) {
    for (const std::string& line : log) {
      if (line.rfind(name, 0) == 0) return true;
    }
    return false;
  };
  EXPECT_TRUE(is_line(" b(\"it's\",'1947') "));
  EXPECT_TRUE(is_line("           income "));
  EXPECT_TRUE(is_line("        Intercept "));
}

TEST(Estimation, FailuresEndTheRun) {
  // As many columns as rows, and an intercept on top: LAPACK refuses the shape, and nobody frees.
  const ScriptedRun wide = RunSolver("fit 1 2 3\nfit 2 7 5\n");
  EXPECT_EQ(wide.program.exit_code, 0);
  EXPECT_EQ(wide.program.out, " ** On entry to DGELS  parameter number  8 had an illegal value\n");
  EXPECT_EQ(Freed(wide), Lines{"palXFree"});
  EXPECT_EQ(LinesOf(wide, {"tmoModelStatSet"}), Lines());

  const std::string no_intercept = Option("ADD_CONSTANT_TERM", 0);
  const ScriptedRun square = RunSolver(no_intercept + "fit 1 2 3\nfit 2 7 5\n");
  ExpectFatalStop(square, "Degrees of freedom df=n-p should be >0");
  EXPECT_TRUE(Contains(square.trace, "tevStat \" DPOTRI(LAPACK) : info: 0\""));
  ExpectFatalStop(RunSolver(no_intercept + "fit 1 0\nfit 2 0\nfit 3 0\n"),
                  "Jacobian very poorly scaled: all elem zero");
  // Rank deficiency doesn't.
  ExpectSolution(RunSolver("fit 1 0 2\nfit 2 0 3\nfit 3 0 7\nfit 3 0 9\nfit 3 0 1\n"));
}

#if !defined(_WIN32) && !defined(__SANITIZE_ADDRESS__)
// Enough for the program and its libraries, too little for LAPACK's buffer.
TEST(Estimation, LittleAddressSpaceEndsTheRun) {
  const std::string solver = testing_support::Utf8(doubles::DoublesDirectory() / "linfit");
  for (const std::string kilobytes : {"100000", "140000"}) {
    ExpectFatalStop(
        doubles::RunScripted("/bin/sh", "",
                             {"-c", "ulimit -v " + kilobytes + "; exec \"$0\" x", solver}),
        "Could not allocate memory");
  }
}
#endif

// The default model's column is then an intercept, and an added one comes behind it.
TEST(Extraction, DimensionOfAnIntercept) {
  const ScriptedRun alone = RunSolver(Option("ADD_CONSTANT_TERM", 0) + "columnDimension(2) = -1\n");
  ExpectSolution(alone);
  EXPECT_EQ(LinesOf(alone, {"tevLog \"            coeff "}).size(), 1U) << "its own name";
  EXPECT_EQ(LinesOf(alone, {"tdxDataWriteStr \"Intercept\" "}).size(), 5U);
  const ScriptedRun added = RunSolver("columnDimension(2) = -1\n");
  ExpectSolution(added);
  EXPECT_EQ(LinesOf(added, {"tdxDataWriteStr \"x1\" \"Intercept\" "}).size(), 1U);
  ExpectFatalStop(RunSolver("rowDimension(3) = -1\n"), "d=-1 internal error");
}

struct BrokenLibrary {
  std::string script;
  std::string out;
  std::string last_text;  // in the log
};
std::ostream& operator<<(std::ostream& out, const BrokenLibrary& library) {
  return out << library.script;
}
const std::string kShape = " ** On entry to DGELS  parameter number  2 had an illegal value\n";

// Numbers that can't come from a working library: nothing overflows, runs for long or reads out of
// range, and the run ends by itself.
class Broken : public testing::TestWithParam<BrokenLibrary> {};
TEST_P(Broken, LibraryDoesNotBreakTheRun) {
  const BrokenLibrary& library = GetParam();
  const ScriptedRun run = RunSolver(library.script);
  EXPECT_EQ(run.program.exit_code, 0);
  EXPECT_EQ(run.program.out, library.out);
  EXPECT_EQ(run.program.err, "");
  EXPECT_LT(run.trace.size(), 31000U);
  if (library.out.empty()) {
    EXPECT_EQ(run.trace.back(), "tevXFree");
  }
  if (!library.last_text.empty()) {
    EXPECT_EQ(doubles::TextsOf(run, "tevLog").back(), library.last_text);
  }
}
INSTANTIATE_TEST_SUITE_P(
    Scripts, Broken,
    testing::Values(
        BrokenLibrary{"tmoObjRow = -1\ntmoObjVar = 99\n", "", ""},
        BrokenLibrary{"tmoM = -2147483648\ntmoN = -2147483648\n", kShape, ""},
        BrokenLibrary{"tmoM = 0\ntmoN = 0\n", kShape, ""},
        BrokenLibrary{"tmoM = 2147483647\ntmoN = -2147483648\n", "", "maxn limit exceeded"},
        BrokenLibrary{"entryCount(2) = 2147483647\n", "", ""},
        BrokenLibrary{"entryCount(2) = -2147483648\n" + Option("ADD_CONSTANT_TERM", 0), "",
                      "Jacobian very poorly scaled: all elem zero"},
        BrokenLibrary{"entryCount(1) = 2147483647\n", "",
                      "Objective variable must occur only in free objective row"},
        BrokenLibrary{"rowDimension(2) = 2147483647\ncolumnDimension(2) = 2147483647\n", "", ""},
        BrokenLibrary{"rowDimension(2) = -2147483648\n", "", "d=-1 internal error"},
        BrokenLibrary{"tdxCurrentDim = 2147483647\n", "", ""},
        BrokenLibrary{"tmoOptFile = 1\noptMessageCount = 2147483647\n", "", ""}));

}  // namespace
}  // namespace linfit
