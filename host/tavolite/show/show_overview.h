// What a TDX file holds, as text: its symbols, its scalars, and the coefficients with their
// confidence intervals.
//
//   table  all three; the coefficients with seven digits and as many confidence levels as fit
//   csv    the list of symbols
//   json   {"file":{...}, "symbols":[...], "scalars":{...}, "coefficients":[...]}
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "tavolite/show/show_text.h"
#include "tdx/tdx_reader.h"

namespace host {

struct ConfidenceInterval {
  std::string level;  // "95%"
  double lower = 0.0;
  double upper = 0.0;
};

struct CoefficientRow {
  std::vector<std::string> keys;
  std::array<double, 4> values{};  // of kCoefficientSymbols
  std::vector<ConfidenceInterval> intervals;
};

struct Overview {
  std::vector<std::pair<std::string, double>> scalars;
  // Empty when the file has no regression's coefficients; the first `limit` ones.
  std::vector<CoefficientRow> coefficients;
};

inline constexpr std::array<const char*, 4> kCoefficientSymbols{"estimate", "se", "tval", "pval"};
inline constexpr std::size_t kProbability = 3;  // the place of "pval"

Overview ReadOverview(TdxReader& reader, std::int64_t limit);

void PrintOverviewTable(TdxReader& reader, const Overview& overview, std::size_t width,
                        std::string& text);
void PrintOverviewCsv(const TdxReader& reader, CsvCells cells, std::string& text);
void PrintOverviewJson(const TdxReader& reader, const Overview& overview, std::string& text);

}  // namespace host
