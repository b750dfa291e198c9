#include "tavolite/report/fit_data.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace host {

namespace {

constexpr double kUndefined = std::numeric_limits<double>::quiet_NaN();

double Scalar(TdxReader& reader, std::string_view name) {
  const TdxSymbolInfo* symbol = reader.Find(name);
  if (symbol == nullptr || symbol->dimension != 0) return kUndefined;
  const TdxRecords records = reader.Read(*symbol, 1);
  return records.values.empty() ? kUndefined : records.values[0];
}

// Records that belong to those of `reference`, one by one.
std::vector<double> ReadBeside(TdxReader& reader, std::string_view name,
                               const TdxRecords& reference) {
  TdxRecords records = reader.Read(reader.Get(name));
  if (records.dimension != reference.dimension || records.keys != reference.keys) {
    throw FileError("the symbol \"" + std::string(name) +
                    "\" has other records than a regression's results file would have");
  }
  return std::move(records.values);
}

void ReadLimits(TdxReader& reader, const TdxRecords& estimates, FitData& fit) {
  const TdxSymbolInfo* symbol = reader.Find("confint");
  if (symbol == nullptr || symbol->dimension != estimates.dimension + 2) return;
  const TdxRecords records = reader.Read(*symbol);
  const auto dimension = static_cast<std::size_t>(estimates.dimension);
  std::size_t j = 0;  // both symbols have the coefficients in the same order
  for (std::size_t i = 0; i < records.values.size(); ++i) {
    const std::span<const std::string> keys = records.Keys(i);
    if (keys.front() != "95%") continue;
    const auto coefficient = keys.subspan(1, dimension);
    while (j < estimates.values.size() && !std::ranges::equal(coefficient, estimates.Keys(j))) ++j;
    if (j == estimates.values.size()) return;
    (keys.back() == "LO" ? fit.coefficients[j].low : fit.coefficients[j].high) = records.values[i];
  }
}

void ReadCoefficients(TdxReader& reader, FitData& fit) {
  const TdxRecords estimates = reader.Read(reader.Get("estimate"));
  const std::vector<double> errors = ReadBeside(reader, "se", estimates);
  const std::vector<double> t = ReadBeside(reader, "tval", estimates);
  const std::vector<double> p = ReadBeside(reader, "pval", estimates);
  for (std::size_t j = 0; j < estimates.values.size(); ++j) {
    fit.coefficients.push_back({LabelText(estimates.Keys(j)), estimates.values[j], errors[j], t[j],
                                p[j], kUndefined, kUndefined});
  }
  ReadLimits(reader, estimates, fit);
}

}  // namespace

FitData ReadFit(TdxReader& reader) {
  FitData fit;
  fit.header = reader.Header();
  fit.r2 = Scalar(reader, "r2");
  fit.rss = Scalar(reader, "rss");
  fit.df = Scalar(reader, "df");
  fit.sigma = Scalar(reader, "sigma");
  fit.resvar = Scalar(reader, "resvar");
  ReadCoefficients(reader, fit);
  fit.residuals = reader.Read(reader.Get("resid"));
  fit.fitted = ReadBeside(reader, "fitted", fit.residuals);
  return fit;
}

std::string LabelText(std::span<const std::string> keys) {
  std::string text;
  for (const std::string& key : keys) {
    if (!text.empty()) text += ", ";
    text += key;
  }
  return text;
}

}  // namespace host
