#include "tavolite/models/mathprog_sides.h"

#include <gtest/gtest.h>

#include <string>

#include "base/input_error.h"

namespace host {
namespace {

struct SideCase {
  const char* name;
  const char* constraints;
  const char* found;  // "left", "right", "none", or a part of the refusal
};

std::string Found(const std::string& text) {
  try {
    const std::optional<DataSide> side = FindDataSide(text, "a.mod");
    if (!side) return "none";
    return *side == DataSide::kLeft ? "left" : "right";
  } catch (const InputError& error) {
    return error.what();
  }
}

class MathProgSides : public testing::TestWithParam<SideCase> {};

TEST_P(MathProgSides, AreReadOffTheConstraints) {
  const std::string head = "var rss; var b{J}; var c; minimize o: rss;\n";
  const std::string found = Found(head + GetParam().constraints);
  EXPECT_NE(found.find(GetParam().found), std::string::npos) << found;
}

INSTANTIATE_TEST_SUITE_P(
    Constraints, MathProgSides,
    testing::Values(
        SideCase{"Left", "f{i in I}: y[i] = sum{j in J} x[i,j]*b[j];", "left"},
        SideCase{"Right", "f{i in I}: sum{j in J} x[i,j]*b[j] = y[i];", "right"},
        SideCase{"None", "f: 1 = 2; check: b = c; end; g: c = 2;", "none"},
        SideCase{"SubjectTo", "subject to f 'c = 1', {i in I}: b[i] + c, = y[i];", "right"},
        SideCase{"ShortSubjectTo", "s.t. f: y['c'] = c;", "left"},
        SideCase{"DoubleEqualitySign", "f: c == 1;", "right"},
        SideCase{"ConditionsAreNoRelations",
                 "f{i in I: i = 'c'}: if i = 1 then b[i] else c = if y[i] <= 2 then 1 else 0;",
                 "right"},
        SideCase{"InequalitiesDoNotCount", "f: c >= 1; g: 0 <= c <= 1; h: 2 = c;", "left"},
        SideCase{"ObjectiveDoesNotCount", "f: rss = sum{j in J} b[j];", "left"},
        SideCase{"BothSides", "f: 1 = c;\ng{j in J}: c =\nb[j];",
                 "a.mod:3: constraint g has variables on both sides"},
        SideCase{"TheyDiffer", "f: 1 = c;\n\ns.t. g: c = 1;",
                 "a.mod:4: constraint g has its data on the right, constraint f in line 2 on the "
                 "left: write all"},
        SideCase{"ResponseLessVariables", "f: y - c - 1e-5*b[1] = 0;", "left"},
        SideCase{"VariablesLessResponse", "f{i in I}: sum{j in J} -x[i,j]*b[j] - y[i] = 0.00;",
                 "right"},
        SideCase{"ZeroFirst", "f: 0 = -y + c;", "left"},
        SideCase{"ResponseOfZero", "f: 2*c + b[1] = 0;", "right"},
        SideCase{"TwoTermsOfData", "f: y - c - z = 0;", "does not show which"},
        SideCase{"Brackets", "f: -(y - c) = 0;", "does not show which"},
        SideCase{"OffsetOfTheVariables", "f: c + z = y;", "right"}),
    [](const auto& instance) { return std::string(instance.param.name); });

}  // namespace
}  // namespace host
