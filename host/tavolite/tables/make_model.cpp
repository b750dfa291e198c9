#include "tavolite/tables/make_model.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <numeric>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "base/excerpt.h"
#include "base/input_error.h"
#include "tavolite/tables/number.h"

namespace host {

namespace {

constexpr std::int32_t kFitSymbol = 0;
constexpr std::int32_t kObjectiveRowSymbol = 1;
constexpr std::int32_t kObjectiveColumnSymbol = 2;
constexpr int kOwnSymbols = 3;

using RowList = std::shared_ptr<const std::vector<std::int32_t>>;

RowList AllRows(std::size_t count) {
  auto rows = std::make_shared<std::vector<std::int32_t>>(count);
  std::iota(rows->begin(), rows->end(), 0);
  return rows;
}

// The levels of a factor in the order that decides which is first: by value where all are numbers,
// else by their bytes.
std::vector<std::int32_t> SortedLevels(const TextList& levels) {
  std::vector<double> values(levels.size());
  bool numbers = true;
  for (std::size_t i = 0; i < levels.size(); ++i) {
    const ParsedNumber number = ParseNumber(levels[i]);
    numbers = numbers && number.kind == NumberKind::kNumber;
    values[i] = number.value;
  }
  std::vector<std::int32_t> order(levels.size());
  std::iota(order.begin(), order.end(), 0);
  std::sort(order.begin(), order.end(), [&](std::int32_t a, std::int32_t b) {
    const auto i = static_cast<std::size_t>(a);
    const auto j = static_cast<std::size_t>(b);
    return numbers && values[i] != values[j] ? values[i] < values[j] : levels[i] < levels[j];
  });
  return order;
}

class ModelMaker {
 public:
  ModelMaker(const TablePlan& plan, TableRows& rows, Intercept intercept)
      : plan_(plan), rows_(rows), intercept_(intercept), where_(rows.name + ": ") {}

  TableModel Make() {
    CheckRows();
    rows_.numbers.Finish();
    CheckLabels();
    result_.notes = plan_.notes;
    NoteDroppedRows();
    StartModel();
    FindConstant();
    for (const Regressor& regressor : plan_.regressors) {
      if (regressor.factor) {
        AddFactor(regressor);
      } else {
        AddNumbers(regressor);
      }
    }
    CheckCoefficients();
    NameRows();
    Model& model = result_.model;
    model.rhs = rows_.numbers.TakeResponse();
    model.rhs.push_back(0.0);
    model.value_file = rows_.numbers.File();
    model.dictionary.labels = std::move(rows_.label_texts.texts);
    return std::move(result_);
  }

 private:
  [[nodiscard]] std::size_t Rows() const { return rows_.row_numbers.size(); }

  void CheckRows() const {
    if (rows_.rows_read == 0) {
      throw InputError(where_ + "the table has no rows");
    }
    if (Rows() == 0) {
      throw InputError(where_ + "every one of the " + std::to_string(rows_.rows_read) +
                       " rows has a missing value (--drop leaves out a column that is empty)");
    }
    if (Rows() * std::max<std::size_t>(rows_.labels.size(), 1) >=
        std::size_t{std::numeric_limits<std::int32_t>::max()}) {
      throw InputError(where_ + "more labels than a model can have");
    }
  }

  // Results are keyed by the labels: no two rows may have the same.
  void CheckLabels() const {
    const auto& columns = rows_.labels;
    if (columns.empty()) {
      return;
    }
    std::vector<std::int64_t> key(columns[0].begin(), columns[0].end());
    for (std::size_t c = 1; c < columns.size(); ++c) {
      std::unordered_map<std::int64_t, std::int64_t> pairs;
      for (std::size_t r = 0; r < key.size(); ++r) {
        const std::int64_t pair = (key[r] << 32) | columns[c][r];
        key[r] = pairs.try_emplace(pair, static_cast<std::int64_t>(pairs.size())).first->second;
      }
    }
    std::vector<std::size_t> first_row(std::max(key.size(), rows_.label_texts.texts.size()),
                                       key.size());
    for (std::size_t r = 0; r < key.size(); ++r) {
      std::size_t& first = first_row[static_cast<std::size_t>(key[r])];
      if (first != key.size()) {
        throw InputError(rows_.Where(r) + ": the label " + LabelText(r) + " is the same as at " +
                         rows_.Where(first) +
                         " (--label takes several columns, or none for the row's number)");
      }
      first = r;
    }
  }

  [[nodiscard]] std::string LabelText(std::size_t row) const {
    std::string text;
    for (const std::vector<std::int32_t>& column : rows_.labels) {
      const auto label = static_cast<std::size_t>(column[row]);
      text += text.empty() ? '"' : ',';
      text += rows_.label_texts.texts[label];
    }
    return text + '"';
  }

  void NoteDroppedRows() {
    const std::int64_t dropped = rows_.rows_read - static_cast<std::int64_t>(Rows());
    if (dropped > 0) {
      result_.notes.push_back(std::to_string(dropped) + " of " + std::to_string(rows_.rows_read) +
                              " rows have missing values and are left out, the first of them in " +
                              (rows_.by_line ? "line " : "row ") +
                              std::to_string(rows_.first_dropped_line));
    }
  }

  void StartModel() {
    Model& model = result_.model;
    const auto objective_row = static_cast<std::int32_t>(Rows());
    model.dictionary.symbols = {"fit", "objective", "rss"};
    model.row_types.assign(Rows() + 1, RowType::kEqual);
    model.row_types.back() = RowType::kFree;
    model.objective_row = objective_row;
    model.objective_column = 0;
    const std::vector<std::int32_t> objective{objective_row};
    model.columns.push_back(
        {.rows = std::make_shared<const std::vector<std::int32_t>>(objective), .values = {1.0}});
    model.column_names.symbol = {kObjectiveColumnSymbol};
    model.column_names.first = {0, 0};
    all_rows_ = AllRows(Rows());
  }

  void AddColumn(const std::string& name, Column column) {
    if (!coefficients_.insert(name).second) {
      throw InputError(where_ + "two coefficients would have the name \"" + Excerpt(name) + "\"");
    }
    Model& model = result_.model;
    model.columns.push_back(std::move(column));
    // Each coefficient is a variable of its own, so that reports and results show just its name.
    ElementNames& names = model.column_names;
    names.symbol.push_back(SymbolNumber(name));
    names.first.push_back(0);
  }

  // A regressor may be called like one of the model's own symbols; any other name is new.
  std::int32_t SymbolNumber(const std::string& name) {
    TextList& symbols = result_.model.dictionary.symbols;
    for (std::int32_t own = 0; own < kOwnSymbols; ++own) {
      if (symbols[static_cast<std::size_t>(own)] == name) return own;
    }
    symbols.push_back(name);
    return static_cast<std::int32_t>(symbols.size() - 1);
  }

  // A column of ones makes an intercept superfluous.
  void FindConstant() {
    has_constant_ = std::any_of(
        plan_.regressors.begin(), plan_.regressors.end(), [this](const Regressor& regressor) {
          return !regressor.factor && rows_.numbers.HoldsOnes(regressor.position);
        });
    needs_all_levels_ = !AddsIntercept() && !has_constant_;
  }

  void AddNumbers(const Regressor& regressor) {
    AddColumn(regressor.name, rows_.numbers.TakeColumn(regressor.position, all_rows_));
  }

  void AddFactor(const Regressor& regressor) {
    FactorColumn& factor = rows_.factors[static_cast<std::size_t>(regressor.position)];
    const TextList& levels = factor.levels.texts;
    if (levels.size() < 2) {
      throw InputError(where_ + "the factor \"" + Excerpt(regressor.name) +
                       "\" has only one level: leave it out with --drop");
    }
    std::vector<std::vector<std::int32_t>> rows(levels.size());
    for (std::size_t r = 0; r < factor.codes.size(); ++r) {
      rows[static_cast<std::size_t>(factor.codes[r])].push_back(static_cast<std::int32_t>(r));
    }
    const std::vector<std::int32_t> order = SortedLevels(levels);
    const bool all_levels = std::exchange(needs_all_levels_, false);
    result_.notes.push_back("factor " + regressor.name + ": " + std::to_string(levels.size()) +
                            (all_levels
                                 ? " levels, each with a coefficient: there is no intercept"
                                 : " levels, measured against " +
                                       std::string(levels[static_cast<std::size_t>(order[0])])));
    for (std::size_t i = all_levels ? 0 : 1; i < order.size(); ++i) {
      const auto level = static_cast<std::size_t>(order[i]);
      const std::string label = regressor.name + "=" + std::string(levels[level]);
      if (const std::string fault = LabelFault(label); !fault.empty()) {
        throw InputError(where_ + "the coefficient name \"" + Excerpt(label) + "\" " + fault);
      }
      std::vector<double> values(rows[level].size(), -1.0);
      AddColumn(label,
                {.rows = std::make_shared<const std::vector<std::int32_t>>(std::move(rows[level])),
                 .values = std::move(values)});
    }
    factor = {};
  }

  [[nodiscard]] bool AddsIntercept() const {
    return intercept_ == Intercept::kAlways ||
           (intercept_ == Intercept::kAutomatic && !has_constant_);
  }

  void CheckCoefficients() const {
    const std::size_t count = coefficients_.size() + (AddsIntercept() ? 1 : 0);
    if (Rows() < count) {
      throw InputError(where_ + std::to_string(Rows()) + " complete rows are too few for " +
                       std::to_string(count) + " coefficients" +
                       (AddsIntercept() ? ", the intercept included" : "") + ": at least " +
                       std::to_string(count + 1) + " are needed");
    }
    if (AddsIntercept() && coefficients_.contains("Intercept")) {
      throw InputError(
          where_ +
          "a regressor is named \"Intercept\" like the one that is added; rename it, or "
          "use --no-intercept");
    }
  }

  void NameRows() {
    ElementNames& names = result_.model.row_names;
    names.symbol.assign(Rows() + 1, kFitSymbol);
    names.symbol.back() = kObjectiveRowSymbol;
    if (rows_.labels.empty()) {
      NumberRows(names);
    } else {
      const std::size_t dimension = rows_.labels.size();
      names.label.resize(Rows() * dimension);
      for (std::size_t c = 0; c < dimension; ++c) {
        for (std::size_t r = 0; r < Rows(); ++r) {
          names.label[r * dimension + c] = rows_.labels[c][r];
        }
        rows_.labels[c] = {};
        rows_.labels[c].shrink_to_fit();
      }
    }
    const auto dimension = static_cast<std::int32_t>(names.label.size() / Rows());
    names.first.resize(Rows() + 2);
    for (std::size_t r = 0; r <= Rows(); ++r) {
      names.first[r] = static_cast<std::int32_t>(r) * dimension;
    }
    names.first.back() = names.first[Rows()];
  }

  // Row numbers as labels; nothing else is one then.
  void NumberRows(ElementNames& names) {
    TextList& texts = rows_.label_texts.texts;
    texts.reserve(Rows());
    names.label.reserve(Rows());
    for (const std::int32_t number : rows_.row_numbers) {
      names.label.push_back(static_cast<std::int32_t>(texts.size()));
      texts.push_back(std::to_string(number));
    }
  }

  const TablePlan& plan_;
  TableRows& rows_;
  Intercept intercept_;
  std::string where_;
  TableModel result_;
  RowList all_rows_;
  std::unordered_set<std::string> coefficients_;
  bool has_constant_ = false;
  bool needs_all_levels_ = false;  // of the next factor
};

}  // namespace

TableModel MakeTableModel(const TablePlan& plan, TableRows rows, Intercept intercept) {
  return ModelMaker(plan, rows, intercept).Make();
}

}  // namespace host
