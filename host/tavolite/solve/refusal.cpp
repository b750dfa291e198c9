#include "tavolite/solve/refusal.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "base/text.h"
#include "instance/names.h"

namespace host {
namespace {

constexpr double kConstantTolerance = 1e-10;  // how far from a constant the solver lets one be

// The solver turns the signs, so that -1 here is +1 there.
bool IsConstant(const Column& column, std::size_t observations) {
  if (column.stored) return column.stored->minus_ones && column.rows->size() == observations;
  return column.values.size() == observations &&
         std::all_of(column.values.begin(), column.values.end(),
                     [](double value) { return std::abs(value + 1.0) <= kConstantTolerance; });
}

void FindRowFaults(const Model& model, ModelFaults& faults) {
  for (std::size_t i = 0; i < model.row_types.size(); ++i) {
    if (model.row_types[i] == RowType::kEqual ||
        static_cast<std::int32_t>(i) == model.objective_row) {
      continue;
    }
    const std::string name = DisplayName(model.dictionary, model.row_names, i);
    (model.row_types[i] == RowType::kFree ? faults.unbounded_row : faults.inequality) = name;
    return;
  }
}

void FindObjectiveFault(const Model& model, std::size_t j, ModelFaults& faults) {
  faults.objective = DisplayName(model.dictionary, model.column_names, j);
  for (const std::int32_t row : *model.columns[j].rows) {
    if (row == model.objective_row) continue;
    faults.objective_place =
        DisplayName(model.dictionary, model.row_names, static_cast<std::size_t>(row));
    return;
  }
}

std::string Number(double value) {
  std::array<char, kNumberBuffer> buffer;
  return std::string(FormatNumber(value, "infinity", 0, buffer));
}

std::string BoundsText(const ModelFaults& faults) {
  if (faults.lower == faults.upper) return "is fixed to " + Number(faults.lower);
  if (std::isinf(faults.upper)) return "has the lower bound " + Number(faults.lower);
  if (std::isinf(faults.lower)) return "has the upper bound " + Number(faults.upper);
  return "has the bounds " + Number(faults.lower) + " and " + Number(faults.upper);
}

const char* HowToFree(InputFormat format) {
  if (format == InputFormat::kMathProg) return "declare it without bounds";
  if (format == InputFormat::kLp) return "list it as free in the section `bounds`";
  return "give it the bound FR in the section BOUNDS";
}

std::string LimitText(const char* key, std::int32_t limit, const std::string& counted,
                      std::size_t count) {
  return counted + ", " + key + " is " + std::to_string(limit) + ": put \"" + key + " " +
         std::to_string(count) + "\" into the option file, or leave it out";
}

}  // namespace

ModelFaults FindFaults(const Model& model) {
  ModelFaults faults;
  faults.observations = model.row_types.size() - 1;
  faults.coefficients = model.columns.size() - 1;
  FindRowFaults(model, faults);
  for (std::size_t j = 0; j < model.columns.size(); ++j) {
    const Column& column = model.columns[j];
    if (static_cast<std::int32_t>(j) == model.objective_column) {
      FindObjectiveFault(model, j, faults);
      continue;
    }
    faults.has_constant = faults.has_constant || IsConstant(column, faults.observations);
    if (faults.bounded.empty() && !(std::isinf(column.lower) && std::isinf(column.upper))) {
      faults.bounded = DisplayName(model.dictionary, model.column_names, j);
      faults.lower = column.lower;
      faults.upper = column.upper;
    }
  }
  return faults;
}

bool AddsIntercept(const ModelFaults& faults, const SolverOptions& options) {
  return options.constant_term == 1 || (options.constant_term > 1 && !faults.has_constant);
}

std::string TooFewRows(const ModelFaults& faults, const SolverOptions& options) {
  if (faults.observations == 0) return "there is no observation: the model needs a row for each";
  const bool adds_intercept = AddsIntercept(faults, options);
  if (faults.observations >= faults.coefficients + (adds_intercept ? 1 : 0)) return {};
  return Counted(faults.observations, "observation") + ", " +
         Counted(faults.coefficients, "coefficient") +
         (adds_intercept ? " and an intercept that is added" : "") + ": at least " +
         std::to_string(faults.coefficients + (adds_intercept ? 2 : 1)) + " rows are needed";
}

std::string Remedy(std::string_view message, const ModelFaults& faults, InputFormat format,
                   const SolverOptions& options) {
  const auto says = [&](const char* text) { return message.find(text) != std::string_view::npos; };
  if (says("Only equality constraints")) {
    if (faults.inequality.empty()) {
      return "the row " + faults.unbounded_row +
             " has no bound: take it out, a model has one objective and equalities only";
    }
    return "the row " + faults.inequality + " is an inequality: write it with = or take it out";
  }
  if (says("Only free variables")) {
    return "the variable " + faults.bounded + " " + BoundsText(faults) + ": " + HowToFree(format);
  }
  if (says("Objective variable must occur only")) {
    return "the variable " + faults.objective + " of the objective also stands in the row " +
           faults.objective_place + ": take it out there";
  }
  if (says("maxn limit")) {
    return LimitText("MAXN", options.maxn, Counted(faults.observations, "observation"),
                     faults.observations);
  }
  if (says("maxp limit")) {
    // The solver wants room for an intercept, also where it will not add one.
    const std::string room = options.constant_term > 0 ? " and room for an intercept" : "";
    return LimitText("MAXP", options.maxp, Counted(faults.coefficients, "coefficient") + room,
                     faults.coefficients + (options.constant_term > 0 ? 1 : 0));
  }
  return {};
}

}  // namespace host
