#include "tests/solver/driver/trace.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <sstream>

namespace linfit {

using doubles::ScriptedRun;
using Lines = std::vector<std::string>;

Lines LinesOf(const ScriptedRun& run, const Lines& starts) {
  Lines found;
  for (const std::string& line : run.trace) {
    for (const std::string& start : starts) {
      if (line.rfind(start, 0) == 0) {
        found.push_back(line);
        break;
      }
    }
  }
  return found;
}

Lines Words(const std::string& text) {
  std::istringstream stream(text);
  return {std::istream_iterator<std::string>(stream), {}};
}

bool Contains(const Lines& lines, const std::string& line) {
  return std::find(lines.begin(), lines.end(), line) != lines.end();
}

Lines Freed(const ScriptedRun& run) {
  return LinesOf(run, {"palXFree", "tmoXFree", "tevXFree", "optFree", "XFree"});
}

Lines CallOrder(const ScriptedRun& run) {
  Lines names;
  for (const std::string& line : run.trace) {
    const std::string name = line.substr(0, line.find(' '));
    if (names.empty() || names.back() != name) names.push_back(name);
  }
  return names;
}

void ExpectFatalStop(const ScriptedRun& run, const std::string& text) {
  EXPECT_EQ(run.program.exit_code, 0);
  EXPECT_EQ(run.program.out, "");
  const Lines expected = {"tevStatC \"" + text + "\"", "tevLog \"" + text + "\"", "tmoXFree",
                          "tevXFree"};
  ASSERT_GE(run.trace.size(), 4U);
  EXPECT_EQ(Lines(run.trace.end() - 4, run.trace.end()), expected);
  EXPECT_EQ(LinesOf(run, {"tmoModelStatSet", "tmoSolveStatSet", "tmoUnloadSolutionLegacy"}),
            Lines());
}

void ExpectSolution(const ScriptedRun& run) {
  EXPECT_EQ(run.program.exit_code, 0);
  EXPECT_EQ(run.program.out, "");
  EXPECT_EQ(run.program.err, "");
  const Lines expected = {"tmoUnloadSolutionLegacy", "tmoXFree", "tevXFree"};
  ASSERT_GE(run.trace.size(), 3U);
  EXPECT_EQ(Lines(run.trace.end() - 3, run.trace.end()), expected);
}

}  // namespace linfit
