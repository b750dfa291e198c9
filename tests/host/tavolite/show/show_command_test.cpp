#include "tavolite/show/show_command.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <sstream>

#include "base/database.h"
#include "tests/host/tdxdclib/tdx_session.h"

namespace host {
namespace {

using testing_support::Lines;
using testing_support::TemporaryDirectory;

class Show : public testing::Test {
 protected:
  // A regression's file in small, with texts that need quotes and values that aren't finite.
  void SetUp() override {
    TdxSession session;
    ASSERT_TRUE(session.Open(file_));
    session.Symbol("r2", 0, {{{}, 0.1 + 0.2}}, "R Squared");
    session.Symbol("estimate", 1, {{{"a,b"}, 1.0 / 3.0}, {{"Zü\"rich"}, -2e300}},
                   "Estimated coefficients");
    session.Symbol("se", 1, {{{"a,b"}, 0.25}, {{"Zü\"rich"}, 1.0}});
    session.Symbol("tval", 1,
                   {{{"a,b"}, std::numeric_limits<double>::infinity()}, {{"Zü\"rich"}, 1.0}});
    session.Symbol("pval", 1,
                   {{{"a,b"}, std::numeric_limits<double>::quiet_NaN()},
                    {{"Zü\"rich"}, -std::numeric_limits<double>::infinity()}});
    session.Symbol("covar", 2,
                   {{{"a,b", "a,b"}, 1},
                    {{"a,b", "Zü\"rich"}, 0.5},
                    {{"Zü\"rich", "a,b"}, 0.5},
                    {{"Zü\"rich", "Zü\"rich"}, 22}},
                   "variance-covariance matrix");
    std::vector<TdxSession::KeyedValue> intervals;
    double value = 0.0;
    for (const char* coefficient : {"a,b", "Zü\"rich"}) {
      for (const char* level : {"90%", "95%", "97.5%", "99%"}) {
        for (const char* bound : {"LO", "UP"}) {
          intervals.push_back({{level, coefficient, bound}, value += 1.0});
        }
      }
    }
    session.Symbol("confint", 3, intervals);
    ASSERT_TRUE(session.Close()) << session.LastError();
  }

  std::string Run(ShowOptions options) {
    if (options.file.empty()) options.file = file_;
    if (options.width == 0) options.width = 80;
    std::ostringstream out;
    std::ostringstream err;
    status_ = RunShow(options, out, err);
    err_ = err.str();
    return out.str();
  }

  const TemporaryDirectory directory_;
  const std::filesystem::path file_ = directory_ / "linfit.tdx";
  int status_ = -1;
  std::string err_;
};

TEST_F(Show, Overview) {
  const std::string text = Run({});
  EXPECT_EQ(status_, 0);
  EXPECT_EQ(text.substr(text.find("\nSymbols")),
            "\nSymbols\n"
            "name      dimension  records  text\n"
            "r2                0        1  R Squared\n"
            "estimate          1        2  Estimated coefficients\n"
            "se                1        2\n"
            "tval              1        2\n"
            "pval              1        2\n"
            "covar             2        4  variance-covariance matrix\n"
            "confint           3       16\n"
            "\nScalars\n"
            "r2  0.30000000000000004\n"
            "\nCoefficients\n"
            "dim1      estimate    se  tval  pval  95% LO  95% UP\n"
            "a,b      0.3333333  0.25   Inf   NaN       3       4\n"
            "Zü\"rich    -2e+300     1     1  -Inf      11      12\n");
  const std::string wide = Run({.width = 200});
  EXPECT_NE(wide.find("90% LO  90% UP  95% LO  95% UP  97.5% LO  97.5% UP  99% LO  99% UP\n"),
            std::string::npos);
  EXPECT_EQ(Lines(Run({.limit = 1})).size(), Lines(text).size() - 1);
}

TEST_F(Show, OneSymbol) {
  EXPECT_EQ(Run({.symbol = "estimate"}),
            "estimate: Estimated coefficients\n\n"
            "dim1                  value\n"
            "a,b      0.3333333333333333\n"
            "Zü\"rich             -2e+300\n");
  EXPECT_EQ(Run({.symbol = "COVAR"}),
            "covar: variance-covariance matrix\n\n"
            "         a,b  Zü\"rich\n"
            "a,b        1      0.5\n"
            "Zü\"rich  0.5       22\n");
  // Too narrow for the matrix; a part is no matrix.
  EXPECT_EQ(Lines(Run({.symbol = "covar", .width = 20})).size(), 7U);
  const std::string part = Run({.symbol = "covar", .limit = 3});
  EXPECT_TRUE(part.ends_with("(3 of 4 records)\n")) << part;
}

TEST_F(Show, CsvAndJson) {
  EXPECT_EQ(Run({.symbol = "estimate", .format = ShowFormat::kCsv}),
            "dim1,value\n\"a,b\",0.3333333333333333\n\"Zü\"\"rich\",-2e+300\n");
  EXPECT_EQ(Run({.symbol = "tval", .format = ShowFormat::kCsv, .limit = 1}),
            "dim1,value\n\"a,b\",Inf\n");
  EXPECT_EQ(Run({.symbol = "r2", .format = ShowFormat::kCsv}), "value\n0.30000000000000004\n");
  EXPECT_EQ(Run({.symbol = "pval", .format = ShowFormat::kJson}),
            "{\"name\":\"pval\",\"text\":\"\",\"dimension\":1,\"records\":[\n"
            "{\"keys\":[\"a,b\"],\"value\":null},\n"
            "{\"keys\":[\"Zü\\\"rich\"],\"value\":\"-Infinity\"}\n]}\n");
  EXPECT_EQ(Lines(Run({.format = ShowFormat::kCsv}))[2], "estimate,1,2,Estimated coefficients");
  const std::string json = Run({.format = ShowFormat::kJson});
  EXPECT_NE(json.find("\"scalars\":{\"r2\":0.30000000000000004}"), std::string::npos);
  EXPECT_NE(json.find("\"pval\":null,\"confint\":{\"90%\":[1,2],\"95%\":[3,4],"),
            std::string::npos);

  const std::filesystem::path output = directory_ / "out.csv";
  EXPECT_EQ(Run({.symbol = "r2", .format = ShowFormat::kCsv, .output = output}), "");
  EXPECT_EQ(testing_support::ReadFile(output), "value\n0.30000000000000004\n");
}

TEST_F(Show, TextsOfOthersNeitherSteerTerminalsNorRunInSpreadsheets) {
  const std::filesystem::path file = directory_ / "other.tdx";
  TdxSession session;
  ASSERT_TRUE(session.Open(file));
  session.Symbol("s", 1,
                 {{{"\x1B[2J"}, 1}, {{"=1+1"}, -2}, {{"-3e5"}, 3}, {{"-3+1"}, 4}, {{"@a,b"}, 5}},
                 "a\nb");
  ASSERT_TRUE(session.Close());
  EXPECT_TRUE(Run({.file = file, .symbol = "s"}).starts_with("s: a\\x0ab\n\n"));
  EXPECT_NE(Run({.file = file, .symbol = "s"}).find("\\x1b[2J      1\n"), std::string::npos);
  ShowOptions csv{.file = file, .symbol = "s", .format = ShowFormat::kCsv};
  EXPECT_EQ(Run(csv), "dim1,value\n\x1B[2J,1\n'=1+1,-2\n-3e5,3\n'-3+1,4\n\"'@a,b\",5\n");
  csv.csv_cells = CsvCells::kRaw;
  EXPECT_EQ(Run(csv), "dim1,value\n\x1B[2J,1\n=1+1,-2\n-3e5,3\n-3+1,4\n\"@a,b\",5\n");
}

// The line 2.2 + 0.6 x through (1, 2), (2, 4), (3, 5), (4, 4), (5, 5), with a slope's name and an
// R-squared of a model with or without an intercept.
void WriteLine(const std::filesystem::path& file, const char* intercept, double r2) {
  TdxSession session;
  ASSERT_TRUE(session.Open(file));
  session.Symbol("r2", 0, {{{}, r2}});
  session.Symbol("rss", 0, {{{}, 2.4}});
  session.Symbol("df", 0, {{{}, 3}});
  session.Symbol("sigma", 0, {{{}, std::sqrt(0.8)}});
  session.Symbol("resvar", 0, {{{}, 0.8}});
  session.Symbol("estimate", 1, {{{"=x"}, 0.6}, {{intercept}, 2.2}});
  session.Symbol("se", 1, {{{"=x"}, 0.25}, {{intercept}, 1.0}});
  session.Symbol("tval", 1, {{{"=x"}, 2.4}, {{intercept}, 2.2}});
  session.Symbol("pval", 1, {{{"=x"}, 0.125}, {{intercept}, 0.0}});
  session.Symbol("resid", 1,
                 {{{"1"}, -0.8}, {{"2"}, 0.6}, {{"3"}, 1}, {{"4"}, -0.6}, {{"5"}, -0.2}});
  session.Symbol("fitted", 1, {{{"1"}, 2.8}, {{"2"}, 3.4}, {{"3"}, 4}, {{"4"}, 4.6}, {{"5"}, 5.2}});
  ASSERT_TRUE(session.Close());
}

TEST_F(Show, CoefficientsAndFit) {
  const std::filesystem::path file = directory_ / "line.tdx";
  WriteLine(file, "Intercept", 0.6);
  ShowOptions options{.file = file, .part = ShowPart::kCoefficients};
  EXPECT_EQ(Run(options),
            "Limits at 95%\n\n"
            "name       estimate  std_error    t       p       lower     upper\n"
            "=x              0.6       0.25  2.4   0.125  -0.1956116  1.395612\n"
            "Intercept       2.2          1  2.2  <1e-38  -0.9824463  5.382446\n");
  options.level = 50.0;
  options.limit = 1;
  EXPECT_NE(Run(options).find("0.4087"), std::string::npos);
  options.format = ShowFormat::kCsv;
  EXPECT_TRUE(
      Run(options).starts_with("name,estimate,std_error,t,p,lower,upper\n'=x,0.6,0.25,2.4,"));
  options = {.file = file, .part = ShowPart::kCoefficients, .format = ShowFormat::kJson};
  EXPECT_NE(Run(options).find("\"t\":2.2,\"p\":\"<1e-38\",\"lower\":-0.98"), std::string::npos);

  options = {.file = file, .part = ShowPart::kFit};
  const std::string fit = Run(options);
  for (const char* line : {"n            5\n", "adjusted_r2  0.4666667\n", "f            4.5\n",
                           "f_df         1\n", "p            0.1240"}) {
    EXPECT_NE(fit.find(line), std::string::npos) << line << fit;
  }
  // Without a name R-squared tells whether it is about the mean; 83.6 / 86 is about zero.
  options.format = ShowFormat::kCsv;
  WriteLine(file, "one", 0.6);
  EXPECT_NE(Run(options).find(",4.5"), std::string::npos);
  WriteLine(file, "one", 83.6 / 86.0);
  EXPECT_NE(Run(options).find(",52.2"), std::string::npos) << Run(options);
}

// What stands where a results file should, and the text that says so.
struct BadFile {
  const char* name;
  const char* text;
  std::function<void(const std::filesystem::path& whole, const std::filesystem::path& file)> make;
};

std::string Head(const std::filesystem::path& file, double part) {
  const std::string whole = testing_support::ReadFile(file);
  return whole.substr(0, static_cast<std::size_t>(part * static_cast<double>(whole.size())));
}

const BadFile kBadFiles[] = {
    {"text", "not a TDX file",
     [](const auto&, const auto& file) {
       testing_support::WriteFile(file, "this is no database, and it is longer than its header\n");
     }},
    {"empty", "not a TDX file",
     [](const auto&, const auto& file) { testing_support::WriteFile(file, ""); }},
    {"start", "not a TDX file",
     [](const auto& whole, const auto& file) {
       testing_support::WriteFile(file, Head(whole, 0.0005));
     }},
    {"half", "the TDX file is damaged or incomplete: ",
     [](const auto& whole, const auto& file) {
       testing_support::WriteFile(file, Head(whole, 0.5));
     }},
    {"other", "not a TDX file",
     [](const auto&, const auto& file) {
       Database(file, Database::Mode::kCreate).Execute("create table t(x)");
     }},
    {"newer", "the TDX file has schema version 2; this program reads up to 1",
     [](const auto& whole, const auto& file) {
       std::filesystem::copy_file(whole, file);
       Database(file, Database::Mode::kReadWrite).Execute("pragma user_version = 2");
     }},
    {"missing", "there is no such file", [](const auto&, const auto&) {}},
};

class ShowBadFile : public Show, public testing::WithParamInterface<BadFile> {};

TEST_P(ShowBadFile, OneLineAndNoOutput) {
  const std::filesystem::path file = directory_ / "bad.tdx";
  GetParam().make(file_, file);
  const std::string name = testing_support::Utf8(file);
  EXPECT_EQ(Run({.file = file}), "");
  EXPECT_EQ(status_, 2);
  EXPECT_TRUE(err_.starts_with("tavolite: " + name + ": " + GetParam().text)) << err_;
  EXPECT_EQ(Lines(err_).size(), 1U) << err_;
}

INSTANTIATE_TEST_SUITE_P(Files, ShowBadFile, testing::ValuesIn(kBadFiles),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_F(Show, BadRequest) {
  EXPECT_EQ(Run({.symbol = "estimates"}), "");
  EXPECT_EQ(status_, 2);
  EXPECT_NE(err_.find("there is no symbol \"estimates\"; the nearest is \"estimate\"\n"),
            std::string::npos);
  EXPECT_EQ(Run({.symbol = "r2", .output = directory_.Path() / "no" / "out"}), "");
  EXPECT_EQ(status_, 2);
  const std::string before = testing_support::ReadFile(file_);
  std::filesystem::create_hard_link(file_, directory_ / "link");
  for (const auto& output : {file_, directory_ / "link"}) {
    EXPECT_EQ(Run({.output = output}), "");
    EXPECT_NE(err_.find("would overwrite"), std::string::npos);
    EXPECT_EQ(testing_support::ReadFile(file_), before);
  }
  Run({.symbol = "r2", .part = ShowPart::kFit});
  EXPECT_NE(err_.find("leave the symbol out"), std::string::npos);
}

}  // namespace
}  // namespace host
