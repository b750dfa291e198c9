// The tables of a report page, as HTML.
#pragma once

#include <string>

#include "tavolite/report/figure_data.h"

namespace host {

// Estimates with standard errors, t, p, stars and 95 % limits.
std::string CoefficientTable(const FitData& fit);
// Estimates and limits in units of their standard errors.
std::string IntervalTable(const FitData& fit);
// Tenths of the observations by fitted value: their residuals, or the spread of their residuals.
std::string ResidualGroupTable(const FigureData& figures);
std::string ScaleGroupTable(const FigureData& figures);
std::string QuantileTable(const FigureData& figures);
std::string HistogramTable(const FigureData& figures);
// Each row links to its observation's point by the attribute data-number.
std::string LargestTable(const FitData& fit, const FigureData& figures);

}  // namespace host
