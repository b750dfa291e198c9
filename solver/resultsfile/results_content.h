// What the results file holds: thirteen parameter symbols in a fixed order, and the records of each
// in a fixed order. Nothing here knows of the library that writes them; a writer takes the pieces:
//
//   struct Writer {
//     void Start(const SymbolHead& symbol);            // a symbol begins
//     void Record(const KeyList& keys, double value);  // its records, one by one
//     void Done(const SymbolHead& symbol);             // its end
//   };
//
// Kc is the number of keys of a coefficient and Ko that of an observation (`KeyShape`):
//
//   symbol                   keys of a record                      order of the records
//   r2 rss df sigma resvar   none                                  one record
//   estimate se tval pval    coefficient (Kc)                      j
//   resid fitted             observation (Ko)                      i
//   covar                    coefficient i, coefficient j (2 Kc)   i, then j
//   confint                  level, coefficient, bound (Kc + 2)    j, then level, LO before UP
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "numerics/confidence.h"
#include "numerics/studin.h"
#include "regression/outcome.h"
#include "regression/regression_data.h"
#include "regression/regression_result.h"
#include "resultsfile/key_shape.h"

namespace linfit {

struct SymbolHead {
  std::string_view name;
  std::string_view text;
  int dimension;
};

// The keys of one record. The texts are the name table's own.
struct KeyList {
  std::array<std::string_view, kMaxLabels> keys;
  std::size_t count = 0;

  void Add(std::string_view key) { keys[count++] = key; }
  [[nodiscard]] std::span<const std::string_view> Texts() const {
    return std::span(keys).first(count);
  }
};

// The elements that a vector is keyed by: all coefficients or all observations.
struct Elements {
  const NameTable& names;
  const KeyShape& shape;

  [[nodiscard]] std::size_t Count() const { return names.count; }
  void AddKeys(std::size_t element, KeyList& list) const {
    if (shape.key_mode == KeyMode::kFlat) {
      list.Add(FlatKey(names, element));
      return;
    }
    for (int k = 0; k < shape.key_dimension; ++k) {
      list.Add(LabelOf(names, element, k));
    }
  }
};

struct ResultsContent {
  Elements coefficients;
  Elements observations;
  const RegressionResult& result;
  ErrorMonitor& monitor;  // of the quantiles, which are computed on the way
};

template <class Writer>
void PutScalar(Writer& writer, std::string_view name, std::string_view text, double value) {
  const SymbolHead symbol{name, text, 0};
  writer.Start(symbol);
  writer.Record(KeyList{}, value);
  writer.Done(symbol);
}

template <class Writer>
void PutVector(Writer& writer, std::string_view name, std::string_view text,
               const Elements& elements, std::span<const double> values) {
  const SymbolHead symbol{name, text, elements.shape.key_dimension};
  writer.Start(symbol);
  KeyList keys;
  for (std::size_t i = 0; i < elements.Count(); ++i) {
    keys.count = 0;
    elements.AddKeys(i, keys);
    writer.Record(keys, values[i]);
  }
  writer.Done(symbol);
}

// `values` is column-major, as many rows and columns as there are elements.
template <class Writer>
void PutMatrix(Writer& writer, std::string_view name, std::string_view text,
               const Elements& elements, std::span<const double> values) {
  const SymbolHead symbol{name, text, 2 * elements.shape.key_dimension};
  writer.Start(symbol);
  const std::size_t p = elements.Count();
  KeyList keys;
  for (std::size_t i = 0; i < p; ++i) {
    keys.count = 0;
    elements.AddKeys(i, keys);
    const std::size_t own_keys = keys.count;
    for (std::size_t j = 0; j < p; ++j) {
      keys.count = own_keys;
      elements.AddKeys(j, keys);
      writer.Record(keys, values[i + j * p]);
    }
  }
  writer.Done(symbol);
}

// Ends in the middle of the symbol when there is no quantile.
template <class Writer>
[[nodiscard]] Failure PutConfidenceIntervals(Writer& writer, const ResultsContent& content) {
  const Elements& coefficients = content.coefficients;
  const RegressionResult& result = content.result;
  const SymbolHead symbol{"confint", "confidence intervals", coefficients.shape.key_dimension + 2};
  writer.Start(symbol);
  for (std::size_t j = 0; j < coefficients.Count(); ++j) {
    for (const ConfidenceLevel& level : kConfidenceLevels) {
      int ifault = 0;
      const double t = ConfidenceQuantile(level.level, result.df, ifault, content.monitor);
      if (const std::string_view text = StudinFailureText(ifault); !text.empty()) {
        return std::string(text);
      }
      KeyList keys;
      keys.Add(level.label);
      coefficients.AddKeys(j, keys);
      keys.Add("LO");
      writer.Record(keys, result.estimate[j] + t * result.se[j]);
      keys.keys[keys.count - 1] = "UP";
      writer.Record(keys, result.estimate[j] - t * result.se[j]);
    }
  }
  writer.Done(symbol);
  return {};
}

// Puts all symbols, up to the first failure.
template <class Writer>
[[nodiscard]] Failure PutAllSymbols(Writer& writer, const ResultsContent& content) {
  const RegressionResult& result = content.result;
  const Elements& coefficients = content.coefficients;
  const Elements& observations = content.observations;
  PutScalar(writer, "r2", "R Squared", result.r2);
  PutScalar(writer, "rss", "Residual sum of squares", result.rss);
  PutScalar(writer, "df", "Degrees of freedom", static_cast<double>(result.df));
  PutScalar(writer, "sigma", "Standard error", result.sigma);
  PutScalar(writer, "resvar", "Residual variance", result.resvar);
  PutVector(writer, "estimate", "Estimated coefficients", coefficients, result.estimate);
  PutVector(writer, "se", "Standard errors", coefficients, result.se);
  PutVector(writer, "tval", "t values", coefficients, result.tval);
  PutVector(writer, "pval", "p values", coefficients, result.pval);
  PutVector(writer, "resid", "residuals", observations, result.resid);
  PutVector(writer, "fitted", "fitted values for dependent variable", observations, result.fitted);
  PutMatrix(writer, "covar", "variance-covariance matrix", coefficients, result.covar);
  return PutConfidenceIntervals(writer, content);
}

}  // namespace linfit
