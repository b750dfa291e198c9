#include "tavolite/models/glpk_model.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "base/input_error.h"
#include "instance/names.h"
#include "tests/support/program.h"

namespace host {
namespace {

using testing_support::TemporaryDirectory;
using testing_support::Utf8;
using testing_support::WriteFile;

class GlpkModel : public testing::Test {
 protected:
  // Writes the text as `name` and reads it.
  Model Read(const std::string& name, const std::string& text) {
    notes = {};
    WriteFile(directory / name, text);
    SolveOptions options;
    options.input = directory / name;
    options.format = name.ends_with(".mod")  ? InputFormat::kMathProg
                     : name.ends_with(".lp") ? InputFormat::kLp
                                             : InputFormat::kMps;
    options.data_side = side;
    return ReadGlpkModel(options, directory.Path(), notes);
  }

  // The message with which the model is refused.
  std::string Refusal(const std::string& name, const std::string& text) {
    try {
      Read(name, text);
    } catch (const InputError& error) {
      return error.what();
    }
    ADD_FAILURE() << "taken: " << text;
    return {};
  }

  void ExpectRefused(const std::string& name, const std::string& text, const std::string& reason) {
    const std::string message = Refusal(name, text);
    EXPECT_NE(message.find(reason), std::string::npos) << message << "\nfor " << text;
    EXPECT_NE(message.find(name), std::string::npos) << "no file in: " << message;
    EXPECT_EQ(message.find('\n'), std::string::npos) << message;
  }

  TemporaryDirectory directory;
  std::optional<DataSide> side;
  ReaderNotes notes;
};

std::vector<std::string> RowNames(const Model& model) {
  std::vector<std::string> names;
  for (std::size_t i = 0; i < model.row_types.size(); ++i) {
    names.push_back(DisplayName(model.dictionary, model.row_names, i));
  }
  return names;
}

std::vector<std::string> ColumnNames(const Model& model) {
  std::vector<std::string> names;
  for (std::size_t j = 0; j < model.columns.size(); ++j) {
    names.push_back(DisplayName(model.dictionary, model.column_names, j));
  }
  return names;
}

using Texts = std::vector<std::string>;
using Rows = std::vector<std::int32_t>;
using Values = std::vector<double>;

TEST_F(GlpkModel, MathProgKeepsOrderAndSigns) {
  const Model model = Read("a.mod", R"(
    set I; set J; param y{I}; param x{I,J};
    var rss; var coeff{J};
    fit{i in I}: y[i] = sum{j in J} x[i,j]*coeff[j];
    minimize obj: rss;
    last: 7 = 2*coeff['it''s'] - 0.5;
    solve; display coeff;
    data;
    set I := 'b c' a; set J := 'it''s' 2;
    param y := a 1 'b c' 0;
    param x: 'it''s' 2 := a 3 4 'b c' 5 0;
    end;)");
  EXPECT_EQ(model.name, "a");
  EXPECT_EQ(RowNames(model), (Texts{"fit('b c')", "fit(a)", "obj", "last"}));
  EXPECT_EQ(ColumnNames(model), (Texts{"rss", "coeff(\"it's\")", "coeff(2)"}));
  EXPECT_EQ(model.objective_row, 2);
  EXPECT_EQ(model.objective_column, 0);
  EXPECT_EQ(model.row_types[2], RowType::kFree);
  EXPECT_EQ(model.row_types[3], RowType::kEqual);
  EXPECT_EQ(model.rhs, (Values{0, -1, 0, -7.5}));
  EXPECT_EQ(*model.columns[0].rows, (Rows{2}));
  EXPECT_EQ(model.columns[0].values, (Values{1}));
  EXPECT_EQ(*model.columns[1].rows, (Rows{0, 1, 3}));
  EXPECT_EQ(model.columns[1].values, (Values{-5, -3, -2}));
  EXPECT_EQ(model.columns[1].lower, -kInfinity);
  EXPECT_EQ(model.columns[1].upper, kInfinity);
  EXPECT_EQ(*model.columns[2].rows, (Rows{1}));
  EXPECT_TRUE(notes.warnings.empty());
}

TEST_F(GlpkModel, MathProgNamesVariablesWithoutColumn) {
  Read("a.mod", R"(
    set J := {'used', 'nought', 'x;y'}; # var ghost;
    var rss; var coeff{J}; var unused; var nil 'solve; data;';
    printf "hello\n";
    minimize obj: rss;
    fit: 1 = sum{j in J} (if j = 'used' then 1 else 0)*coeff[j] + 0*nil;
    /* end; */
    table never{j in J} OUT "CSV" "never.csv": j;
    end;)");
  ASSERT_EQ(notes.warnings.size(), 4U);
  for (const char* name : {"coeff[nought]", "coeff['x;y']", "unused", "nil"}) {
    bool found = false;
    for (const std::string& warning : notes.warnings) {
      found |= warning.find(std::string("variable ") + name + " ") != std::string::npos;
    }
    EXPECT_TRUE(found) << name;
  }
  EXPECT_EQ(notes.output, "hello\n");
}

TEST_F(GlpkModel, MathProgTakesDataFromBesideAndTablesFromTheModelsDirectory) {
  const std::string text = R"(
    set I; param y{I}; param x{I}; var rss; var b;
    table t IN "CSV" "t.csv": I <- [i], x;
    minimize obj: rss;
    fit{i in I}: y[i] = x[i]*b;)";
  WriteFile(directory / "t.csv", "i,x\none,1\ntwo,2\n");
  ExpectRefused("a.mod", text, "no value for y[one]");
  WriteFile(directory / "a.dat", "data;\nparam y := one 3 two 4;\nend;\n");
  const std::filesystem::path before = std::filesystem::current_path();
  const Model model = Read("a.mod", text);
  EXPECT_EQ(std::filesystem::current_path(), before);
  EXPECT_EQ(model.rhs, (Values{0, -3, -4}));
  ASSERT_EQ(notes.notes.size(), 1U);
  EXPECT_NE(notes.notes[0].find("a.dat"), std::string::npos);
  WriteFile(directory / "a.dat", "data;\nparam y := one 3 two;\nend;\n");
  const std::string message = Refusal("a.mod", text);
  EXPECT_NE(message.find(Utf8(directory / "a.dat") + ":2: "), std::string::npos) << message;
  // What is wrong with a table stands in a message of its own, with the table's line.
  WriteFile(directory / "a.dat", "data;\nparam y := one 3 two 4;\nend;\n");
  WriteFile(directory / "t.csv", "i,x\none,1\nit's,2\n");
  ExpectRefused("a.mod", text, "(t.csv:3: ");
}

constexpr const char* kFreeMps = R"(NAME TEST
ROWS
 N cost
 E fit(a,1)
 E fit[b]
 N other
 G low
COLUMNS
 b low 1 fit(a,1) 2
 b fit[b] 5 other 3
 c_1 fit[b] 1 other 3
 rss cost 1
RHS
 RHS fit(a,1) 4 fit[b] 3
BOUNDS
 FR BND rss
 FR BND b
ENDATA
)";

TEST_F(GlpkModel, MpsGetsItsObjectiveRowBackAndItsSignsTurned) {
  const Model model = Read("a.mps", kFreeMps);
  EXPECT_EQ(RowNames(model), (Texts{"cost", "fit(a,1)", "fit(b)", "low"}));
  EXPECT_EQ(ColumnNames(model), (Texts{"b", "c_1", "rss"}));
  EXPECT_EQ(model.objective_row, 0);
  EXPECT_EQ(model.objective_column, 2);
  EXPECT_EQ(model.rhs, (Values{0, -4, -3, 0}));
  EXPECT_EQ(model.row_types, (std::vector<RowType>{RowType::kFree, RowType::kEqual, RowType::kEqual,
                                                   RowType::kLess}));
  EXPECT_EQ(*model.columns[0].rows, (Rows{1, 2, 3}));
  EXPECT_EQ(model.columns[0].values, (Values{-2, -5, -1}));
  EXPECT_EQ(model.columns[1].lower, 0.0);  // the solver's to refuse
  EXPECT_EQ(*model.columns[2].rows, (Rows{0}));
  EXPECT_EQ(model.columns[2].values, (Values{1}));

  side = DataSide::kLeft;
  EXPECT_EQ(Read("a.mps", kFreeMps).columns[0].values, (Values{2, 5, 1}));
}

// GLPK drops the blank in the name.
TEST_F(GlpkModel, FixedMpsIsTakenToo) {
  const Model model = Read("a.mps",
                           "NAME          TEST\n"
                           "ROWS\n"
                           " N  cost\n"
                           " E  fit 1\n"
                           "COLUMNS\n"
                           "    rss       cost                 1\n"
                           "    b         fit 1                2\n"
                           "RHS\n"
                           "    RHS       fit 1                4\n"
                           "BOUNDS\n"
                           " FR BND       rss\n"
                           " FR BND       b\n"
                           "ENDATA\n");
  EXPECT_EQ(RowNames(model), (Texts{"cost", "fit1"}));
  EXPECT_EQ(model.rhs, (Values{0, -4}));
}

TEST_F(GlpkModel, EmptyObjectiveIsFilledIn) {
  const Model model = Read("a.lp",
                           "minimize\n obj: 0 rss\nsubject to\n obj_: rss + 2 b = 3\n"
                           " f: b - rss = 1\nbounds\n rss free\n b free\nend\n");
  EXPECT_EQ(RowNames(model), (Texts{"obj", "obj_", "f"}));
  EXPECT_EQ(ColumnNames(model), (Texts{"rss", "b", "rss_"}));
  EXPECT_EQ(model.objective_column, 2);
  EXPECT_EQ(*model.columns[2].rows, (Rows{0}));
  EXPECT_EQ(model.columns[2].lower, -kInfinity);
  ASSERT_EQ(notes.notes.size(), 1U);
  EXPECT_NE(notes.notes[0].find("rss_"), std::string::npos);
}

TEST_F(GlpkModel, ConstantColumnOfMinusOneDrawsAWarning) {
  const std::string left =
      "minimize\n o: rss\nsubject to\n f: - 2 b - one = -3\n g: - b - one = -4\n"
      "bounds\n rss free\n one free\n b free\nend\n";
  Read("a.lp", left);
  ASSERT_EQ(notes.warnings.size(), 1U);
  EXPECT_NE(notes.warnings[0].find("--data-side left"), std::string::npos);
  EXPECT_NE(notes.warnings[0].find("of one is"), std::string::npos);
  side = DataSide::kLeft;
  EXPECT_EQ(Read("a.lp", left).rhs, (Values{0, -3, -4}));
  EXPECT_TRUE(notes.warnings.empty());
}

TEST_F(GlpkModel, MathProgShowsTheSideOfItsData) {
  const std::string variables = "var rss; var b; var c; minimize o: rss;\n";
  for (const char* rows : {"f: 3 = 2*b + c; g: 4 = b;", "f: 2*b + c = 3; g: b = 4;",
                           "f: 3 - 2*b - c = 0; g: 0 = b - 4;"}) {
    const Model model = Read("a.mod", variables + rows + " end;\n");
    EXPECT_EQ(model.rhs, (Values{0, -3, -4})) << rows;
    for (std::size_t j = 1; j < 3; ++j) {
      for (const double value : model.columns[j].values) EXPECT_LT(value, 0.0) << rows;
    }
  }
  ExpectRefused("a.mod", variables + "f: 3 = b;\ng: 1 + b = c; end;\n",
                "a.mod:3: constraint g has variables on both sides");
  side = DataSide::kRight;
  EXPECT_EQ(Read("a.mod", variables + "f: 3 = b; g: 1 + b = c; end;\n").rhs, (Values{0, 3, 1}));
}

TEST_F(GlpkModel, OneRowBesideManyIsMentioned) {
  const std::string text =
      "var rss; var b; var c; minimize o: rss;\n"
      "f{i in 1..4}: i = i^2*b + c; h: 1 = b + c;";
  Read("a.mod", text + " end;\n");
  ASSERT_EQ(notes.notes.size(), 1U);
  EXPECT_NE(notes.notes[0].find("the row h stands alone beside 4 rows of f"), std::string::npos);
  Read("a.mod", "var rss; var b; minimize o: rss; f: 1 = b; g: 2 = b; h: 4 = b; end;\n");
  EXPECT_TRUE(notes.notes.empty());
}

TEST_F(GlpkModel, WhatIsNoRegressionIsRefusedWithTheReason) {
  const std::string variables = "var rss; var b; ";
  ExpectRefused("a.mod", variables + "f: 1 = b; end;\n", "no objective");
  ExpectRefused("a.mod", variables + "maximize o: rss; f: 1 = b; end;\n", "minimized");
  ExpectRefused("a.mod", variables + "minimize o: rss + 5; f: 1 = b; end;\n", "constant term");
  ExpectRefused("a.mod", variables + "minimize o: 2*rss; f: 1 = b; end;\n", "other than 1");
  ExpectRefused("a.mod", variables + "minimize o: rss + b; f: 1 = b; end;\n", "more than one");
  ExpectRefused("a.mod", variables + "minimize o: 4; f: 1 = b; end;\n", "constant term");
  ExpectRefused("a.mod", variables + "minimize o: 0; f: 1 = b; end;\n", "no variable");
  ExpectRefused("a.mod", variables + "minimize o: rss; f: 1 <= b <= 2; end;\n", "row f has");
  ExpectRefused("a.mod", "var rss; var k integer; minimize o: rss; f: 1 = k; end;\n",
                "variable k is integer");
  ExpectRefused("a.mod",
                "set S := {1..2}; var rss; var b{S,S}; minimize o: rss;\n"
                "f: 1 = b[1,2]*b[2,1]; end;\n",
                "a.mod:2: ");
  ExpectRefused("a.lp", "minimize\n o: rss\nsubject to\n f: b + = 3\nend\n", "a.lp:4: ");
  ExpectRefused("a.mps", "NAME x\nROWS\n N o\n E f\nCOLUMS\n x f 1\nENDATA\n", "a.mps:5: ");
  ExpectRefused("a.mps", "", "a.mps");
  ExpectRefused("a.lp", std::string("min\0imize", 9), "a.lp:1: ");

  const std::string label(95, 'x');
  ExpectRefused("a.mod",
                "set S := {'" + label + "'}; var rss; var b{S,S,S}; minimize o: rss;\n" +
                    "f{i in S,j in S,k in S}: 1 = b[i,j,k]; end;\n",
                "cut: f[" + label);
  ExpectRefused("a.mod",
                "set S := {'" + label + "'}; var rss; var b{S}; minimize o: rss;\n" +
                    "f: 1 = sum{i in S} b[i]; end;\n",
                "b[" + label + "]");
}

TEST_F(GlpkModel, SurvivesItsRefusals) {
  ExpectRefused("a.mod", "var rss; minimize", "a.mod:1: ");
  EXPECT_EQ(Read("a.mps", kFreeMps).columns.size(), 3U);
}

}  // namespace
}  // namespace host
