// The writing sequence of the results file.
#pragma once

namespace linfit {

struct SolverRun;

// Creates the results-file object, writes the library version and the file name to the status file
// and the log, decides the key shapes, and writes the thirteen symbols. Returns after the file is
// closed; every failure ends the run (`FatalStop`) and leaves the file as the library has it then.
void WriteResultsFile(SolverRun& run);

}  // namespace linfit
