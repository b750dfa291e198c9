#include "tavolite/models/mathprog_text.h"

#include <algorithm>
#include <cctype>

namespace host {
namespace {

bool IsWordCharacter(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
}

// Walks over a model's words and marks; comments and quoted texts are stepped over.
class Tokens {
 public:
  explicit Tokens(std::string_view text) : text_(text) {}

  // The next word or single mark, empty at the end. A quoted text counts as one mark.
  std::string_view Next() {
    SkipBlanks();
    begin_ = at_;
    if (at_ == text_.size()) return {};
    if (text_[at_] == '\'' || text_[at_] == '"') {
      const std::size_t close = text_.find(text_[at_], at_ + 1);
      at_ = close == std::string_view::npos ? text_.size() : close + 1;
    } else if (IsWordCharacter(text_[at_])) {
      while (at_ < text_.size() && IsWordCharacter(text_[at_])) ++at_;
    } else {
      ++at_;
    }
    return text_.substr(begin_, at_ - begin_);
  }
  [[nodiscard]] std::size_t Begin() const { return begin_; }
  [[nodiscard]] std::size_t End() const { return at_; }

 private:
  void SkipBlanks() {
    while (at_ < text_.size()) {
      if (std::isspace(static_cast<unsigned char>(text_[at_])) != 0) {
        ++at_;
      } else if (text_[at_] == '#') {
        at_ = std::min(text_.find('\n', at_), text_.size());
      } else if (text_.substr(at_, 2) == "/*") {
        const std::size_t close = text_.find("*/", at_ + 2);
        at_ = close == std::string_view::npos ? text_.size() : close + 2;
      } else {
        return;
      }
    }
  }

  std::string_view text_;
  std::size_t begin_ = 0;
  std::size_t at_ = 0;
};

}  // namespace

MathProgText ScanMathProg(std::string_view text) {
  MathProgText scan;
  scan.section_end = text.size();
  Tokens tokens(text);
  bool at_statement = true;  // the previous mark ends a statement or a block
  for (std::string_view token = tokens.Next(); !token.empty();) {
    const std::size_t begin = tokens.Begin();
    std::string_view next = tokens.Next();
    if (at_statement && next == ";") {
      if (token == "solve" && scan.solve_end == 0) scan.solve_end = tokens.End();
      if (token == "data" || token == "end") {
        scan.section_end = begin;
        scan.has_data_section = token == "data";
        break;
      }
    }
    if (at_statement && token == "var" && !next.empty() && IsWordCharacter(next.front())) {
      scan.variables.emplace_back(next);
    }
    at_statement = token == ";" || token == "}";
    token = next;
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
