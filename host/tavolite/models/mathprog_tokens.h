// The words and marks of a MathProg text, and its statements.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace host {

// A text in quotes counts as one mark, every other mark is one character.
struct MathProgToken {
  std::string_view text;
  std::size_t begin = 0;  // its offset in the model

  [[nodiscard]] bool IsWord() const;
};

struct MathProgStatement {
  std::vector<MathProgToken> tokens;  // without the semicolon at its end; empty at the text's end
  std::size_t end = 0;                // offset behind it
  bool is_ended = false;              // by a semicolon, or by the bracket of a `for`

  // Its keyword, or the name of a constraint.
  [[nodiscard]] std::string_view First() const { return tokens.front().text; }
};

// The line, counted from 1, in which it begins.
std::size_t LineOf(std::string_view text, const MathProgStatement& statement);

// Walks over the statements of a model; comments are stepped over.
class MathProgStatements {
 public:
  explicit MathProgStatements(std::string_view text) : text_(text) {}
  MathProgStatement Next();

 private:
  MathProgToken NextToken();
  void SkipBlanks();

  std::string_view text_;
  std::size_t at_ = 0;
};

}  // namespace host
