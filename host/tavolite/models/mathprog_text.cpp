#include "tavolite/models/mathprog_text.h"

#include <algorithm>

#include "tavolite/models/mathprog_tokens.h"

namespace host {
MathProgText ScanMathProg(std::string_view text) {
  MathProgText scan;
  scan.section_end = text.size();
  MathProgStatements statements(text);
  for (MathProgStatement s = statements.Next(); !s.tokens.empty(); s = statements.Next()) {
    const bool is_alone = s.tokens.size() == 1 && s.is_ended;
    if (is_alone && (s.First() == "data" || s.First() == "end")) {
      scan.section_end = s.tokens.front().begin;
      scan.has_data_section = s.First() == "data";
      break;
    }
    if (is_alone && s.First() == "solve") {
      if (scan.solve_end == 0) scan.solve_end = s.end;
    } else if (scan.solve_end != 0) {
      scan.behind_solve.push_back({std::string(s.First()), LineOf(text, s)});
    } else if (s.First() == "var" && s.tokens.size() > 1 && s.tokens[1].IsWord()) {
      scan.variables.emplace_back(s.tokens[1].text);
    }
  }
  return scan;
}

std::string WithVariableDisplay(std::string_view text, const MathProgText& scan,
                                const std::string& marker) {
  std::string statements = scan.solve_end == 0 ? " solve;" : "";
  statements += " printf \"\\n" + marker + "\\n\"; display ";
  for (std::size_t i = 0; i < scan.variables.size(); ++i) {
    statements += (i == 0 ? "" : ", ") + scan.variables[i];
  }
  // The false check ends processing before the model's own statements behind `solve`, which expect
  // a solution and may write files.
  statements += "; check: 1 > 2; ";
  std::string result(text);
  result.insert(scan.solve_end == 0 ? scan.section_end : scan.solve_end, statements);
  return result;
}

std::vector<std::string> DisplayedVariables(std::string_view output, const std::string& marker) {
  constexpr std::string_view kValue = ".val = ";
  constexpr std::string_view kNoMember = " has empty content";
  std::vector<std::string> names;
  const std::size_t start = output.rfind("\n" + marker + "\n");
  if (start == std::string_view::npos) return names;
  output.remove_prefix(start + marker.size() + 2);
  while (!output.empty()) {
    const std::size_t end = std::min(output.find('\n'), output.size());
    const std::string_view line = output.substr(0, end);
    output.remove_prefix(std::min(end + 1, output.size()));
    if (const std::size_t value = line.rfind(kValue); value != std::string_view::npos) {
      names.emplace_back(line.substr(0, value));
    } else if (line.ends_with(kNoMember)) {
      names.emplace_back(line.substr(0, line.size() - kNoMember.size()));
    }
  }
  return names;
}

}  // namespace host
