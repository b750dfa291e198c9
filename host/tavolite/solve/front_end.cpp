#include "tavolite/solve/front_end.h"

#include <utility>

#include "tavolite/command/input_format.h"
#include "tavolite/models/glpk_model.h"
#include "tavolite/tables/read_table.h"

namespace host {

FrontEndResult ReadModel(const SolveOptions& options, const std::filesystem::path& scratch) {
  FrontEndResult result;
  if (IsTable(options.format)) {
    TableModel read = ReadTable(options);
    result.model = std::move(read.model);
    result.notes.notes = std::move(read.notes);
    result.option_file = std::move(read.option_file);
  } else {
    result.model = ReadGlpkModel(options, scratch, result.notes);
  }
  return result;
}

}  // namespace host
