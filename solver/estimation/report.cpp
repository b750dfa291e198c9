#include "estimation/report.h"

#include "estimation/statistics.h"
#include "text/columns.h"
#include "text/real_text.h"
#include "text/trimmed.h"

namespace linfit {
namespace {

constexpr std::size_t kNameColumns = 17;
constexpr std::size_t kNumberColumns = 13;

std::string ReportNumber(double value) {
  return RealField(value, kNumberColumns, 5);
}

std::string Heading() {
  std::string line = RightJustified("Parameter", kNameColumns);
  for (const char* text : {"Estimate", "Std. Error", "t value", "Pr(>|t|)"}) {
    line.append(" ").append(RightJustified(text, kNumberColumns));
  }
  return line;
}

std::string CoefficientLine(const RegressionData& data, const RegressionResult& result,
                            std::size_t j) {
  std::string line = RightJustified(DisplayName(data.CoefficientNames, j), kNameColumns);
  for (const double value : {result.estimate[j], result.se[j], result.tval[j], result.pval[j]}) {
    line.append(" ").append(ReportNumber(value));
  }
  line.append(" ").append(SignificanceCode(result.pval[j]));
  return std::string(Trimmed(line));
}

}  // namespace

std::string_view SignificanceCode(double p_value) {
  if (p_value < 0.001) return "***";
  if (p_value < 0.01) return "**";
  if (p_value < 0.05) return "*";
  // The last threshold is a single-precision number: 0.10000000149011612.
  if (p_value < static_cast<double>(0.1F)) return ".";
  return " ";
}

std::vector<std::string> ReportLines(const RegressionData& data, const RegressionResult& result) {
  std::vector<std::string> lines{Heading()};
  for (std::size_t j = 0; j < result.estimate.size(); ++j) {
    lines.push_back(CoefficientLine(data, result, j));
  }
  lines.emplace_back("     ---");
  lines.emplace_back("     Signif. codes:  0 `***' 0.001 `**' 0.01 `*' 0.05 `.' 0.1 ` ' 1");
  lines.emplace_back();
  lines.emplace_back("Estimation statistics:");
  lines.push_back("Cases: " + std::to_string(data.n) + "  Parameters: " + std::to_string(data.p) +
                  "  Residual sum of squares: " + ReportNumber(result.rss));
  lines.push_back("Residual standard error: " + ReportNumber(result.sigma) + "   on  " +
                  std::to_string(result.df) + " degrees of freedom");
  lines.push_back("Multiple R-squared: " + ReportNumber(result.r2) +
                  "  Adjusted R-squared: " + ReportNumber(result.adjusted_r2));
  return lines;
}

std::string FTestLine(const RegressionData& data, const RegressionResult& result) {
  return "F statistic: " + ReportNumber(result.f_statistic) + " on " +
         std::to_string(NumeratorDegrees(data)) + " and " + std::to_string(result.df) +
         " DF, p-value: " + ReportNumber(result.f_pvalue);
}

}  // namespace linfit
