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
  double low = 0.0;  // 95 % limits; NaN where the file has none
  double high = 0.0;
};

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

// Throws FileError where the file is damaged or holds no regression.
FitData ReadFit(TdxReader& reader);

// An observation's or a coefficient's labels as one text.
std::string LabelText(std::span<const std::string> keys);

}  // namespace host
