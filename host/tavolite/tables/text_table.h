// Reading a text table: blocks of whole records, parsed by several threads, put together in order.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <istream>
#include <memory>
#include <string>

#include "tavolite/tables/plan.h"
#include "tavolite/tables/rows.h"

namespace host {

struct TextSource {
  std::istream* stream = nullptr;
  std::string name;        // for messages
  std::uint64_t size = 0;  // bytes, 0 when not known
  std::size_t block = 0;   // bytes read at a time; 0: a good size
  unsigned threads = 0;    // 0: as many as there are processors, up to four
  char separator = ',';
  bool progress = false;  // on standard error, where that is a terminal and reading takes long
};

// A stream that is read once, from its start to its end. Both functions throw InputError.
class TextTable {
 public:
  explicit TextTable(TextSource source);
  TextTable(const TextTable&) = delete;
  TextTable& operator=(const TextTable&) = delete;
  ~TextTable();

  TableHeader ReadHeader();
  // Everything behind the header. The error is the first one in the order of the lines, whatever
  // thread has met it.
  TableRows ReadRows(const TablePlan& plan, const std::filesystem::path& instance);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace host
