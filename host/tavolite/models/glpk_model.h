// From a model file that GLPK reads to a model that the solver takes.
//
// The solver expects one free row that holds the objective variable alone, in its place among the
// rows, and rows with the data on the left, `y - sum x*b = 0`: entries -x and right-hand side -y.
#pragma once

#include <filesystem>

#include "instance/model.h"
#include "tavolite/command/options.h"
#include "tavolite/models/reader_notes.h"

namespace host {

// Reads the input of a format that is no table; `scratch` is an existing directory for temporary
// files. Throws InputError for a file that can't be read and for a model that no instance can hold:
// integer variables, rows with two bounds, a direction other than minimizing, an objective that is
// not one variable with the coefficient 1 (in MPS and LP files it may be empty too: it is added
// then). What else is wrong for a regression is the solver's to refuse.
Model ReadGlpkModel(const SolveOptions& options, const std::filesystem::path& scratch,
                    ReaderNotes& notes);

}  // namespace host
