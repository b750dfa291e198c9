#include "tavolite/command/table_arguments.h"

#include "tavolite/tables/table_model.h"

namespace host {

void AddTableOptions(CLI::App& solve, TableArguments& arguments) {
  const auto add_list = [&](const char* name, std::vector<std::string>& list, const char* help) {
    solve.add_option(name, list, help)
        ->allow_extra_args(false)
        ->type_name("COLUMN,...")
        ->group("Tables");
  };
  solve.add_option("--response", arguments.response, "The dependent column")
      ->type_name("COLUMN")
      ->group("Tables");
  add_list("--regressors", arguments.regressors,
           "The independent columns (default: all that are nothing else)");
  add_list("--drop", arguments.drop, "Columns to leave out");
  add_list("--label", arguments.labels, "Columns that name the rows (default: the row's number)");
  add_list("--factor", arguments.factors,
           "Columns of levels: one coefficient for each level but the first");
  CLI::Option* always =
      solve.add_flag("--intercept", arguments.intercept, "Add an intercept in any case")
          ->group("Tables");
  CLI::Option* never = solve.add_flag("--no-intercept", arguments.no_intercept, "Add none")
                           ->group("Tables")
                           ->excludes(always);
  for (CLI::Option* option : {always, never}) {
    option->excludes(solve.get_option("--options"));
  }
  solve
      .add_option("--separator", arguments.separator,
                  "What separates fields: one character, or tab (default: by the suffix)")
      ->group("Tables");
  solve.add_option("--query", arguments.query, "The query that gives the table, for SQLite files")
      ->type_name("SQL")
      ->group("Tables");
}

void SetTableOptions(const TableArguments& arguments, FrontEndOptions& options) {
  options.query = arguments.query;
  TableOptions& table = options.table;
  table.response = arguments.response;
  table.regressors = arguments.regressors;
  table.drop = arguments.drop;
  table.labels = arguments.labels;
  table.factors = arguments.factors;
  table.intercept = arguments.intercept      ? Intercept::kAlways
                    : arguments.no_intercept ? Intercept::kNever
                                             : Intercept::kAutomatic;
  if (!arguments.separator.empty()) table.separator = ParseSeparator(arguments.separator);
}

}  // namespace host
