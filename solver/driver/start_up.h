// Start-up: from the command-line argument to a loaded model with its dictionary.
//
// The functions are the steps of the run, in the order in which they are called. A step that fails
// writes its text and ends the process with exit status 0. Up to LoadModel the text goes to
// standard output, and nothing is freed; after it a failure is a FatalStop. TakeDictionary has
// both: without the dictionary's library the text goes to standard output, and the objects are
// freed.
#pragma once

#include <string_view>

#include "driver/solver_run.h"

namespace linfit {

void SetControlFilePath(SolverRun& run, std::string_view argument);
void CreateAudit(SolverRun& run);
// The argument "audit" asks for the audit line only: prints it and ends the process.
void AnswerAuditQuery(SolverRun& run);
void CreateEnvironment(SolverRun& run);
void InitializeEnvironment(SolverRun& run);
void CreateModel(SolverRun& run);
void RegisterEnvironment(SolverRun& run);
void LoadModel(SolverRun& run);
// One-based numbers; objective row and variable stay a row and a column of their own.
void SetModelConventions(SolverRun& run);
// The audit object is freed afterwards.
void WriteAuditLine(SolverRun& run);
void WriteBanner(SolverRun& run);
void WriteHelpText(SolverRun& run);
// Refuses a model with more columns than rows.
void ReadDimensions(SolverRun& run);
void SetInfinitySentinels(SolverRun& run);
void ReadOptionFileFlag(SolverRun& run);
void ReadObjective(SolverRun& run);
void TakeDictionary(SolverRun& run);

}  // namespace linfit
