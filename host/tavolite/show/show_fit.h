// The parts of a regression as one table each, made for programs as much as for people.
//
//   coefficients  name, estimate, std_error, t, p, lower, upper; a row each
//   fit           n, df, rss, r2, adjusted_r2, sigma, f, f_df, p; one row
//
// For people the numbers have seven digits, and what has to be known of the fit stands above. JSON
// is {"level":..., "coefficients":[{"name":..., ...}, ...]} and {"n":..., ...}.
#pragma once

#include <string>

#include "tavolite/command/options.h"
#include "tdx/tdx_reader.h"

namespace host {

// What the file says of its run and what has to be known of the fit, line by line.
void PrintRunFacts(TdxReader& reader, std::string& text);

// Throws FileError where the file holds no regression.
std::string CoefficientsText(const ShowOptions& options, TdxReader& reader);
std::string FitText(const ShowOptions& options, TdxReader& reader);

}  // namespace host
