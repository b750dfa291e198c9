// Which columns of a table are used, and as what.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "tavolite/command/options.h"
#include "tavolite/tables/number.h"

namespace host {

// What a table's first record says.
struct TableHeader {
  std::vector<std::string> names;  // of the columns, in order
  std::string where;               // stands in front of messages about them
};

// The uses of one column; a number is the position among the columns of that use, -1 for none.
struct ColumnUse {
  std::string name;
  int number = -1;
  int text = -1;  // labels come first, then factors
};

struct Regressor {
  std::string name;
  bool factor = false;
  int position = -1;  // among the numbers or among the factors
};

struct TablePlan {
  std::vector<ColumnUse> columns;     // one per column of the table
  std::vector<Regressor> regressors;  // in the order of the coefficients
  std::vector<std::string> notes;
  int response = -1;  // among the numbers
  int numbers = 0;
  int labels = 0;
  int factors = 0;

  [[nodiscard]] int Texts() const { return labels + factors; }
  // An empty label makes a row incomplete, an empty or NA factor too.
  [[nodiscard]] bool IsLabel(int text) const { return text < labels; }
};

// Throws InputError.
TablePlan MakeTablePlan(const TableHeader& header, const TableOptions& options);

// What is wrong with a text as a label, in words that follow "label "; empty when nothing is.
std::string LabelFault(std::string_view text);

// Why a field of a used column is refused: as a number of a kind other than a finite one, or as a
// label or level (empty when it is not).
std::string NumberFault(const ColumnUse& use, std::string_view text, NumberKind kind);
std::string TextFault(const ColumnUse& use, std::string_view text);

}  // namespace host
