// From the model's file name and the command's options to a model.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "instance/model.h"
#include "tavolite/models/glpk_model.h"
#include "tavolite/tables/table_plan.h"

namespace host {

struct FrontEndOptions {
  std::filesystem::path model;
  std::string format;  // one of kFormats, empty: by the file's suffix
  std::filesystem::path data;
  std::optional<DataSide> data_side;
  bool split_underscores = false;
  TableOptions table;
  std::string query;  // that gives the table, for SQLite files
};

struct FrontEndResult {
  Model model;
  ReaderNotes notes;
  std::string option_file;  // for tables: an option file of the solver that fits them
};

// Names of the model formats, for the command line.
std::vector<std::string> FormatNames();

// Reads the model; `scratch` is an existing directory for temporary files. Throws InputError when
// the format can't be told or does not go with an option, or the model can't be read.
FrontEndResult ReadModel(const FrontEndOptions& options, const std::filesystem::path& scratch);

}  // namespace host
