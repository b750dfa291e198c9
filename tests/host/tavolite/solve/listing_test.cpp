#include "tavolite/solve/listing.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "tests/support/program.h"

namespace host {
namespace {

using testing_support::Lines;
using testing_support::ReadFile;
using testing_support::TemporaryDirectory;
using testing_support::WriteFile;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// `count` elements of one symbol, each with its number as its label.
void Fill(std::size_t count, Dictionary& dictionary, ElementNames& names) {
  dictionary.symbols = {"fit"};
  for (std::size_t i = 0; i < count; ++i) {
    dictionary.labels.push_back(std::to_string(i));
    names.symbol.push_back(0);
    names.label.push_back(static_cast<std::int32_t>(i));
    names.first.push_back(static_cast<std::int32_t>(i + 1));
  }
}

class Listing : public testing::Test {
 protected:
  std::string Write(const ModelNames& names, const Solution* solution) const {
    WriteListing(directory / "a.lst", directory / "status.txt", names, solution);
    return ReadFile(directory / "a.lst");
  }
  const TemporaryDirectory directory;
};

TEST_F(Listing, HoldsStatusFileNotesAndSolution) {
  ModelNames names;
  names.model = "m";
  names.notes = {"first note", "second note"};
  names.warnings = {"a warning"};
  names.condition = 43275.0;
  Fill(2, names.elements.dictionary, names.elements.rows);
  Solution solution;
  solution.model_status = 1;
  solution.solve_status = 13;
  solution.head_and_tail[5] = -kInfinity;
  solution.rows.level = {-1.7976931348623157e308, kNaN};
  solution.rows.marginal = {0.1, kInfinity};
  WriteFile(directory / "status.txt", "status\n");
  EXPECT_EQ(
      Write(names, &solution),
      "Warning: a warning\n\nstatus\n\nNote: first note\n\nNote: second note\n\nSolution of m\n\n"
      "Model status: optimal\nSolve status: code 13\nObjective:    -Infinity\nCondition:    "
      "4.3e+04\n"
      "\nEquations\n\n"
      "                    Level                 Marginal  Name\n"
      " -1.7976931348623157e+308                      0.1  fit(0)\n"
      "                      NaN                 Infinity  fit(1)\n"
      "\nVariables\n\n"
      "                    Level                 Marginal  Name\n");
  solution.head_and_tail.clear();
  EXPECT_EQ(ObjectiveText(solution), "not stated");
  EXPECT_EQ(Write(names, nullptr),
            "Warning: a warning\n\nstatus\n\nNote: first note\n\nNote: second note\n");
}

// Around the size of one piece, and with more pieces than are made at once.
TEST_F(Listing, PiecesComeInTheirOrder) {
  for (const std::size_t count : {32767U, 32768U, 32769U, 170'000U}) {
    ModelNames names;
    Fill(count, names.elements.dictionary, names.elements.columns);
    Solution solution;
    solution.columns.level.resize(count);
    solution.columns.marginal.resize(count);
    const std::vector<std::string> lines = Lines(Write(names, &solution));
    const std::size_t heading = lines.size() - count;
    ASSERT_EQ(lines.at(heading - 3), "Variables") << count;
    for (std::size_t i = 0; i < count; ++i) {
      ASSERT_EQ(lines[heading + i].substr(52), "fit(" + std::to_string(i) + ")") << count;
    }
  }
}

TEST_F(Listing, WhereItCannotBeWrittenIsNamed) {
  try {
    WriteListing(directory / "none" / "a.lst", directory / "status.txt", {}, nullptr);
    ADD_FAILURE() << "written";
  } catch (const FileError& error) {
    EXPECT_NE(std::string(error.what()).find("a.lst: can't be written"), std::string::npos);
  }
}

}  // namespace
}  // namespace host
