#include "tavolite/models/glpk_objective.h"

#include <utility>

#include "base/input_error.h"

namespace host {
namespace {

Objective FindObjective(glp_prob* problem) {
  Objective objective;
  objective.name = NameOrEmpty(glp_get_obj_name(problem));
  if (glp_get_obj_dir(problem) != GLP_MIN)
    throw InputError("the objective must be minimized: write `minimize`");
  if (glp_get_obj_coef(problem, 0) != 0.0) {
    throw InputError("the objective " + objective.name +
                     " has a constant term: it must be one variable alone");
  }
  for (int j = 1; j <= glp_get_num_cols(problem); ++j) {
    const double coefficient = glp_get_obj_coef(problem, j);
    if (coefficient == 0.0) continue;
    const std::string column = NameOrEmpty(glp_get_col_name(problem, j));
    if (objective.column != 0) {
      throw InputError("the objective " + objective.name +
                       " has more than one variable: it must be one variable alone, with the "
                       "coefficient 1");
    }
    if (coefficient != 1.0) {
      throw InputError("the objective " + objective.name + " has the variable " + column +
                       " with a coefficient other than 1");
    }
    objective.column = j;
  }
  return objective;
}

// The first of `name`, `name_`, `name__` ... that no row or column has.
template <class IsTaken>
std::string FreeName(std::string name, IsTaken is_taken) {
  while (is_taken(name.c_str())) name += '_';
  return name;
}

}  // namespace

Objective FindMathProgObjective(glp_prob* problem) {
  Objective objective = FindObjective(problem);
  if (objective.name.empty()) {
    throw InputError("the model has no objective: it needs one like `minimize objective: rss;`");
  }
  for (int i = 1; i <= glp_get_num_rows(problem) && objective.row == 0; ++i) {
    if (NameOrEmpty(glp_get_row_name(problem, i)) == objective.name) objective.row = i;
  }
  if (objective.row == 0) throw InputError("the objective " + objective.name + " has no row");
  if (objective.column == 0) {
    throw InputError("the objective " + objective.name +
                     " has no variable: it must be one variable alone, with the coefficient 1");
  }
  return objective;
}

Objective RestoreObjective(GlpkSession& session, glp_prob* problem, ReaderNotes& notes) {
  Objective objective = FindObjective(problem);
  session.Run([&] { glp_create_index(problem); });
  const auto row_taken = [&](const char* name) { return glp_find_row(problem, name) != 0; };
  const auto column_taken = [&](const char* name) { return glp_find_col(problem, name) != 0; };
  if (objective.column == 0) {
    const std::string name = FreeName("rss", column_taken);
    session.Run([&] {
      objective.column = glp_add_cols(problem, 1);
      glp_set_col_name(problem, objective.column, name.c_str());
      glp_set_col_bnds(problem, objective.column, GLP_FR, 0.0, 0.0);
    });
    notes.notes.push_back("the objective is empty: the variable " + name +
                          " was added as objective");
  }
  if (objective.name.empty()) objective.name = "objective";
  objective.name = FreeName(objective.name, row_taken);
  return objective;
}

}  // namespace host
