#include "tavolite/models/glpk_model.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "base/input_error.h"
#include "base/text_file.h"
#include "tavolite/command/input_format.h"
#include "tavolite/models/glpk_objective.h"
#include "tavolite/models/mathprog_reader.h"
#include "tavolite/models/mathprog_sides.h"
#include "tavolite/models/model_file.h"
#include "tavolite/models/mps_lp_reader.h"
#include "tavolite/models/name_parser.h"

namespace host {
namespace {

constexpr double kConstantTolerance = 1e-10;  // how far from a constant the solver lets one be

// One-based row of GLPK to row of the model: an objective put back stands before all others.
class RowNumbers {
 public:
  RowNumbers(const glp_prob* problem, const Objective& objective)
      : offset_(objective.row == 0 ? 0 : -1),
        objective_row_(objective.row == 0 ? 0 : objective.row - 1),
        count_(glp_get_num_rows(const_cast<glp_prob*>(problem)) + (objective.row == 0 ? 1 : 0)) {}
  [[nodiscard]] std::int32_t Of(int glpk_row) const { return glpk_row + offset_; }
  [[nodiscard]] int GlpkRow(std::int32_t row) const {
    return row - offset_;
  }  // 0: the one put back
  [[nodiscard]] std::int32_t Objective() const { return objective_row_; }
  [[nodiscard]] std::int32_t Count() const { return count_; }

 private:
  int offset_;
  std::int32_t objective_row_;
  std::int32_t count_;
};

std::pair<RowType, double> TypeAndRhs(glp_prob* problem, int row) {
  switch (glp_get_row_type(problem, row)) {
    case GLP_FX:
      return {RowType::kEqual, glp_get_row_lb(problem, row)};
    case GLP_LO:
      return {RowType::kGreater, glp_get_row_lb(problem, row)};
    case GLP_UP:
      return {RowType::kLess, glp_get_row_ub(problem, row)};
    case GLP_FR:
      return {RowType::kFree, 0.0};
    default:
      throw InputError("row " + NameOrEmpty(glp_get_row_name(problem, row)) +
                       " has a lower and an upper bound: write it with = or take it out");
  }
}

RowType Turned(RowType type) {
  if (type == RowType::kGreater) return RowType::kLess;
  if (type == RowType::kLess) return RowType::kGreater;
  return type;
}

void AddRows(glp_prob* problem, const RowNumbers& numbers, double sign, const Objective& objective,
             NameStyle style, DictionaryBuilder& dictionary, Model& model) {
  for (std::int32_t i = 0; i < numbers.Count(); ++i) {
    const int row = numbers.GlpkRow(i);
    if (i == numbers.Objective()) {
      model.row_types.push_back(RowType::kFree);
      model.rhs.push_back(0.0);
      dictionary.Append(model.row_names, ParseName(objective.name, style));
      continue;
    }
    const auto [type, rhs] = TypeAndRhs(problem, row);
    model.row_types.push_back(sign < 0.0 ? Turned(type) : type);
    model.rhs.push_back(sign * rhs + 0.0);  // no negative zeros
    dictionary.Append(model.row_names,
                      ParseName(NameOrEmpty(glp_get_row_name(problem, row)), style));
  }
}

void SetBounds(glp_prob* problem, int j, Column& column) {
  const int type = glp_get_col_type(problem, j);
  if (type == GLP_LO || type == GLP_DB || type == GLP_FX) column.lower = glp_get_col_lb(problem, j);
  if (type == GLP_UP || type == GLP_DB) column.upper = glp_get_col_ub(problem, j);
  if (type == GLP_FX) column.upper = column.lower;
}

// The entries of GLPK's column j by ascending row, with the signs of fit rows turned.
std::vector<std::pair<std::int32_t, double>> Entries(glp_prob* problem, int j,
                                                     const RowNumbers& numbers, double sign,
                                                     std::vector<int>& rows,
                                                     std::vector<double>& values) {
  const int count = glp_get_mat_col(problem, j, nullptr, nullptr);
  rows.resize(static_cast<std::size_t>(count) + 1);
  values.resize(rows.size());
  glp_get_mat_col(problem, j, rows.data(), values.data());
  std::vector<std::pair<std::int32_t, double>> entries;
  entries.reserve(rows.size());
  for (std::size_t k = 1; k < rows.size(); ++k) {
    const std::int32_t row = numbers.Of(rows[k]);
    entries.emplace_back(row, row == numbers.Objective() ? values[k] : sign * values[k]);
  }
  std::sort(entries.begin(), entries.end());
  return entries;
}

// GLPK's columns in the order in which the model declares their variables: by itself GLPK numbers
// the terms of a sum that is written out from the last to the first.
std::vector<int> ColumnOrder(glp_prob* problem, const std::vector<std::string>& variables,
                             NameStyle style) {
  std::unordered_map<std::string, std::size_t> places;
  for (const std::string& name : variables) places.emplace(name, places.size());
  std::vector<std::pair<std::size_t, int>> order;
  for (int j = 1; j <= glp_get_num_cols(problem); ++j) {
    const ElementName name = ParseName(NameOrEmpty(glp_get_col_name(problem, j)), style);
    const auto place = places.find(name.symbol);
    order.emplace_back(place == places.end() ? places.size() : place->second, j);
  }
  std::sort(order.begin(), order.end());
  std::vector<int> columns;
  for (const auto& [place, j] : order) columns.push_back(j);
  return columns;
}

void AddColumns(glp_prob* problem, const std::vector<int>& order, const RowNumbers& numbers,
                double sign, const Objective& objective, NameStyle style,
                DictionaryBuilder& dictionary, Model& model) {
  std::vector<int> row_buffer;
  std::vector<double> value_buffer;
  std::vector<std::int32_t> rows;
  for (const int j : order) {
    const std::string name = NameOrEmpty(glp_get_col_name(problem, j));
    if (j == objective.column) {
      model.objective_column = static_cast<std::int32_t>(model.columns.size());
    }
    if (glp_get_col_kind(problem, j) != GLP_CV) {
      throw InputError("variable " + name + " is integer: declare it as a continuous one");
    }
    Column column;
    SetBounds(problem, j, column);
    rows.clear();
    if (objective.row == 0 && j == objective.column) {
      rows.push_back(numbers.Objective());
      column.values.push_back(1.0);
    }
    for (const auto& [row, value] : Entries(problem, j, numbers, sign, row_buffer, value_buffer)) {
      rows.push_back(row);
      column.values.push_back(value);
    }
    // Columns of a regression mostly have entries in all rows.
    const bool same = !model.columns.empty() && *model.columns.back().rows == rows;
    column.rows =
        same ? model.columns.back().rows : std::make_shared<const std::vector<std::int32_t>>(rows);
    model.columns.push_back(std::move(column));
    dictionary.Append(model.column_names, ParseName(name, style));
  }
}

// With the data on the wrong side every value arrives with the other sign. A constant term is then
// no longer seen as one: the solver adds an intercept that can't be told from it.
void WarnOfNegativeConstant(const Model& model, const SolveOptions& options, ReaderNotes& notes) {
  const auto fit_rows = model.row_types.size() - 1;
  for (std::size_t j = 0; j < model.columns.size(); ++j) {
    const Column& column = model.columns[j];
    if (static_cast<std::int32_t>(j) == model.objective_column || fit_rows == 0) continue;
    // The solver turns the signs, so that +1 here is -1 there.
    const bool constant =
        column.values.size() == fit_rows &&
        std::all_of(column.values.begin(), column.values.end(),
                    [](double value) { return std::abs(value - 1.0) <= kConstantTolerance; }) &&
        !std::binary_search(column.rows->begin(), column.rows->end(), model.objective_row);
    if (!constant) continue;
    notes.warnings.push_back("the column of " +
                             DisplayName(model.dictionary, model.column_names, j) +
                             " is -1 in every observation: if " + Utf8(options.input.filename()) +
                             " has its data on the left-hand side, use --data-side left");
    return;
  }
}

// A restriction has no place in a regression of this kind.
void NoteLoneRows(const Model& model, ReaderNotes& notes) {
  constexpr std::size_t kMany = 4;
  constexpr std::size_t kMostNamed = 5;
  const std::vector<std::int32_t>& symbols = model.row_names.symbol;
  std::vector<std::size_t> counts(model.dictionary.symbols.size());
  for (const std::int32_t symbol : symbols) ++counts[static_cast<std::size_t>(symbol)];
  const auto most = std::max_element(counts.begin(), counts.end());
  if (most == counts.end() || *most < kMany) return;
  std::size_t named = 0;
  for (std::size_t i = 0; i < symbols.size() && named < kMostNamed; ++i) {
    if (static_cast<std::int32_t>(i) == model.objective_row ||
        counts[static_cast<std::size_t>(symbols[i])] != 1) {
      continue;
    }
    ++named;
    notes.notes.push_back(
        "the row " + DisplayName(model.dictionary, model.row_names, i) + " stands alone beside " +
        std::to_string(*most) + " rows of " +
        std::string(model.dictionary.symbols[static_cast<std::size_t>(most - counts.begin())]) +
        ": it is fitted as one more observation; a restriction would not be kept");
  }
}

DataSide ChooseSide(const SolveOptions& options, const std::string& mathprog) {
  if (options.data_side) return *options.data_side;
  if (options.format != InputFormat::kMathProg) return DataSide::kRight;
  return FindDataSide(mathprog, Utf8(options.input)).value_or(DataSide::kLeft);
}

}  // namespace

Model ReadGlpkModel(const SolveOptions& options, const std::filesystem::path& scratch,
                    ReaderNotes& notes) {
  const bool is_mathprog = options.format == InputFormat::kMathProg;
  const NameStyle style = is_mathprog                 ? NameStyle::kMathProg
                          : options.split_underscores ? NameStyle::kBracketsOrUnderscores
                                                      : NameStyle::kBrackets;
  GlpkSession session;
  const std::string text = is_mathprog ? ReadModelFile(options.input) : std::string();
  const GlpkProblem problem =
      is_mathprog ? ReadMathProg(session, options.input, text, options.data, scratch, notes)
                  : ReadMpsOrLp(session, options.input, options.format);
  const double sign = ChooseSide(options, text) == DataSide::kRight ? -1.0 : 1.0;
  Model model;
  try {
    const Objective objective = is_mathprog ? FindMathProgObjective(problem.get())
                                            : RestoreObjective(session, problem.get(), notes);
    const RowNumbers numbers(problem.get(), objective);
    model.name = ModelName(options.input);
    model.objective_row = numbers.Objective();
    DictionaryBuilder dictionary(model.dictionary);
    AddRows(problem.get(), numbers, sign, objective, style, dictionary, model);
    AddColumns(problem.get(), ColumnOrder(problem.get(), notes.variables, style), numbers, sign,
               objective, style, dictionary, model);
  } catch (const InputError& error) {
    throw InputError(Utf8(options.input) + ": " + error.what());
  }
  if (!is_mathprog && !options.data_side) WarnOfNegativeConstant(model, options, notes);
  NoteLoneRows(model, notes);
  return model;
}

}  // namespace host
