// The examples, and one model in each format, through the real solver and libraries.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "tests/support/program.h"

namespace {

using namespace testing_support;

// The variables of a listing with their levels and marginals.
std::string Variables(const std::string& listing) {
  return listing.substr(listing.find("\nVariables\n"));
}

TEST(FrontEnds, EveryExampleSolves) {
  int count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(FromUtf8(EXAMPLES))) {
    if (entry.path().extension() != ".mod") continue;
    ++count;
    const TemporaryDirectory directory;
    const ProgramResult result = RunProgram(FromUtf8(TAVOLITE), {"solve", Utf8(entry.path())},
                                            {.directory = directory.Path(), .environment = {}});
    EXPECT_EQ(result.exit_code, 0) << Utf8(entry.path());
    EXPECT_EQ(result.err, "");
    EXPECT_NE(result.out.find("Results file:  linfit.tdx"), std::string::npos) << result.out;
    EXPECT_TRUE(std::filesystem::exists(directory / "linfit.tdx"));
  }
  EXPECT_GE(count, 4);
}

TEST(FrontEnds, GiveTheSameFigures) {
  const TemporaryDirectory directory;
  WriteFile(directory / "m.mod",
            "param y{1..4}; param x{1..4,1..2}; var rss; var b{1..2}; minimize o: rss;\n"
            "f{i in 1..4}: y[i] = sum{j in 1..2} x[i,j]*b[j];\n"
            "data; param y := 1 1.25 2 2 3 -4 4 0.5;\n"
            "param x: 1 2 := 1 3 2 2 1 7 3 -2.5 1 4 6 0.125; end;\n");
  WriteFile(directory / "m.lp",
            "minimize\n o: rss\nsubject to\n f1: 3 b(1) + 2 b(2) = 1.25\n f2: b(1) + 7 b(2) = 2\n"
            " f3: - 2.5 b(1) + b(2) = -4\n f4: 6 b(1) + 0.125 b(2) = 0.5\n"
            "bounds\n rss free\n b(1) free\n b(2) free\nend\n");
  WriteFile(directory / "m.mps",
            "NAME m\nROWS\n E f1\n E f2\n N o\n E f3\n E f4\nCOLUMNS\n rss o 1\n"
            " b_1 f4 6 f3 -2.5\n b_1 f1 3 f2 1\n b_2 f1 2 f2 7\n b_2 f3 1 f4 0.125\n"
            "RHS\n RHS f1 1.25 f2 2\n RHS f3 -4 f4 0.5\n"
            "BOUNDS\n FR BND rss\n FR BND b_1\n FR BND b_2\nENDATA\n");
  std::string first;
  for (const char* model : {"m.mod", "m.lp", "m.mps"}) {
    std::vector<std::string> arguments{"solve", model};
    if (std::string(model) == "m.mps") arguments.emplace_back("--split-underscores");
    const ProgramResult result = RunProgram(FromUtf8(TAVOLITE), arguments,
                                            {.directory = directory.Path(), .environment = {}});
    ASSERT_EQ(result.exit_code, 0) << result.err;
    const std::string variables = Variables(ReadFile(directory / "m.lst"));
    if (first.empty()) first = variables;
    EXPECT_EQ(variables, first) << model;
  }
  EXPECT_NE(first.find("  b(2)\n"), std::string::npos) << first;

  WriteFile(directory / "low.opt", "MAXN 3\n");
  const ProgramResult refused =
      RunProgram(FromUtf8(TAVOLITE), {"solve", "m.mod", "--options", "low.opt"},
                 {.directory = directory.Path(), .environment = {}});
  EXPECT_EQ(refused.exit_code, 1);
  EXPECT_TRUE(refused.err.starts_with(
      "tavolite: the solver ended without a solution: maxn limit exceeded\n"
      "tavolite: 4 observations, MAXN is 3: put \"MAXN 4\" into the option file, or leave it out\n"
      "tavolite: linfit.tdx is of an earlier run, of m at 2"))
      << refused.err;
}

#ifndef _WIN32  // a shell
TEST(FrontEnds, StandardInputIsATable) {
  const TemporaryDirectory directory;
  WriteFile(directory / "t.csv", "y,x\n1,2\n2,4\n3,7\n5,8\n");
  const ProgramResult result =
      RunProgram("/bin/sh", {"-c", "\"$0\" solve - --format csv --response y <t.csv", TAVOLITE},
                 {.directory = directory.Path(), .environment = {}});
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_NE(ReadFile(directory / "stdin.lst").find("Solution of stdin"), std::string::npos);
}
#endif

}  // namespace
