// Designs with and without full rank, through the real solver and libraries.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "tests/support/program.h"

namespace {

using namespace testing_support;

ProgramResult Solve(const TemporaryDirectory& directory, const std::vector<std::string>& words) {
  std::vector<std::string> arguments{"solve"};
  arguments.insert(arguments.end(), words.begin(), words.end());
  return RunProgram(FromUtf8(TAVOLITE), arguments,
                    {.directory = directory.Path(), .environment = {}});
}

// Powers of the regressor, as the certified polynomials have them.
std::string Polynomial(const std::string& data_set, int degree) {
  const std::vector<std::string> lines = Lines(ReadFile(FromUtf8(DATA_SETS) / (data_set + ".csv")));
  std::string text = "y";
  for (int k = 1; k <= degree; ++k) text += ",x" + std::to_string(k);
  for (std::size_t i = 1; i < lines.size(); ++i) {
    const std::size_t comma = lines[i].find(',');
    const double x = std::stod(lines[i].substr(comma + 1));
    text += "\n" + lines[i].substr(0, comma);
    for (int k = 1; k <= degree; ++k) {
      std::array<char, 32> value;
      std::snprintf(value.data(), value.size(), ",%.17g", std::pow(x, k));
      text += value.data();
    }
  }
  return text + "\n";
}

TEST(FullRank, TwoFactorsWithAllLevels) {
  const TemporaryDirectory directory;
  std::string table = "y,woolA,woolB,tensionL,tensionM,tensionH\n";
  for (int i = 0; i < 12; ++i) {
    table += std::to_string(i * i % 7);
    for (int wool = 0; wool < 2; ++wool) table += i % 2 == wool ? ",1" : ",0";
    for (int tension = 0; tension < 3; ++tension) table += i % 3 == tension ? ",1" : ",0";
    table += '\n';
  }
  WriteFile(directory / "t.csv", table);
  const ProgramResult result =
      Solve(directory, {"t.csv", "--response", "y", "--no-intercept", "--quiet"});
  EXPECT_EQ(result.exit_code, 3);
  EXPECT_EQ(result.out, "");
  const std::string sentence =
      "tensionH is a combination of woolA, woolB, tensionL and tensionM; the estimates, the "
      "residual sum and all that follows from them mean nothing. Leave one of them out.";
  EXPECT_EQ(result.err, "tavolite: warning: " + sentence + "\n");
  const std::string listing = ReadFile(directory / "t.lst");
  EXPECT_TRUE(listing.starts_with("Warning: " + sentence + "\n")) << listing;
  EXPECT_NE(listing.find("\nCondition:    infinite\n"), std::string::npos);

  EXPECT_EQ(Solve(directory, {"t.csv", "--response", "y", "--drop", "woolB,tensionH"}).err, "");
}

// The option file decides on the intercept.
TEST(FullRank, OptionFileCounts) {
  const TemporaryDirectory directory;
  WriteFile(directory / "t.csv", "y,one,x\n1,1,2\n2,1,5\n4,1,4\n7,1,9\n");
  WriteFile(directory / "0.opt", "ADD_CONSTANT_TERM 0\n");
  WriteFile(directory / "1.opt", "add_constant_term = 1\n");
  EXPECT_EQ(Solve(directory, {"t.csv", "--response", "y"}).exit_code, 0);
  EXPECT_EQ(Solve(directory, {"t.csv", "--response", "y", "--options", "0.opt"}).exit_code, 0);
  const ProgramResult both = Solve(directory, {"t.csv", "--response", "y", "--options", "1.opt"});
  EXPECT_EQ(both.exit_code, 3);
  EXPECT_NE(both.err.find("one is a multiple of the intercept;"), std::string::npos) << both.err;
}

TEST(FullRank, NearlyDependentDesignIsSolved) {
  const TemporaryDirectory directory;
  WriteFile(directory / "filip.csv", Polynomial("Filip", 10));
  const ProgramResult result = Solve(directory, {"filip.csv", "--response", "y"});
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_TRUE(result.err.starts_with(
      "tavolite: warning: the design is nearly dependent (condition number 5.2e+09): x10 is nearly "
      "a combination of x1"))
      << result.err;
  EXPECT_TRUE(result.err.ends_with("about 5 digits of the estimates can be trusted.\n"));
}

struct FullRankSet {
  const char* name;
  int degree;  // of a polynomial; 0: the columns as they are
  std::vector<std::string> words;
};

class FullRankSets : public testing::TestWithParam<FullRankSet> {};

TEST_P(FullRankSets, DrawNoWarning) {
  const auto& [name, degree, words] = GetParam();
  const TemporaryDirectory directory;
  const std::string file = std::string(name) + ".csv";
  WriteFile(directory / file,
            degree > 0 ? Polynomial(name, degree) : ReadFile(FromUtf8(DATA_SETS) / file));
  std::vector<std::string> arguments{file, "--response"};
  arguments.insert(arguments.end(), words.begin(), words.end());
  const ProgramResult result = Solve(directory, arguments);
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_EQ(result.err, "");
  const bool is_perfect = result.out.find("the fit is essentially perfect") != std::string::npos;
  EXPECT_EQ(is_perfect, std::string(name) == "Wampler1");
}

INSTANTIATE_TEST_SUITE_P(
    DataSets, FullRankSets,
    testing::Values(FullRankSet{"Longley", 0, {"y"}}, FullRankSet{"Norris", 0, {"y"}},
                    FullRankSet{"Pontius", 2, {"y"}}, FullRankSet{"Wampler1", 5, {"y"}},
                    FullRankSet{"Wampler4", 5, {"y"}},
                    FullRankSet{"NoInt1", 0, {"y", "--no-intercept"}},
                    FullRankSet{"macro", 0, {"realcons", "--label", "obs"}},
                    FullRankSet{"statecrime", 0, {"murder", "--label", "state"}},
                    FullRankSet{"randhie", 0, {"mdvis", "--label", "obs"}},
                    FullRankSet{"billboard", 0, {"weeks", "--label", "artist,track"}}),
    [](const auto& test) { return std::string(test.param.name); });

}  // namespace
