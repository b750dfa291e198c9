#include <gtest/gtest.h>
#include <signal.h>

#include <chrono>
#include <filesystem>
#include <string>

#include "tests/support/program.h"

namespace {

using namespace testing_support;

TEST(SolveInterrupt, EndsTheSolverAndRemovesTheScratchFiles) {
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
    const TemporaryDirectory directory;
    WriteFile(directory / "a.mod", "var rss; var b; minimize o: rss; f: 3 = 2*b; g: 1 = b; end;\n");
    const auto start = std::chrono::steady_clock::now();
    const ProgramResult result = RunProgram(
        TAVOLITE, {"solve", "a.mod", "--solver", INTERRUPTING_SOLVER, "--work", "."},
        {.directory = directory.Path(), .environment = {{"FAKE_SIGNAL", std::to_string(number)}}});
    EXPECT_EQ(result.exit_code, 130);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
    for (const auto& entry : std::filesystem::directory_iterator(directory.Path())) {
      EXPECT_EQ(Utf8(entry.path().filename()), "a.mod");
    }
  }
}

}  // namespace
