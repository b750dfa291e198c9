// From the file of a table to a model.
#pragma once

#include "tavolite/command/options.h"
#include "tavolite/tables/make_model.h"

namespace host {

// Opens the input, a text table or a database with a query, and reads it. Throws InputError.
TableModel ReadTable(const SolveOptions& options);

}  // namespace host
