// From a model file that GLPK reads to a model that the solver takes.
//
// The solver expects one free row that holds the objective variable alone, in its place among the
// rows, and rows with the data on the left, `y - sum x*b = 0`: entries -x and right-hand side -y.
#pragma once

#include <filesystem>
#include <optional>

#include "instance/model.h"
#include "tavolite/models/glpk_reader.h"

namespace host {

// On which side of the equality sign the model has its data: `y = sum x*b` or `sum x*b = y`.
enum class DataSide { kLeft, kRight };

struct ModelSource {
  std::filesystem::path model;
  std::filesystem::path data;     // MathProg data file, may be empty
  std::filesystem::path scratch;  // an existing directory for temporary files
  ModelFormat format = ModelFormat::kMathProg;
  std::optional<DataSide> data_side;  // default: left for MathProg, right for the others
  bool split_underscores = false;     // MPS and LP: name_1 is `name` with the label 1
};

// Throws InputError for a file that can't be read and for a model that no instance can hold:
// integer variables, rows with two bounds, a direction other than minimizing, an objective that is
// not one variable with the coefficient 1 (in MPS and LP files it may be empty too: it is added
// then). What else is wrong for a regression is the solver's to refuse.
Model ReadGlpkModel(const ModelSource& source, ReaderNotes& notes);

}  // namespace host
