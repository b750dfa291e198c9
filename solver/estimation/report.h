// The printed regression table, in the manner of statistics packages. Lines have no trailing
// blanks.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "regression/regression_data.h"
#include "regression/regression_result.h"

namespace linfit {

// "***" below 0.001, "**" below 0.01, "*" below 0.05, "." below 0.1 (in single precision), else
// blank. A value equal to a threshold gets the weaker code.
[[nodiscard]] std::string_view SignificanceCode(double p_value);

// The lines from the table's heading to the R squared.
[[nodiscard]] std::vector<std::string> ReportLines(const RegressionData& data,
                                                   const RegressionResult& result);

// The last line, that of the F test.
[[nodiscard]] std::string FTestLine(const RegressionData& data, const RegressionResult& result);

}  // namespace linfit
