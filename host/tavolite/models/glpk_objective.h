// Where the objective of a problem stands, and whether it is one variable alone.
#pragma once

#include <string>

#include "tavolite/models/glpk_session.h"
#include "tavolite/models/reader_notes.h"

namespace host {

// Where the objective stands in the problem, one-based; 0 is "nowhere".
struct Objective {
  int row = 0;
  int column = 0;
  std::string name;
};

// MathProg keeps the objective among the rows. Throws InputError for one that is not a single
// variable with the coefficient 1, to be minimized.
Objective FindMathProgObjective(glp_prob* problem);

// MPS and LP readers leave the objective out of the rows: it gets a name that no row has, and its
// row is 0. An empty objective is given a variable. Throws InputError as above.
Objective RestoreObjective(GlpkSession& session, glp_prob* problem, ReaderNotes& notes);

// GLPK's names may be null.
inline std::string NameOrEmpty(const char* name) {
  return name == nullptr ? "" : name;
}

}  // namespace host
