#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "base/text.h"
#include "instance/names.h"
#include "tavolite/design/design_check.h"

namespace host {

namespace {

constexpr std::size_t kMaxNames = 8;
constexpr std::size_t kMaxSentences = 10;
constexpr double kBadCondition = 1e10;

struct Names {
  const DesignCheck& check;
  const Dictionary& dictionary;
  const ElementNames& columns;

  [[nodiscard]] std::string Of(std::size_t place) const {
    const std::int32_t column = check.columns[place];
    if (column == kAddedIntercept) return "the intercept";
    return DisplayName(dictionary, columns, static_cast<std::size_t>(column));
  }
};

// "a, b and the intercept"; the first few of many.
std::string List(const std::vector<std::size_t>& places, const Names& names) {
  const auto is_intercept = [&](std::size_t place) {
    return names.check.columns[place] == kAddedIntercept;
  };
  std::vector<std::string> texts;
  for (const std::size_t place : places) {
    if (!is_intercept(place)) texts.push_back(names.Of(place));
  }
  if (texts.size() > kMaxNames) {
    const std::size_t more = texts.size() - kMaxNames;
    texts.resize(kMaxNames);
    texts.push_back(std::to_string(more) + " more");
  }
  if (std::ranges::any_of(places, is_intercept)) texts.emplace_back("the intercept");
  std::string list;
  for (std::size_t i = 0; i < texts.size(); ++i) {
    if (i > 0) list += i + 1 == texts.size() ? " and " : ", ";
    list += texts[i];
  }
  return list;
}

std::string Relation(const Dependence& dependence, const char* combination, const Names& names) {
  const std::string subject = names.Of(dependence.column);
  if (dependence.others.empty()) return subject + " is a column of zeros";
  if (dependence.others.size() == 1) {
    return subject + " is " + combination + "multiple of " + List(dependence.others, names);
  }
  return subject + " is " + combination + "combination of " + List(dependence.others, names);
}

std::string Consequence(const Dependence& dependence) {
  return std::string(
             "; the estimates, the residual sum and all that follows from them mean "
             "nothing. Leave ") +
         (dependence.others.empty() ? "it out." : "one of them out.");
}

std::string NearlyDependent(const Rank& rank, const Names& names) {
  std::string text =
      "the design is nearly dependent (condition number " + ConditionText(rank.condition) + ")";
  if (!rank.nearly.empty()) text += ": " + Relation(rank.nearly.back(), "nearly a ", names);
  if (rank.nearly.size() > 1) {
    text += ", and " + std::to_string(rank.nearly.size() - 1) + " more such";
  }
  const double digits = -std::log10(std::numeric_limits<double>::epsilon() * rank.condition);
  const int trusted = std::max(0, static_cast<int>(digits));
  return text + "; about " + std::to_string(trusted) + " digits of the estimates can be trusted.";
}

}  // namespace

std::vector<std::string> DesignWarnings(const DesignCheck& check, const Dictionary& dictionary,
                                        const ElementNames& columns) {
  const Names names{check, dictionary, columns};
  std::vector<std::string> warnings;
  for (const Dependence& dependence : check.rank.dependent) {
    if (warnings.size() == kMaxSentences) {
      warnings.push_back(std::to_string(check.rank.dependent.size() - kMaxSentences) +
                         " more columns are combinations of others.");
      break;
    }
    warnings.push_back(Relation(dependence, "a ", names) + Consequence(dependence));
  }
  const bool is_bad = !check.rank.nearly.empty() || check.rank.condition > kBadCondition;
  if (warnings.empty() && is_bad) warnings.push_back(NearlyDependent(check.rank, names));
  return warnings;
}

std::string ConditionText(double condition) {
  if (std::isinf(condition)) return "infinite";
  std::array<char, kNumberBuffer> buffer;
  return std::string(FormatNumber(condition, "", 2, buffer));
}

}  // namespace host
