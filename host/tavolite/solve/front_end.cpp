#include "tavolite/solve/front_end.h"

#include <memory>
#include <utility>

#include "base/input_error.h"
#include "base/text_file.h"
#include "tavolite/command/input_format.h"
#include "tavolite/models/glpk_model.h"
#include "tavolite/system/large_stack.h"
#include "tavolite/tables/read_table.h"

namespace host {

namespace {

// GLPK follows nested expressions and parameters that refer to each other by recursion.
FrontEndResult ReadDeepModel(const SolveOptions& options, const std::filesystem::path& scratch) {
  auto result = std::make_unique<FrontEndResult>();
  if (RunOnLargeStack([&] { result->model = ReadGlpkModel(options, scratch, result->notes); })) {
    return std::move(*result);
  }
  // The thread may have stopped anywhere: what it works on can't even be freed.
  (void)result.release();
  throw InputError(Utf8(options.input) + ": the model nests too deeply or refers to itself");
}

}  // namespace

FrontEndResult ReadModel(const SolveOptions& options, const std::filesystem::path& scratch) {
  if (!IsTable(options.format)) return ReadDeepModel(options, scratch);
  TableModel read = ReadTable(options, scratch / kInstanceName);
  FrontEndResult result;
  result.model = std::move(read.model);
  result.notes.notes = std::move(read.notes);
  return result;
}

}  // namespace host
