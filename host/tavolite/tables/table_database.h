// Tables that a query of an SQLite database gives.
#pragma once

#include <filesystem>

#include "tavolite/tables/table_plan.h"
#include "tavolite/tables/table_reader.h"

namespace host {

// Runs the options' query, one statement that only reads, on `file`, which is opened for reading.
// Values count as stored: NULL is missing, a text in a column of numbers is taken as in a text
// table. Throws InputError.
Table ReadQuery(const std::filesystem::path& file, const TableOptions& options, bool progress);

}  // namespace host
