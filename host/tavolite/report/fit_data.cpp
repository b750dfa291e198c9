#include "tavolite/report/fit_data.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>

#include "tavolite/report/distributions.h"
#include "tavolite/report/page_text.h"

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

// False where the file does not hold the level for all coefficients.
bool ReadLimits(TdxReader& reader, const std::string& level, const TdxRecords& estimates,
                std::vector<FitCoefficient>& coefficients) {
  const TdxSymbolInfo* symbol = reader.Find("confint");
  if (symbol == nullptr || symbol->dimension != estimates.dimension + 2) return false;
  const TdxRecords records = reader.Read(*symbol);
  const auto dimension = static_cast<std::size_t>(estimates.dimension);
  std::size_t j = 0;  // both symbols have the coefficients in the same order
  std::size_t found = 0;
  for (std::size_t i = 0; i < records.values.size(); ++i) {
    const std::span<const std::string> keys = records.Keys(i);
    if (keys.front() != level) continue;
    const auto coefficient = keys.subspan(1, dimension);
    while (j < coefficients.size() && !std::ranges::equal(coefficient, estimates.Keys(j))) ++j;
    if (j == coefficients.size()) return false;
    (keys.back() == "LO" ? coefficients[j].low : coefficients[j].high) = records.values[i];
    ++found;
  }
  return found == 2 * coefficients.size();
}

void ComputeLimits(double level, double df, std::vector<FitCoefficient>& coefficients) {
  const double quantile = StudentTwoSidedQuantile(level / 100.0, df);
  for (FitCoefficient& c : coefficients) {
    c.low = c.estimate - quantile * c.error;
    c.high = c.estimate + quantile * c.error;
  }
}

// The sums of squares of the fitted values about zero and about their mean.
struct SumsOfSquares {
  double about_zero = 0.0;
  double about_mean = 0.0;
};

SumsOfSquares SumsOf(const std::vector<double>& values) {
  double mean = 0.0;
  for (const double value : values) mean += value / static_cast<double>(values.size());
  SumsOfSquares sums;
  for (const double value : values) {
    sums.about_zero += value * value;
    sums.about_mean += (value - mean) * (value - mean);
  }
  return sums;
}

// Nothing where it can't be told.
std::optional<bool> HasIntercept(const FitData& fit, const SumsOfSquares& sums) {
  const bool is_named = std::ranges::any_of(
      fit.coefficients, [](const FitCoefficient& c) { return c.is_added_intercept; });
  if (is_named) return true;
  const double explained = fit.r2 / (1.0 - fit.r2) * fit.rss;
  const double rounding = std::max(1e-9, 1e-14 / (1.0 - fit.r2));
  const double difference = sums.about_zero - sums.about_mean;
  if (!std::isfinite(explained) || !(difference > rounding * sums.about_zero)) return {};
  return std::abs(explained - sums.about_mean) < std::abs(explained - sums.about_zero);
}

}  // namespace

std::vector<FitCoefficient> ReadCoefficients(TdxReader& reader, double level) {
  const TdxRecords estimates = reader.Read(reader.Get("estimate"));
  const std::vector<double> errors = ReadBeside(reader, "se", estimates);
  const std::vector<double> t = ReadBeside(reader, "tval", estimates);
  const std::vector<double> p = ReadBeside(reader, "pval", estimates);
  std::vector<FitCoefficient> coefficients;
  for (std::size_t j = 0; j < estimates.values.size(); ++j) {
    const std::span<const std::string> keys = estimates.Keys(j);
    coefficients.push_back(
        {LabelText(keys), estimates.values[j], errors[j], t[j], p[j], kUndefined, kUndefined,
         !keys.empty() && std::ranges::count(keys, "Intercept") == std::ssize(keys)});
  }
  if (!ReadLimits(reader, NumberOf(level, 0) + "%", estimates, coefficients)) {
    ComputeLimits(level, Scalar(reader, "df"), coefficients);
  }
  return coefficients;
}

bool IsPerfectFit(TdxReader& reader) {
  constexpr std::int64_t kFirst = 100;
  constexpr double kFarFromPerfect = 1e-9;
  const TdxSymbolInfo* fitted = reader.Find("fitted");
  const double sigma = Scalar(reader, "sigma");
  if (fitted == nullptr || std::isnan(sigma)) return false;
  // Mostly a few values tell that it isn't.
  double largest = 0.0;
  for (const double value : reader.Read(*fitted, kFirst).values) {
    largest = std::max(largest, std::abs(value));
  }
  if (largest > 0.0 && sigma > kFarFromPerfect * largest) return false;
  const TdxRecords all = reader.Read(*fitted);
  const std::vector<double> residuals = ReadBeside(reader, "resid", all);
  double sum = 0.0;
  for (std::size_t i = 0; i < residuals.size(); ++i) {
    const double response = all.values[i] + residuals[i];
    sum += response * response / static_cast<double>(residuals.size());
  }
  return sigma <= kPerfectFit * std::sqrt(sum);
}

FitStatistics StatisticsOf(const FitData& fit) {
  FitStatistics statistics{.n = fit.fitted.size(),
                           .df = fit.df,
                           .rss = fit.rss,
                           .r2 = fit.r2,
                           .adjusted_r2 = kUndefined,
                           .sigma = fit.sigma,
                           .f = kUndefined,
                           .f_df = kUndefined,
                           .f_p = kUndefined};
  const SumsOfSquares sums = SumsOf(fit.fitted);
  const std::optional<bool> has_intercept = HasIntercept(fit, sums);
  if (!has_intercept) return statistics;
  const double intercepts = *has_intercept ? 1.0 : 0.0;
  statistics.adjusted_r2 =
      1.0 - (static_cast<double>(statistics.n) - intercepts) / fit.df * (1.0 - fit.r2);
  statistics.f_df = static_cast<double>(fit.coefficients.size()) - intercepts;
  const double explained = *has_intercept ? sums.about_mean : sums.about_zero;
  statistics.f = explained / statistics.f_df / (fit.rss / fit.df);
  statistics.f_p = FUpperTail(statistics.f, statistics.f_df, fit.df);
  return statistics;
}

FitData ReadFit(TdxReader& reader) {
  FitData fit;
  fit.header = reader.Header();
  fit.r2 = Scalar(reader, "r2");
  fit.rss = Scalar(reader, "rss");
  fit.df = Scalar(reader, "df");
  fit.sigma = Scalar(reader, "sigma");
  fit.resvar = Scalar(reader, "resvar");
  fit.coefficients = ReadCoefficients(reader, kUsualLevel);
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
