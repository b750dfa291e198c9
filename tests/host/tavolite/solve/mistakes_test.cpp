// What users get wrong, and the line that repairs it: the whole command with the real solver.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/program.h"

namespace {

using namespace testing_support;

struct Mistake {
  const char* name;
  const char* file;  // written before, with `content`
  std::string content;
  std::vector<std::string> words;
  const char* line;  // a part of one line on standard error
  int status = 2;
};

const std::string kTable = "y,x\n1,2\n2,4\n3,7\n5,8\n";
const std::string kStart = "var rss; var b; minimize o: rss; ";
const std::vector<std::string> kSolveTable{"solve", "t.csv", "--response", "y"};
const std::vector<std::string> kSolveModel{"solve", "m.mod"};

std::vector<std::string> Table(std::vector<std::string> more) {
  more.insert(more.begin(), kSolveTable.begin(), kSolveTable.end());
  return more;
}

std::string Model(const std::string& rows) {
  return kStart + rows + " end;\n";
}

const Mistake kMistakes[] = {
    // The command line.
    {"NoCommand", "t.csv", kTable, {"t.csv"}, "did you mean \"tavolite solve t.csv\"?"},
    {"ShowForgotten", "t.csv", kTable, {"linfit.tdx"}, "did you mean \"tavolite show linfit.tdx\""},
    {"OptionMisspelt", "t.csv", kTable, Table({"--fcator", "f"}), "the nearest is --factor"},
    {"EmptyName", "t.csv", kTable, Table({"--results", ""}), "--results: the name is empty"},
    {"Spreadsheet", "t.xlsx", "PK", {"solve", "t.xlsx"}, "is a spreadsheet: save the sheet as CSV"},
    {"SuffixUnknown", "t.txt", kTable, {"solve", "t.txt"}, "give it with --format"},
    {"NoSuchFile", "t.csv", kTable, {"solve", "T.csv.gz"}, "T.csv.gz: there is no such file"},
    {"ResultsOverInput", "t.csv", kTable, Table({"--results", "./t.csv"}),
     "give another --results"},
    {"ResultsOverOther", "notes.txt", "notes", Table({"--results", "notes.txt"}),
     "there is a file of this name that is not a results file; give another --results"},
    {"ListingAsTiming", "t.csv", kTable, Table({"--listing", "a", "--timing", "a"}),
     "the timing would overwrite the listing: give another --timing"},
    {"NoSuchDirectory", "t.csv", kTable, Table({"--listing", "no/a.lst"}),
     "there is no directory for the listing no/a.lst"},
    // The option file.
    {"OptionUnknown", "a.opt", "maxm 5\n", Table({"--options", "a.opt"}),
     "a.opt(1): unknown option \"MAXM\""},
    {"OptionOutOfRange", "a.opt", "\nADD_CONSTANT_TERM 3\n", Table({"--options", "a.opt"}),
     "a.opt(2): ADD_CONSTANT_TERM is 3, which is not 0 to 2"},
    {"OptionContradicted", "a.opt", "ADD_CONSTANT_TERM 1\n",
     Table({"--no-intercept", "--options", "a.opt"}),
     "--no-intercept and ADD_CONSTANT_TERM in line 1 of a.opt contradict each other"},
    {"LimitTooLow", "a.opt", "MAXN 3\n", Table({"--options", "a.opt"}),
     "4 observations, MAXN is 3: put \"MAXN 4\" into the option file, or leave it out\n", 1},
    // Tables.
    {"NoResponse",
     "t.csv",
     kTable,
     {"solve", "t.csv"},
     "t.csv:1: a table needs --response with the name of the dependent column; the columns are y, "
     "x"},
    {"ColumnMisspelt",
     "t.csv",
     "Yield,x\n1,2\n",
     {"solve", "t.csv", "--response", "yeild"},
     "there is no column \"yeild\"; the nearest is \"Yield\""},
    {"OtherSeparator", "t.csv", "y;x\n1;2\n", kSolveTable,
     "(--separator ';' takes the file apart)"},
    {"DecimalComma", "t.csv", "y,x\n\"1,5\",2\n", kSolveTable,
     "t.csv:2: column \"y\": \"1,5\" has a comma: numbers are written with a point"},
    {"TextColumn", "t.csv", "y,x\n1,a\n", kSolveTable,
     "\"a\" is not a number (text columns need --label, --factor or --drop"},
    {"NoHeader", "t.csv", "1,2\n2,4\n", kSolveTable, "where the column names should stand"},
    {"UnevenRows", "t.csv", "y,x\n1,2\n1,2,3\n", kSolveTable,
     "t.csv:3: 3 fields where the header has 2"},
    {"OneLevel", "t.csv", "y,x\n1,a\n2,a\n3,a\n", Table({"--factor", "x"}),
     "leave it out with --drop"},
    {"TooFewRows", "t.csv", "y,x,z\n1,2,3\n2,4,7\n", kSolveTable, "at least 4 are needed"},
    {"SameLabels", "t.csv", "l,y,x\na,1,2\na,2,4\n", Table({"--label", "l"}),
     "is the same as at t.csv:2"},
    {"DatabaseAsTable", "t.db", "", {"solve", "t.db", "--response", "y"}, "needs --query"},
    // Models.
    {"NoObjective", "m.mod", "var b; f: 3 = 2*b; end;", kSolveModel, "`minimize objective: rss;`"},
    {"Maximised", "m.mod", "var r; var b; maximize o: r; f: 3 = b; end;", kSolveModel,
     "write `minimize`"},
    {"SquaresWrittenOut", "m.mod", "var b; minimize o: (3-2*b)^2; end;", kSolveModel,
     "the solver takes the squares"},
    {"Integer", "m.mod", "var r; var b integer; minimize o: r; f: 3 = b; end;", kSolveModel,
     "variable b is integer: declare it as a continuous one"},
    {"BothSides", "m.mod", Model("f: 3 = 2*b; g: b = 1;"), kSolveModel,
     "state --data-side left or right"},
    {"RangeRow", "m.mod", Model("f: 1 <= b <= 3;"), kSolveModel,
     "row f has a lower and an upper bound: write it with = or take it out"},
    // What the solver refuses.
    {"Inequality", "m.mod", Model("f: 3 = 2*b; g: 3 >= b;"), kSolveModel,
     "tavolite: the row g is an inequality: write it with = or take it out\n", 1},
    {"SecondObjective", "m.mod", kStart + "minimize p: b; f: 3 = 2*b; end;", kSolveModel,
     "the row p has no bound: take it out", 1},
    {"Bound", "m.mod", "var r; var b >= 0; minimize o: r; f: 3 = 2*b; g: 1 = b; end;", kSolveModel,
     "the variable b has the lower bound 0: declare it without bounds\n", 1},
    {"NotFree",
     "m.lp",
     "minimize\n o: r\nsubject to\n f: 2 b = 3\n g: b = 1\nbounds\n r free\nend\n",
     {"solve", "m.lp"},
     "list it as free in the section `bounds`\n",
     1},
    {"ObjectiveInRow", "m.mod", Model("f: 3 = 2*b + rss; g: 1 = b;"), kSolveModel,
     "the variable rss of the objective also stands in the row f: take it out there\n", 1},
    {"FewerRowsThanCoefficients", "m.mod",
     "var r; var b{1..20}; minimize o: r; f{i in 1..16}: i = sum{j in 1..20} (i+j)*b[j]; end;",
     kSolveModel,
     "tavolite: 16 observations, 20 coefficients and an intercept that is added: at least 22 rows "
     "are needed\n",
     1},
    {"NoRows", "m.mod", Model(""), kSolveModel, "tavolite: there is no observation", 1},
};

class Mistakes : public testing::TestWithParam<Mistake> {};

TEST_P(Mistakes, AreRepairedByALine) {
  const Mistake& mistake = GetParam();
  const TemporaryDirectory directory;
  WriteFile(directory / "t.csv", kTable);
  WriteFile(directory / mistake.file, mistake.content);
  const ProgramResult result = RunProgram(FromUtf8(TAVOLITE), mistake.words,
                                          {.directory = directory.Path(), .environment = {}});
  EXPECT_EQ(result.exit_code, mistake.status);
  EXPECT_NE(result.err.find(mistake.line), std::string::npos) << result.err;
  EXPECT_TRUE(result.err.starts_with("tavolite: ")) << result.err;
  if (mistake.status == 2) {
    EXPECT_EQ(Lines(result.err).size(), 1U) << result.err;
    EXPECT_EQ(result.out, "");
  }
  EXPECT_EQ(ReadFile(directory / mistake.file), mistake.content);
}

INSTANTIATE_TEST_SUITE_P(Tavolite, Mistakes, testing::ValuesIn(kMistakes),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
