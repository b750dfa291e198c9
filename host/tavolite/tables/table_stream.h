// Where a text table comes from: a file, a file that gzip has packed, or standard input.
#pragma once

#include <cstdint>
#include <istream>
#include <memory>

#include "tavolite/command/options.h"

namespace host {

struct TableStream {
  std::unique_ptr<std::istream> stream;
  std::uint64_t size = 0;  // bytes of the table, 0 when not known
};

// Reading the stream throws InputError for a packed file that is damaged. Throws InputError.
TableStream OpenTable(const SolveOptions& options);

}  // namespace host
