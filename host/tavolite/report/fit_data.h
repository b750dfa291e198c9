// What a report needs of a results file.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "tdx/tdx_reader.h"

namespace host {

struct FitCoefficient {
  std::string name;  // its labels, separated by ", "
  double estimate = 0.0;
  double error = 0.0;
  double t = 0.0;
  double p = 0.0;
  double low = 0.0;  // confidence limits
  double high = 0.0;
  bool is_added_intercept = false;  // that the solver has added
};

// Probabilities below are stored as zero, in single precision.
inline constexpr double kSmallestProbability = 1e-38;
inline constexpr double kUsualLevel = 95.0;  // in percent

// Of a fit whose residual standard error is less than this part of the response's root mean square.
inline constexpr double kPerfectFit = 1e-13;
inline constexpr const char* kPerfectFitNote =
    "the fit is essentially perfect: standard errors and tests are rounding";

struct FitData {
  TdxHeader header;
  double r2 = 0.0;  // NaN where the file has no such symbol, like the next four
  double rss = 0.0;
  double df = 0.0;
  double sigma = 0.0;
  double resvar = 0.0;
  std::vector<FitCoefficient> coefficients;
  TdxRecords residuals;        // n records with the observations' labels
  std::vector<double> fitted;  // n
};

// What the fit comes to. Undefined is what the file does not tell.
struct FitStatistics {
  std::size_t n = 0;
  double df = 0.0;  // n less the number of coefficients
  double rss = 0.0;
  double r2 = 0.0;
  double adjusted_r2 = 0.0;
  double sigma = 0.0;
  double f = 0.0;
  double f_df = 0.0;  // the numerator's degrees of freedom; the denominator's are df
  double f_p = 0.0;
};

// Throws FileError where the file is damaged or holds no regression, like the next.
FitData ReadFit(TdxReader& reader);

// Limits for a level that the file does not hold are computed from estimate, error and degrees of
// freedom. `level` is in percent.
std::vector<FitCoefficient> ReadCoefficients(TdxReader& reader, double level);

// Whether kPerfectFitNote is to be said of it; false where the file holds no regression.
bool IsPerfectFit(TdxReader& reader);

// R-squared is about the mean when there is an intercept. Whether there is one shows in the
// coefficients' names or in the value of R-squared; where neither tells, what depends on it is
// undefined.
FitStatistics StatisticsOf(const FitData& fit);

// An observation's or a coefficient's labels as one text.
std::string LabelText(std::span<const std::string> keys);

}  // namespace host
