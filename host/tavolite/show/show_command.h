// `tavolite show FILE [SYMBOL]`: prints what a TDX file holds.
#pragma once

#include <CLI/CLI.hpp>
#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <string>

namespace host {

struct ShowOptions {
  std::string file{};            // UTF-8
  std::string symbol{};          // empty: an overview of the file
  std::string format = "table";  // table, csv or json
  std::int64_t limit = -1;       // records of a symbol, coefficients of the overview; -1: all
  std::string output{};          // UTF-8; empty: standard output
  std::size_t width = 0;         // columns of the terminal; 0: found out
};

CLI::App* AddShowCommand(CLI::App& app, ShowOptions& options);

// Returns the exit status: 0, or 2 after one line on `err`.
int RunShow(const ShowOptions& options, std::ostream& out, std::ostream& err);

}  // namespace host
