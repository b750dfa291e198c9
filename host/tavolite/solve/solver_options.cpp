#include "tavolite/solve/solver_options.h"

#include "tavolite/solve/solve_files.h"
#include "tptdclib/option_table.h"

namespace host {

SolverOptions ReadSolverOptions(const ControlFile& control) {
  OptionTable table;
  if (control.option_file.empty() ||
      !table.ReadDefinition(control.system_directory / kDefinitionFile) ||
      !table.ReadParameterFile(control.option_file)) {
    return {};
  }
  return {table.Integer("ADD_CONSTANT_TERM"), table.Integer("MAXN"), table.Integer("MAXP"),
          table.Text("TDX_FILE_NAME")};
}

}  // namespace host
