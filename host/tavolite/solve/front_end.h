// From a model or a table to a model that the solver takes.
#pragma once

#include <filesystem>
#include <string>

#include "instance/model.h"
#include "tavolite/command/options.h"
#include "tavolite/models/reader_notes.h"

namespace host {

// The instance of a solve, in its scratch directory.
inline constexpr const char* kInstanceName = "instance.db";

struct FrontEndResult {
  Model model;
  ReaderNotes notes;
};

// Reads the input; `scratch` is an existing directory for temporary files. Throws InputError when
// it can't be read.
FrontEndResult ReadModel(const SolveOptions& options, const std::filesystem::path& scratch);

}  // namespace host
