#include "tavolite/tables/plan.h"

#include <algorithm>
#include <unordered_map>

#include "base/excerpt.h"
#include "base/input_error.h"
#include "base/text.h"
#include "instance/model.h"

namespace host {

namespace {

// Column names and the search for them.
class Columns {
 public:
  Columns(const std::vector<std::string>& names, std::string where)
      : names_(names), where_(std::move(where)) {
    for (std::size_t i = 0; i < names.size(); ++i) {
      if (names[i].empty()) {
        continue;
      }
      const auto [place, is_new] = numbers_.emplace(names[i], i);
      if (!is_new) {
        throw InputError(where_ + "columns " + std::to_string(place->second + 1) + " and " +
                         std::to_string(i + 1) + " have the same name \"" + Excerpt(names[i]) +
                         "\"");
      }
    }
  }

  // `option` is named when there is no such column.
  [[nodiscard]] std::size_t Find(const std::string& name, const char* option) const {
    const auto place = numbers_.find(name);
    if (place != numbers_.end()) {
      return place->second;
    }
    const std::string nearest = Nearest(name);
    throw InputError(where_ + option + ": there is no column \"" + Excerpt(name) + "\"; " +
                     (nearest.empty() ? "" : "the nearest is \"" + Excerpt(nearest) + "\", ") +
                     "the columns are " + List());
  }

  // A text that is a column's name stands for that, commas or not.
  [[nodiscard]] std::vector<std::size_t> FindAll(const std::vector<std::string>& texts,
                                                 const char* option) const {
    std::vector<std::size_t> found;
    for (const std::string& text : texts) {
      std::size_t start = 0;
      while (start <= text.size()) {
        const std::size_t comma =
            numbers_.contains(text) ? text.size() : std::min(text.find(',', start), text.size());
        found.push_back(Find(text.substr(start, comma - start), option));
        start = comma + 1;
      }
    }
    std::vector<std::size_t> sorted = found;
    std::sort(sorted.begin(), sorted.end());
    const auto twice = std::adjacent_find(sorted.begin(), sorted.end());
    if (twice != sorted.end()) {
      throw InputError(where_ + option + ": the column \"" + Excerpt(names_[*twice]) +
                       "\" is named twice");
    }
    return found;
  }

  [[noreturn]] void Refuse(std::size_t column, const std::string& reason) const {
    throw InputError(where_ + "the column \"" + Excerpt(names_[column]) + "\" " + reason);
  }

  [[nodiscard]] std::string List() const {
    std::string list;
    for (std::size_t i = 0; i < names_.size(); ++i) {
      if (list.size() > 200) {
        return list + ", ... (" + std::to_string(names_.size()) + " columns)";
      }
      list += (i == 0 ? "" : ", ") + Excerpt(names_[i]);
    }
    return list;
  }

 private:
  [[nodiscard]] std::string Nearest(const std::string& name) const {
    std::string nearest;
    std::size_t least = name.size() < 4 ? 1 : name.size() / 3 + 2;  // differs as much: not near
    for (const std::string& other : names_) {
      const std::size_t distance = EditDistance(LowerCase(other), LowerCase(name));
      if (other.empty() || distance >= least) continue;
      least = distance;
      nearest = other;
    }
    return nearest;
  }

  const std::vector<std::string>& names_;
  std::string where_;
  std::unordered_map<std::string, std::size_t> numbers_;
};

bool Contains(const std::vector<std::size_t>& list, std::size_t column) {
  return std::find(list.begin(), list.end(), column) != list.end();
}

// Every option's columns by number.
struct Choice {
  std::size_t response;
  std::vector<std::size_t> regressors, drop, labels, factors;
};

Choice Choose(const Columns& columns, const TableOptions& options) {
  Choice choice{columns.Find(options.response, "--response"),
                columns.FindAll(options.regressors, "--regressors"),
                columns.FindAll(options.drop, "--drop"), columns.FindAll(options.labels, "--label"),
                columns.FindAll(options.factors, "--factor")};
  for (const std::size_t column : choice.drop) {
    if (column == choice.response || Contains(choice.regressors, column) ||
        Contains(choice.labels, column) || Contains(choice.factors, column)) {
      columns.Refuse(column, "is both dropped and used");
    }
  }
  if (Contains(choice.regressors, choice.response) || Contains(choice.factors, choice.response)) {
    columns.Refuse(choice.response, "is both the response and a regressor");
  }
  return choice;
}

// The regressors that are asked for, else all columns without another use; factors belong to them.
std::vector<std::size_t> RegressorColumns(const Choice& choice,
                                          const std::vector<std::string>& names,
                                          std::vector<std::string>& notes) {
  std::vector<std::size_t> regressors = choice.regressors;
  if (regressors.empty()) {
    for (std::size_t i = 0; i < names.size(); ++i) {
      if (names[i].empty()) {
        notes.push_back("column " + std::to_string(i + 1) + " has no name and is left out");
      } else if (i != choice.response && !Contains(choice.drop, i) &&
                 (!Contains(choice.labels, i) || Contains(choice.factors, i))) {
        regressors.push_back(i);
      }
    }
    return regressors;
  }
  for (const std::size_t column : choice.factors) {
    if (!Contains(regressors, column)) {
      regressors.push_back(column);
    }
  }
  return regressors;
}

std::string Fault(const ColumnUse& use, std::string_view text, const std::string& what) {
  return "column \"" + Excerpt(use.name) + "\": \"" + Excerpt(text) + "\" " + what;
}

// Texts that a person would take for a number.
bool HasDecimalComma(std::string_view text) {
  const std::size_t comma = text.find(',');
  return comma != std::string_view::npos && text.find(',', comma + 1) == std::string_view::npos &&
         text.find_first_not_of("+-0123456789,") == std::string_view::npos;
}

}  // namespace

std::string LabelFault(std::string_view text) {
  if (text.size() > kMaxNameLength) {
    return "is longer than " + std::to_string(kMaxNameLength) + " bytes";
  }
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t length = Utf8Length(text.substr(i));
    if (length == 0) {
      return "is not valid UTF-8";
    }
    if (IsControl(text[i])) {
      return "has a control character";
    }
    i += length;
  }
  return "";
}

std::string NumberFault(const ColumnUse& use, std::string_view text, NumberKind kind) {
  switch (kind) {
    case NumberKind::kInfinite:
      return Fault(use, text, "is not finite");
    case NumberKind::kTooLarge:
      return Fault(use, text, "is beyond the range of a double");
    default:
      return Fault(use, text,
                   HasDecimalComma(text)
                       ? "has a comma: numbers are written with a point"
                       : "is not a number (text columns need --label, --factor or --drop; a "
                         "missing value is an empty field or NA)");
  }
}

std::string TextFault(const ColumnUse& use, std::string_view text) {
  const std::string fault = LabelFault(text);
  return fault.empty() ? fault : Fault(use, text, fault);
}

TablePlan MakeTablePlan(const TableHeader& header, const TableOptions& options) {
  const auto& [names, where] = header;
  const Columns columns(names, where);
  if (options.response.empty()) {
    throw InputError(where +
                     "a table needs --response with the name of the dependent column; the "
                     "columns are " +
                     columns.List());
  }
  const Choice choice = Choose(columns, options);
  TablePlan plan;
  for (const std::string& name : names) {
    plan.columns.push_back({.name = name});
  }
  const std::vector<std::size_t> regressors = RegressorColumns(choice, names, plan.notes);
  if (regressors.empty()) {
    throw InputError(where + "no column is left as a regressor");
  }
  if (choice.labels.size() > kMaxLabels) {
    throw InputError(where + "--label names more than " + std::to_string(kMaxLabels) + " columns");
  }
  for (const std::size_t column : choice.labels) {
    plan.columns[column].text = plan.labels++;
  }
  plan.response = plan.columns[choice.response].number = plan.numbers++;
  for (const std::size_t column : regressors) {
    ColumnUse& use = plan.columns[column];
    const bool factor = Contains(choice.factors, column);
    if (const std::string fault = LabelFault(use.name); !fault.empty()) {
      columns.Refuse(column, "can't be a regressor: its name " + fault);
    }
    if (factor && use.text >= 0) {
      columns.Refuse(column, "is both a label and a factor");
    }
    (factor ? use.text : use.number) = factor ? plan.labels + plan.factors++ : plan.numbers++;
    plan.regressors.push_back(
        {.name = use.name, .factor = factor, .position = factor ? plan.factors - 1 : use.number});
  }
  return plan;
}

}  // namespace host
