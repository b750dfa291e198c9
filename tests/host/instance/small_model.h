// A small model for tests: 3 observations, 2 coefficients, names that need quotes.
#pragma once

#include <memory>
#include <vector>

#include "instance/model.h"

namespace testing_support {

inline void AddName(host::ElementNames& names, std::int32_t symbol,
                    const std::vector<std::int32_t>& labels) {
  names.symbol.push_back(symbol);
  names.label.insert(names.label.end(), labels.begin(), labels.end());
  names.first.push_back(static_cast<std::int32_t>(names.label.size()));
}

inline host::Model SmallModel() {
  const auto rows = [](std::vector<std::int32_t> list) {
    return std::make_shared<const std::vector<std::int32_t>>(std::move(list));
  };
  host::Model model;
  model.name = "small";
  model.row_types = {host::RowType::kFree, host::RowType::kEqual, host::RowType::kEqual,
                     host::RowType::kLess};
  model.rhs = {0.0, -1.5, -2.5, 1e-300};
  // The last two hold equal lists of row numbers that are not one object.
  model.columns = {{rows({0}), {1.0}},
                   {rows({1, 2, 3}), {-1.0, -2.0, -3.0}},
                   {rows({1, 2, 3}), {-4.0, 0.5, -1e300}, 0.0, 7.0}};
  model.dictionary.symbols = {"objective", "fit", "rss", "coeff"};
  model.dictionary.labels = {"a", "it's", "with blank", "1970", "Zürich"};
  AddName(model.row_names, 0, {});
  AddName(model.row_names, 1, {0});
  AddName(model.row_names, 1, {1});
  AddName(model.row_names, 1, {2});
  AddName(model.column_names, 2, {});
  AddName(model.column_names, 3, {3, 0});
  AddName(model.column_names, 3, {4, 1});
  return model;
}

}  // namespace testing_support
