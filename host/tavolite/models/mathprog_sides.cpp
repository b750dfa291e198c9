#include "tavolite/models/mathprog_sides.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <initializer_list>
#include <set>
#include <span>
#include <vector>

#include "base/input_error.h"
#include "tavolite/models/mathprog_tokens.h"

namespace host {
namespace {

using Tokens = std::span<const MathProgToken>;
using Names = std::set<std::string_view>;

constexpr std::array<std::string_view, 13> kKeywords{
    "set",   "param",   "var",    "maximize", "minimize", "solve", "check",
    "table", "display", "printf", "for",      "data",     "end"};

bool IsOneOf(std::string_view text, std::initializer_list<std::string_view> texts) {
  return std::find(texts.begin(), texts.end(), text) != texts.end();
}

// What brackets and conditions a token stands in.
class Nesting {
 public:
  void Pass(const MathProgToken& token) {
    if (IsOneOf(token.text, {"(", "[", "{"})) ++brackets_;
    if (IsOneOf(token.text, {")", "]", "}"})) --brackets_;
    if (token.text == "if") ++conditions_;
    if (token.text == "then") --conditions_;
  }
  [[nodiscard]] bool IsOutside() const { return brackets_ == 0 && conditions_ == 0; }

 private:
  int brackets_ = 0;
  int conditions_ = 0;
};

// A number's own sign ("1e-5"), one behind another operator, and one in front of a sum's operand
// do not begin a term.
bool BeginsTerm(const MathProgToken& sign, const MathProgToken& before) {
  if (!IsOneOf(sign.text, {"+", "-"})) return false;
  if (IsOneOf(before.text, {"+", "-", "*", "/", "^", "}", "then", "else"})) return false;
  const bool touches = before.begin + before.text.size() == sign.begin;
  const bool is_exponent = std::isdigit(static_cast<unsigned char>(before.text.front())) != 0 &&
                           IsOneOf(before.text.substr(before.text.size() - 1), {"e", "E"});
  return !(touches && is_exponent);
}

// One side of a constraint: what its terms hold.
struct Side {
  bool is_zero = false;
  bool has_variables = false;
  bool is_mixed = false;  // a term holds variables in brackets or behind conditions
  bool has_plus = false;  // terms without variables, with that sign
  bool has_minus = false;
};

void AddTerm(Tokens term, bool is_minus, const Names& variables, Side& side) {
  if (term.empty()) return;
  const bool has_variable = std::any_of(term.begin(), term.end(), [&](const MathProgToken& token) {
    return variables.contains(token.text);
  });
  if (has_variable) {
    side.has_variables = true;
    side.is_mixed |= IsOneOf(term.front().text, {"(", "if"});
  } else {
    (is_minus ? side.has_minus : side.has_plus) = true;
  }
}

Side Examine(Tokens tokens, const Names& variables) {
  Side side;
  side.is_zero = std::all_of(tokens.begin(), tokens.end(), [](const MathProgToken& token) {
    return token.text == "." || token.text.find_first_not_of('0') == std::string_view::npos;
  });
  Nesting nesting;
  std::size_t first = 0;
  bool is_minus = false;
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    const bool is_first = i == first && IsOneOf(tokens[i].text, {"+", "-"});
    if (nesting.IsOutside() && (is_first || (i > 0 && BeginsTerm(tokens[i], tokens[i - 1])))) {
      AddTerm(tokens.subspan(first, i - first), is_minus, variables, side);
      is_minus = is_first ? is_minus != (tokens[i].text == "-") : tokens[i].text == "-";
      first = i + 1;
    }
    nesting.Pass(tokens[i]);
  }
  AddTerm(tokens.subspan(first), is_minus, variables, side);
  return side;
}

// Where a constraint's name stands: behind "subject to", "subj to" or "s.t.", if it has that.
std::size_t NamePlace(Tokens tokens) {
  const auto starts_with = [&](std::initializer_list<std::string_view> words) {
    return tokens.size() > words.size() &&
           std::equal(words.begin(), words.end(), tokens.begin(),
                      [](std::string_view word, const MathProgToken& t) { return word == t.text; });
  };
  if (starts_with({"subject", "to"}) || starts_with({"subj", "to"})) return 2;
  return starts_with({"s", ".", "t", "."}) ? 4 : 0;
}

// The place of the first token outside brackets and conditions for which `holds`.
template <class Holds>
std::size_t FindOutside(Tokens tokens, Holds holds) {
  Nesting nesting;
  std::size_t i = 0;
  while (i < tokens.size() && !(nesting.IsOutside() && holds(tokens[i]))) nesting.Pass(tokens[i++]);
  return i;
}

struct Equality {
  std::string_view name;
  Side left;
  Side right;
};

// Nothing for a statement that is no constraint, or one with other relations.
std::optional<Equality> FindEquality(const MathProgStatement& statement, const Names& variables) {
  Tokens tokens = statement.tokens;
  if (!tokens.front().IsWord() ||
      std::find(kKeywords.begin(), kKeywords.end(), statement.First()) != kKeywords.end()) {
    return std::nullopt;
  }
  Equality equality;
  const std::size_t name = NamePlace(tokens);
  equality.name = tokens[name].text;
  const auto is_colon = [](const MathProgToken& token) { return token.text == ":"; };
  const std::size_t colon = FindOutside(tokens, is_colon);
  if (colon == tokens.size()) return std::nullopt;
  tokens = tokens.subspan(colon + 1);
  const auto is_relation = [](const MathProgToken& token) {
    return IsOneOf(token.text, {"=", "<", ">"});
  };
  const std::size_t relation = FindOutside(tokens, is_relation);
  std::size_t behind = relation;
  while (behind < tokens.size() && is_relation(tokens[behind])) {
    if (tokens[behind++].text != "=") return std::nullopt;
  }
  Tokens left = tokens.first(relation);
  if (!left.empty() && left.back().text == ",") left = left.first(left.size() - 1);
  const Tokens right = tokens.subspan(behind);
  if (left.empty() || right.empty() || FindOutside(right, is_relation) != right.size()) {
    return std::nullopt;
  }
  equality.left = Examine(left, variables);
  equality.right = Examine(right, variables);
  return equality;
}

constexpr const char* kRemedy =
    "write all observations like `y = sum x*b`, or state --data-side left or right";

// Nothing without a variable. `place` names the constraint.
std::optional<DataSide> SideOf(const Equality& equality, const std::string& place) {
  const auto& [name, left, right] = equality;
  if (!left.has_variables && !right.has_variables) return std::nullopt;
  if (left.has_variables && right.has_variables) {
    throw InputError(place + " has variables on both sides of the equality sign: " + kRemedy);
  }
  const DataSide beside = left.has_variables ? DataSide::kLeft : DataSide::kRight;
  const DataSide opposite = left.has_variables ? DataSide::kRight : DataSide::kLeft;
  const Side& variables = left.has_variables ? left : right;
  const Side& data = left.has_variables ? right : left;
  if (!data.is_zero) return opposite;
  if (variables.is_mixed || (variables.has_plus && variables.has_minus)) {
    throw InputError(place + " does not show which of its terms is the response: " + kRemedy);
  }
  return variables.has_plus ? beside : opposite;
}

const char* Name(DataSide side) {
  return side == DataSide::kLeft ? "left" : "right";
}

std::vector<MathProgStatement> ModelStatements(std::string_view text) {
  std::vector<MathProgStatement> all;
  MathProgStatements statements(text);
  for (MathProgStatement s = statements.Next(); !s.tokens.empty(); s = statements.Next()) {
    if (s.tokens.size() == 1 && IsOneOf(s.First(), {"solve", "data", "end"})) break;
    all.push_back(std::move(s));
  }
  return all;
}

// The variables that are declared, without those of the objective.
Names Coefficients(const std::vector<MathProgStatement>& statements) {
  Names names;
  for (const MathProgStatement& s : statements) {
    if (s.First() == "var" && s.tokens.size() > 1) names.insert(s.tokens[1].text);
  }
  for (const MathProgStatement& s : statements) {
    if (!IsOneOf(s.First(), {"minimize", "maximize"})) continue;
    for (const MathProgToken& token : s.tokens) names.erase(token.text);
  }
  return names;
}

}  // namespace

std::optional<DataSide> FindDataSide(std::string_view text, const std::string& shown) {
  const std::vector<MathProgStatement> statements = ModelStatements(text);
  const Names variables = Coefficients(statements);
  std::optional<DataSide> side;
  std::string first;  // the constraint that has shown it
  for (const MathProgStatement& statement : statements) {
    const std::optional<Equality> equality = FindEquality(statement, variables);
    if (!equality) continue;
    const std::string line = std::to_string(LineOf(text, statement));
    const std::string constraint = "constraint " + std::string(equality->name);
    const std::string place = shown + ":" + line + ": " + constraint;
    const std::optional<DataSide> found = SideOf(*equality, place);
    if (!found) continue;
    if (side && *side != *found) {
      throw InputError(place + " has its data on the " + Name(*found) + ", " + first + " on the " +
                       Name(*side) + ": " + kRemedy);
    }
    if (!side) first = constraint + " in line " + line;
    side = found;
  }
  return side;
}

}  // namespace host
