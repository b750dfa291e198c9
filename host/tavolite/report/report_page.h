// A fit as one HTML page that needs nothing else: numbers and tables as plain HTML, figures drawn
// by the page's own script. docs/report.md describes it.
#pragma once

#include <limits>
#include <string>
#include <vector>

#include "tdx/tdx_reader.h"

namespace host {

// What the solve knows of the fit beyond its numbers. What is missing is taken from the results
// file, where that has it.
struct FitOrigin {
  std::string model;
  std::vector<std::string> warnings;
  std::vector<std::string> notes;
  double condition = std::numeric_limits<double>::quiet_NaN();  // of the scaled design
  std::string response{};
};

// Throws FileError where the file holds no regression.
std::string ReportPage(TdxReader& reader, const FitOrigin& known = {});

}  // namespace host
