#include "tavolite/models/mathprog_tokens.h"

#include <algorithm>
#include <cctype>

namespace host {
namespace {

bool IsWordCharacter(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
}

}  // namespace

bool MathProgToken::IsWord() const {
  return !text.empty() && IsWordCharacter(text.front());
}

std::size_t LineOf(std::string_view text, const MathProgStatement& statement) {
  const std::string_view before = text.substr(0, statement.tokens.front().begin);
  return 1 + static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n'));
}

void MathProgStatements::SkipBlanks() {
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

MathProgToken MathProgStatements::NextToken() {
  SkipBlanks();
  const std::size_t begin = at_;
  if (at_ == text_.size()) return {{}, at_};
  if (text_[at_] == '\'' || text_[at_] == '"') {
    const std::size_t close = text_.find(text_[at_], at_ + 1);
    at_ = close == std::string_view::npos ? text_.size() : close + 1;
  } else if (IsWordCharacter(text_[at_])) {
    while (at_ < text_.size() && IsWordCharacter(text_[at_])) ++at_;
  } else {
    ++at_;
  }
  return {text_.substr(begin, at_ - begin), begin};
}

MathProgStatement MathProgStatements::Next() {
  MathProgStatement statement;
  int depth = 0;
  bool is_block = false;  // statements in the brackets of a `for`
  for (MathProgToken token = NextToken(); !token.text.empty(); token = NextToken()) {
    if (token.text == ";" && (depth == 0 || !is_block)) {
      statement.is_ended = true;
      break;
    }
    // What opens behind the domain of a `for`, or behind the colon that may follow it.
    if (token.text == "{" && depth == 0 && !statement.tokens.empty() &&
        statement.First() == "for") {
      const std::string_view before = statement.tokens.back().text;
      is_block = before == "}" || before == ":";
    }
    statement.tokens.push_back(token);
    if (token.text == "{") ++depth;
    if (token.text == "}") --depth;
    if (token.text == "}" && depth == 0 && is_block) {
      statement.is_ended = true;
      break;
    }
  }
  statement.end = at_;
  return statement;
}

}  // namespace host
