// Reading a text table: blocks of whole records, parsed by several threads, put together in order.
#pragma once

#include <cstddef>
#include <cstdint>
#include <istream>
#include <string>

#include "tavolite/tables/table_plan.h"
#include "tavolite/tables/table_rows.h"

namespace host {

struct TableSource {
  std::istream* stream = nullptr;
  std::string name;        // for messages
  std::uint64_t size = 0;  // bytes, 0 when not known
  std::size_t block = 0;   // bytes read at a time; 0: a good size
  unsigned threads = 0;    // 0: as many as there are processors, up to four
  char separator = ',';
  bool progress = false;  // on standard error, where that is a terminal and reading takes long
};

struct Table {
  TablePlan plan;
  TableData data;
};

// Reads the stream once. Throws InputError, with the first error in the order of the lines,
// whatever thread has met it.
Table ReadTextTable(const TableSource& source, const TableOptions& options);

}  // namespace host
