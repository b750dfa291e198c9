// What the host must know of a MathProg model's text before GLPK reads it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace host {

struct MathProgText {
  struct Unused {
    std::string keyword;
    std::size_t line = 0;
  };

  std::vector<std::string> variables;  // names declared with `var`, in order
  std::size_t solve_end = 0;           // offset behind the first `solve;`, 0 when there is none
  std::size_t section_end = 0;         // offset where the model section ends: of `data;` or `end;`,
                                       // or the length of the text
  bool has_data_section = false;
  std::vector<Unused> behind_solve;  // statements between `solve` and the section's end
};

MathProgText ScanMathProg(std::string_view text);

// The model with statements put behind its `solve` that print every variable which some expression
// refers to, then stop. What stands behind `marker` in the output is theirs. No line moves.
std::string WithVariableDisplay(std::string_view text, const MathProgText& scan,
                                const std::string& marker);

// Names of the variables in that output: with labels where they have members, as declared where
// none of their members is referred to.
std::vector<std::string> DisplayedVariables(std::string_view output, const std::string& marker);

}  // namespace host
