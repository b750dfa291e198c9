// The command `tavolite solve`, run as a program, with a stand-in for the solver.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "tests/support/program.h"

namespace {

using namespace testing_support;

constexpr const char* kModel =
    "set I := {'x y', 'z'};\nvar rss; var b{I};\nminimize obj: rss;\n"
    "fit{i in I}: 3 = sum{j in I} (if i = j then 2 else 1)*b[j];\nlast: 7 = b['z'];\nend;\n";

class SolveCommand : public testing::Test {
 protected:
  SolveCommand() { WriteFile(directory / "a.mod", kModel); }

  ProgramResult Solve(std::vector<std::string> arguments, const std::string& mode = "solve",
                      const std::string& sanitizer_options = "") {
    arguments.insert(arguments.begin(), "solve");
    arguments.insert(arguments.end(), {"--solver", FAKE_SOLVER});
    return RunProgram(
        TAVOLITE, arguments,
        {.directory = directory.Path(),
         .environment = {{"FAKE_SOLVER", mode}, {"ASAN_OPTIONS", sanitizer_options}}});
  }

  std::set<std::string> Files() const {
    std::set<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(directory.Path())) {
      files.insert(Utf8(entry.path().filename()));
    }
    return files;
  }

  const TemporaryDirectory directory{"tavolite \xC3\xBC"};
};

using Files_ = std::set<std::string>;

TEST_F(SolveCommand, StreamsTheLogAndReturnsTheSolution) {
  const ProgramResult result = Solve({"a.mod", "--work", "."});
  EXPECT_EQ(result.exit_code, 0);
  // The fake solver writes no results file.
  const std::string warning =
      "arning: the intercept that the solver has added can't be shown: some results.tdx: there is "
      "no such file\n";
  EXPECT_EQ(result.err, "tavolite: w" + warning);
  EXPECT_EQ(result.out,
            "log of the fake solver\nTDX file: some results.tdx\n\n"
            "Model status:  optimal\nSolve status:  ended normally\nObjective:     0.1\n"
            "Listing:       a.lst\nResults file:  some results.tdx\n");
  EXPECT_EQ(ReadFile(directory / "a.lst"),
            "W" + warning + "\n" +
                "status of the fake solver\n\nSolution of a\n\n"
                "Model status: optimal\nSolve status: ended normally\nObjective:    "
                "0.1\nCondition:    7\n"
                "\nEquations\n\n"
                "                    Level                 Marginal  Name\n"
                "                       -1                      NaN  obj\n"
                "                   -0.875                      0.1  fit('x y')\n"
                "                    -0.75                      0.1  fit(z)\n"
                "                   -0.625                      0.1  last\n"
                "\nVariables\n\n"
                "                    Level                 Marginal  Name\n"
                "                      100                      NaN  rss\n"
                "                  100.125                      0.1  b('x y')\n"
                "                   100.25                      0.1  b(z)\n");
  EXPECT_EQ(Files(), (Files_{"a.mod", "a.lst"}));
}

TEST_F(SolveCommand, RepeatsTheLastMessageWhenThereIsNoSolution) {
  const ProgramResult refused = Solve({"a.mod", "--work", "."}, "refuse");
  EXPECT_EQ(refused.exit_code, 1);
  EXPECT_EQ(refused.err, "tavolite: the solver ended without a solution: this model is refused\n");
  EXPECT_EQ(ReadFile(directory / "a.lst"), "status of the fake solver\n");
  const ProgramResult crashed = Solve({"a.mod", "--work", ".", "--quiet"}, "crash");
  EXPECT_EQ(crashed.exit_code, 1);
  EXPECT_EQ(crashed.out, "");
  EXPECT_NE(crashed.err.find("(exit status "), std::string::npos) << crashed.err;
  const ProgramResult other = Solve({"a.mod", "--work", ".", "--quiet"}, "options");
  EXPECT_EQ(other.exit_code, 1);
  EXPECT_NE(other.err.find("is that of its default options"), std::string::npos) << other.err;
  EXPECT_EQ(Files(), (Files_{"a.mod", "a.lst"}));
}

TEST_F(SolveCommand, KeepsScratchFilesOnRequestAndIsQuiet) {
  WriteFile(directory / "my.opt", "MAXN 5\n");
  const ProgramResult result = Solve({"a.mod", "--work", ".", "--keep", "--options", "my.opt",
                                      "--listing", "other.txt", "--timing", "times.txt"});
  EXPECT_EQ(result.exit_code, 0);
  const std::string where = "Scratch files: ";
  const std::string last = Lines(result.out).back();
  ASSERT_EQ(last.substr(0, where.size()), where);
  const std::string control = ReadFile(FromUtf8(last.substr(where.size())) / "control.txt");
  EXPECT_NE(control.find("my.opt"), std::string::npos) << control;
  EXPECT_EQ(Files().size(), 5U);
  EXPECT_NE(ReadFile(directory / "times.txt").find("\tread the model\n"), std::string::npos);

  const ProgramResult quiet = Solve({"a.mod", "--quiet"});
  EXPECT_EQ(quiet.exit_code, 0);
  EXPECT_EQ(quiet.out, "");
}

TEST_F(SolveCommand, RemovesWhatKilledSolvesHaveLeft) {
  for (const char* name : {"tavolite-1", "tavolite-2", "other-3"}) {
    std::filesystem::create_directory(directory / name);
    WriteFile(directory / name / "instance.db", "");
  }
  WriteFile(directory / "tavolite-1" / "in-use", "");
  WriteFile(directory / "other-3" / "in-use", "");
  EXPECT_EQ(Solve({"a.mod", "--work", "."}).exit_code, 0);
  EXPECT_EQ(Files(), (Files_{"a.lst", "a.mod", "other-3", "tavolite-2"}));
}

#ifndef _WIN32  // links and permissions of its kind
TEST_F(SolveCommand, ListingIsReplacedAsAWhole) {
  const auto private_file =
      std::filesystem::perms::owner_read | std::filesystem::perms::owner_write;
  WriteFile(directory / "real.txt", "earlier");
  std::filesystem::permissions(directory / "real.txt", private_file);
  std::filesystem::create_symlink("real.txt", directory / "a.lst");
  EXPECT_EQ(Solve({"a.mod"}).exit_code, 0);
  EXPECT_TRUE(std::filesystem::is_symlink(directory / "a.lst"));
  EXPECT_NE(ReadFile(directory / "real.txt").find("Solution of a"), std::string::npos);
  EXPECT_EQ(std::filesystem::status(directory / "real.txt").permissions(), private_file);
  EXPECT_EQ(Files(), (Files_{"a.lst", "a.mod", "real.txt"}));
}
#endif

TEST_F(SolveCommand, BadInputEndsWithStatusTwoAndOneLine) {
  WriteFile(directory / "bad.mod", "var rss;\nminimize o: rss\nend;\n");
  WriteFile(directory / "self.mod", "param p{i in 1..1} := p[i]; var b; f: p[1] = b; end;\n");
  WriteFile(directory / "a.lst", kModel);
  struct Case {
    std::vector<std::string> arguments;
    const char* message;
  };
  const std::vector<Case> cases{
      {{"none.mod"}, "none.mod: there is no such file"},
      {{"."}, "is a directory"},
      {{"self.mod", "--work", "."}, "self.mod: the model nests too deeply or refers to itself"},
      // Where the first could not remove a file that it had open, the next one does.
      {{"bad.mod", "--work", "."}, "bad.mod:3: syntax error"},
      {{"a.lst", "--format", "mod"}, "would overwrite a.lst"},
      {{"a.mod", "--report", "a.mod"}, "the report would overwrite a.mod: give another --report"},
      {{"a.mod", "--report", "./a.lst"}, "the report would overwrite the listing"},
      {{"a.mod", "--data", "none.dat"}, "none.dat: there is no such file"},
      {{"a.mod", "--options", "none.opt"}, "none.opt: there is no such file"},
      {{"a.mod", "--work", "nowhere"}, "nowhere"},
      {{"a.mod", "--split-underscores"}, "MPS and LP"},
  };
  const Files_ before = Files();
  for (const Case& test : cases) {
    // What the thread that nested too deeply holds can't be freed.
    const bool leaks = test.arguments.front() == "self.mod";
    const ProgramResult result = Solve(test.arguments, "solve", leaks ? "detect_leaks=0" : "");
    EXPECT_EQ(result.exit_code, 2) << test.message;
    EXPECT_NE(result.err.find(test.message), std::string::npos) << result.err;
    EXPECT_EQ(Lines(result.err).size(), 1U) << result.err;
    EXPECT_EQ(result.out, "");
  }
  EXPECT_EQ(ReadFile(directory / "a.lst"), kModel);
  EXPECT_EQ(Files(), before);

  EXPECT_EQ(RunProgram(TAVOLITE, {"--help"}).exit_code, 0);
  EXPECT_EQ(RunProgram(TAVOLITE, {"solve", "a.mod", "--solver", "nothing"}, {directory.Path(), {}})
                .exit_code,
            2);
}

TEST_F(SolveCommand, WarningsGoToStandardErrorAndNotesToStandardOutput) {
  WriteFile(directory / "b.mod",
            "param p; var rss; var c; var d; minimize o: rss;\n"
            "f: 2*c + 0*d = p; g: c = 4;\nend;\n");
  WriteFile(directory / "b.dat", "data;\nparam p := 3;\nend;\n");
  const ProgramResult result = Solve({"b.mod"});
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_EQ(result.out.find("tavolite: data from b.dat\n"), 0U);
  EXPECT_EQ(result.err.find("tavolite: warning: variable d has no coefficient"), 0U);
}

}  // namespace
