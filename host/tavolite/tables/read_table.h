// From the file of a table to a model.
#pragma once

#include <filesystem>

#include "tavolite/command/options.h"
#include "tavolite/tables/make_model.h"

namespace host {

// Opens the input, a text table or a database with a query, and reads it. The matrix of a long one
// goes to the file of arrays of `instance`, where the model is to be written. Throws InputError and
// FileError.
TableModel ReadTable(const SolveOptions& options, const std::filesystem::path& instance);

}  // namespace host
