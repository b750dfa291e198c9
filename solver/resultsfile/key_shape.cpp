#include "resultsfile/key_shape.h"

#include <array>
#include <charconv>
#include <cstddef>

namespace linfit {

namespace {

constexpr std::string_view kInterceptKey = "Intercept";

// Takes one element's dimension into the scan; false at the first difference, which ends the scan.
bool JoinDimension(KeyShape& shape, std::int32_t dimension) {
  if (shape.common_dimension == -1) {
    shape.common_dimension = dimension;
  } else if (dimension != shape.common_dimension) {
    shape.common_dimension = -1;
    return false;
  }
  return true;
}

// False at the first difference. What comes after it isn't looked at, so that an intercept behind
// it, as the last column is, stays unknown and gets a key like any other column.
bool ScanCoefficientDimensions(const NameTable& names, KeyShape& shape) {
  for (const NameGroup& group : names.groups) {
    if (group.dimension == kInterceptDimension) {
      shape.intercept_column = static_cast<std::int32_t>(group.first_record) + 1;
    } else if (!JoinDimension(shape, group.dimension)) {
      return false;
    }
  }
  return true;
}

// True when all elements but the intercept belong to one symbol.
bool ScanSymbols(const NameTable& names, KeyShape& shape) {
  for (const NameGroup& group : names.groups) {
    if (group.dimension == kInterceptDimension) continue;
    if (shape.common_symbol_number == -1) {
      shape.common_symbol_number = group.symbol_number;
      shape.common_symbol_name = SymbolName(names, group.first_record);
    } else if (group.symbol_number != shape.common_symbol_number) {
      shape.common_symbol_number = -1;
      return false;
    }
  }
  return true;
}

void SetStructured(KeyShape& shape) {
  shape.key_mode = KeyMode::kStructured;
  shape.key_dimension = shape.common_dimension;
}

void SetFlat(KeyShape& shape) {
  shape.key_mode = KeyMode::kFlat;
  shape.key_dimension = 1;
}

void SetNumberedKey(NameTable& names, std::size_t i, char prefix) {
  std::array<char, 24> key;
  key[0] = prefix;
  const auto end = std::to_chars(key.data() + 1, key.data() + key.size(), i + 1).ptr;
  SetFlatKey(names, i, {key.data(), static_cast<std::size_t>(end - key.data())});
}

void SetCoefficientFlatKeys(NameTable& names, const KeyShape& shape) {
  for (std::size_t j = 0; j < names.count; ++j) {
    if (static_cast<std::int32_t>(j) + 1 == shape.intercept_column) {
      SetFlatKey(names, j, kInterceptKey);
    } else if (shape.common_dimension != 0) {
      SetNumberedKey(names, j, 'x');
    } else {
      // A copy: setting the key may move the table's texts.
      SetFlatKey(names, j, std::string(SymbolName(names, j)));
    }
  }
}

bool CoefficientsAreStructured(const NameTable& names, KeyShape& shape) {
  if (!ScanCoefficientDimensions(names, shape)) return false;
  if (2 * shape.common_dimension > kMaxLabels) {
    shape.common_dimension = -1;
  }
  if (shape.common_dimension == -1) return false;
  return ScanSymbols(names, shape) && shape.common_dimension != 0;
}

}  // namespace

void AnalyseCoefficientKeys(NameTable& names, KeyShape& shape) {
  if (!CoefficientsAreStructured(names, shape)) {
    SetFlat(shape);
    SetCoefficientFlatKeys(names, shape);
    return;
  }
  SetStructured(shape);
  if (shape.intercept_column > 0) {
    RelabelRecord(names, static_cast<std::size_t>(shape.intercept_column - 1),
                  shape.common_dimension, shape.common_symbol_number, shape.common_symbol_name,
                  kInterceptKey);
  }
}

Failure AnalyseObservationKeys(NameTable& names, KeyShape& shape) {
  bool structured = true;
  for (const NameGroup& group : names.groups) {
    if (group.dimension == kInterceptDimension) {
      return "d=-1 internal error";
    }
    if (!JoinDimension(shape, group.dimension)) {
      structured = false;
      break;
    }
  }
  structured = structured && shape.common_dimension != -1 && ScanSymbols(names, shape);
  if (structured && shape.common_dimension != 0) {
    SetStructured(shape);
    return {};
  }
  SetFlat(shape);
  for (std::size_t i = 0; i < names.count; ++i) {
    SetNumberedKey(names, i, 'r');
  }
  return {};
}

}  // namespace linfit
