#include "tavolite/models/mathprog_text.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace host {
namespace {

using Texts = std::vector<std::string>;

struct ScanCase {
  const char* name;
  const char* text;
  Texts variables;
  const char* behind_solve;     // what stands from solve_end on; null: there is no `solve`
  const char* behind_sections;  // what stands from section_end on
  bool has_data_section = false;
};

class MathProgScan : public testing::TestWithParam<ScanCase> {};

TEST_P(MathProgScan, FindsVariablesAndSections) {
  const ScanCase& expected = GetParam();
  const std::string text = expected.text;
  const MathProgText scan = ScanMathProg(text);
  EXPECT_EQ(scan.variables, expected.variables);
  EXPECT_EQ(scan.solve_end != 0, expected.behind_solve != nullptr);
  if (expected.behind_solve != nullptr) {
    EXPECT_EQ(text.substr(scan.solve_end), expected.behind_solve);
  }
  EXPECT_EQ(text.substr(scan.section_end), expected.behind_sections);
  EXPECT_EQ(scan.has_data_section, expected.has_data_section);
}

INSTANTIATE_TEST_SUITE_P(
    MathProg, MathProgScan,
    testing::Values(
        ScanCase{"Nothing", "", {}, nullptr, ""},
        ScanCase{"NoEnd", "var a;\nvar b{I} >= 0;", {"a", "b"}, nullptr, ""},
        ScanCase{"EndOnly", "var a; end; var b;", {"a"}, nullptr, "end; var b;"},
        ScanCase{"Data",
                 "var a;data;param y := 1; end;",
                 {"a"},
                 nullptr,
                 "data;param y := 1; end;",
                 true},
        ScanCase{"Solve", "var a; solve; display a; end;", {"a"}, " display a; end;", "end;"},
        ScanCase{"SecondSolve", "solve;\nsolve;", {}, "\nsolve;", ""},
        ScanCase{"Comments", "# var a; solve;\n/* var b; data; */var c;", {"c"}, nullptr, ""},
        ScanCase{"OpenComment", "var a; /* var b;", {"a"}, nullptr, ""},
        ScanCase{
            "Quotes", "var a 'solve; data;'; check: \"end;\" = \"var b;\";", {"a"}, nullptr, ""},
        ScanCase{"OpenQuote", "var a; printf 'end; var b;", {"a"}, nullptr, ""},
        ScanCase{"BehindABlock", "for{i in I}{display i;} var a;", {"a"}, nullptr, ""},
        ScanCase{"NamesThatStartLikeKeywords",
                 "var variable; param data1; f: solve_ = variable;",
                 {"variable"},
                 nullptr,
                 ""},
        ScanCase{"NotAtAStatement", "f: var + solve = data; end", {}, nullptr, ""}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(MathProgText, ListsWhatStandsBehindSolve) {
  const MathProgText scan = ScanMathProg(
      "var a;\nsolve;\nfor{i in I: i > 2}: { display i;\nprintf 'x'; }\n\nprintf\n'y'; data; var "
      "b;");
  ASSERT_EQ(scan.behind_solve.size(), 2U);
  EXPECT_EQ(scan.behind_solve[0].keyword, "for");
  EXPECT_EQ(scan.behind_solve[0].line, 3U);
  EXPECT_EQ(scan.behind_solve[1].keyword, "printf");
  EXPECT_EQ(scan.behind_solve[1].line, 6U);
}

TEST(MathProgDisplay, StandsBehindSolveOrAtTheEndOfTheSection) {
  const auto with_display = [](const std::string& text) {
    return WithVariableDisplay(text, ScanMathProg(text), "mark");
  };
  EXPECT_EQ(with_display("var a; var b;\nsolve; display a;\nend;\n"),
            "var a; var b;\nsolve; printf \"\\nmark\\n\"; display a, b; check: 1 > 2;  display a;\n"
            "end;\n");
  EXPECT_EQ(with_display("var a;\ndata;\nend;\n"),
            "var a;\n solve; printf \"\\nmark\\n\"; display a; check: 1 > 2; data;\nend;\n");
}

TEST(MathProgDisplay, NamesOnlyWhatStandsBehindTheLastMark) {
  EXPECT_EQ(DisplayedVariables("x.val = 1\n\nmark\ny.val = 2\n", "other"), Texts{});
  EXPECT_EQ(DisplayedVariables("\nmark\nx.val = 1\n\nmark\nb['a.val = b',2].val = -1.5\n"
                               "nil.val = 0\nsomething else\nghost has empty content\n"
                               "last.val = 3",
                               "mark"),
            (Texts{"b['a.val = b',2]", "nil", "ghost", "last"}));
}

}  // namespace
}  // namespace host
