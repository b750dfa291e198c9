#include "tavolite/show/show_fit.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/excerpt.h"
#include "tavolite/design/design_check.h"
#include "tavolite/report/fit_data.h"
#include "tavolite/show/show_text.h"

namespace host {

namespace {

struct Quantity {
  const char* name;
  double value;
  bool is_probability = false;
};

std::vector<Quantity> QuantitiesOf(const FitCoefficient& c) {
  return {{"estimate", c.estimate}, {"std_error", c.error}, {"t", c.t},
          {"p", c.p, true},         {"lower", c.low},       {"upper", c.high}};
}

std::vector<Quantity> QuantitiesOf(const FitStatistics& fit) {
  return {{"n", static_cast<double>(fit.n)},
          {"df", fit.df},
          {"rss", fit.rss},
          {"r2", fit.r2},
          {"adjusted_r2", fit.adjusted_r2},
          {"sigma", fit.sigma},
          {"f", fit.f},
          {"f_df", fit.f_df},
          {"p", fit.f_p, true}};
}

std::string CellText(const Quantity& quantity) {
  if (quantity.is_probability) return ProbabilityCell(quantity.value, NumberText);
  return NumberText(quantity.value);
}

std::string RoundedCell(const Quantity& quantity) {
  if (quantity.is_probability) return ProbabilityCell(quantity.value, RoundedText);
  return RoundedText(quantity.value);
}

std::string JsonPairs(const std::vector<Quantity>& quantities) {
  std::string text;
  for (const Quantity& quantity : quantities) {
    if (!text.empty()) text += ',';
    text +=
        JsonString(quantity.name) + ':' +
        (quantity.is_probability ? JsonProbability(quantity.value) : JsonNumber(quantity.value));
  }
  return text;
}

std::string CoefficientsCsv(const std::vector<FitCoefficient>& coefficients, CsvCells cells) {
  std::string text = "name";
  for (const Quantity& quantity : QuantitiesOf(FitCoefficient())) {
    text.append(",").append(quantity.name);
  }
  text += '\n';
  for (const FitCoefficient& coefficient : coefficients) {
    text += CsvField(coefficient.name, cells);
    for (const Quantity& quantity : QuantitiesOf(coefficient)) text += ',' + CellText(quantity);
    text += '\n';
  }
  return text;
}

std::string CoefficientsJson(const std::vector<FitCoefficient>& coefficients, double level) {
  std::string text = "{\"level\":" + JsonNumber(level) + ",\"coefficients\":[";
  const char* separator = "\n";
  for (const FitCoefficient& coefficient : coefficients) {
    text += std::exchange(separator, ",\n");
    text += "{\"name\":" + JsonString(coefficient.name) + ',' +
            JsonPairs(QuantitiesOf(coefficient)) + '}';
  }
  return text + "\n]}\n";
}

std::string CoefficientsTable(const std::vector<FitCoefficient>& coefficients) {
  AlignedTable table;
  table.AddColumn("name", AlignedTable::Side::kLeft);
  for (const Quantity& quantity : QuantitiesOf(FitCoefficient())) {
    table.AddColumn(quantity.name, AlignedTable::Side::kRight);
  }
  for (const FitCoefficient& coefficient : coefficients) {
    std::vector<std::string> cells{coefficient.name};
    for (const Quantity& quantity : QuantitiesOf(coefficient)) {
      cells.push_back(RoundedCell(quantity));
    }
    table.AddRow(std::move(cells));
  }
  std::string text;
  table.Print(text);
  return text;
}

}  // namespace

void PrintRunFacts(TdxReader& reader, std::string& text) {
  const RunFacts& run = reader.Header().run;
  const auto add = [&](const char* what, const std::string& value) {
    if (!value.empty()) text += what + Printable(value) + '\n';
  };
  add("Model: ", run.model);
  add("Response: ", run.response);
  if (!std::isnan(run.condition_number)) {
    add("Condition number: ", ConditionText(run.condition_number));
  }
  for (const std::string& warning : run.warnings) add("Warning: ", warning);
  for (const std::string& note : run.notes) add("Note: ", note);
  const bool is_told = std::ranges::count(run.notes, kPerfectFitNote) > 0;
  if (!is_told && IsPerfectFit(reader)) add("Note: ", kPerfectFitNote);
}

std::string CoefficientsText(const ShowOptions& options, TdxReader& reader) {
  std::vector<FitCoefficient> coefficients = ReadCoefficients(reader, options.level);
  if (options.limit >= 0 && std::cmp_less(options.limit, coefficients.size())) {
    coefficients.resize(static_cast<std::size_t>(options.limit));
  }
  if (options.format == ShowFormat::kCsv) return CoefficientsCsv(coefficients, options.csv_cells);
  if (options.format == ShowFormat::kJson) return CoefficientsJson(coefficients, options.level);
  std::string text;
  PrintRunFacts(reader, text);
  text += "Limits at " + NumberText(options.level) + "%\n\n";
  return text + CoefficientsTable(coefficients);
}

std::string FitText(const ShowOptions& options, TdxReader& reader) {
  const FitStatistics fit = StatisticsOf(ReadFit(reader));
  const std::vector<Quantity> quantities = QuantitiesOf(fit);
  if (options.format == ShowFormat::kJson) return '{' + JsonPairs(quantities) + "}\n";
  std::string text;
  if (options.format == ShowFormat::kCsv) {
    std::string values;
    for (const Quantity& quantity : quantities) {
      text.append(text.empty() ? "" : ",").append(quantity.name);
      values += (values.empty() ? "" : ",") + CellText(quantity);
    }
    return text + '\n' + values + '\n';
  }
  PrintRunFacts(reader, text);
  if (!text.empty()) text += '\n';
  AlignedTable table;
  table.AddColumn("", AlignedTable::Side::kLeft);
  table.AddColumn("", AlignedTable::Side::kLeft);
  for (const Quantity& quantity : quantities) table.AddRow({quantity.name, RoundedCell(quantity)});
  table.Print(text);
  return text;
}

}  // namespace host
