#include "tdx/record_batch.h"

#include "tdx/tdx_schema.h"

namespace host {

void LabelRows::Result(sqlite3_context* context, std::size_t row, int) const {
  const std::size_t begin = row == 0 ? 0 : ends[row - 1];
  sqlite3_result_text(context, text.data() + begin, static_cast<int>(ends[row] - begin),
                      SQLITE_STATIC);
}

// One table serves symbols of every dimension.
std::string RecordRows::Declaration() {
  std::string columns = "value";
  for (int k = 1; k <= kMaxTdxDimension; ++k) columns += ", " + TdxLabelColumn(k);
  return "CREATE TABLE x(" + columns + ")";
}

void RecordRows::Result(sqlite3_context* context, std::size_t row, int column) const {
  if (column == 0) {
    sqlite3_result_double(context, values[row]);  // an undefined value becomes NULL
  } else {
    sqlite3_result_int(context, labels[row * dimension + static_cast<std::size_t>(column) - 1]);
  }
}

}  // namespace host
