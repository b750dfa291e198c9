#include "tavolite/solve/solve_command.h"

#include <memory>
#include <optional>
#include <ostream>
#include <system_error>
#include <utility>
#include <vector>

#include "base/background.h"
#include "base/control_file.h"
#include "base/excerpt.h"
#include "base/input_error.h"
#include "base/text_file.h"
#include "instance/instance.h"
#include "tavolite/command/failure.h"
#include "tavolite/command/input_format.h"
#include "tavolite/report/report_page.h"
#include "tavolite/solve/design_step.h"
#include "tavolite/solve/front_end.h"
#include "tavolite/solve/listing.h"
#include "tavolite/solve/refusal.h"
#include "tavolite/solve/results_step.h"
#include "tavolite/solve/running_solve.h"
#include "tavolite/solve/solve_files.h"
#include "tavolite/solve/solver_log.h"
#include "tavolite/solve/solver_options.h"
#include "tavolite/solve/step_times.h"
#include "tavolite/system/free_memory.h"
#include "tavolite/system/interrupt.h"
#include "tdx/tdx_file.h"

namespace host {
namespace {

namespace fs = std::filesystem;

struct Session {
  const SolveOptions& options;
  std::ostream& out;
  std::ostream& err;
  fs::path solver;
  fs::path listing;
  fs::path results;
  std::shared_ptr<RunningSolve> running;
  StepTimes times;
  std::optional<Model> model{};
  std::string control{};  // the control file
  DesignStep design{};
  ModelFaults faults{};
  SolverOptions solver_options{};
  std::vector<std::string> failures{};  // lines for standard error
  std::exception_ptr exception{};       // what has ended the solve before its end
  fs::file_time_type start = fs::file_time_type::clock::now();
  [[nodiscard]] fs::path Scratch(const char* name) const { return running->Scratch(name); }
};

// Whether the matrix is so small that a second thread would take longer to start than to work.
bool IsSmall(const Session& session) {
  constexpr std::size_t kSmall = 20'000;
  return session.faults.observations * session.faults.coefficients <= kSmall;
}

void Print(const Session& session, const std::string& line) {
  session.err << "tavolite: ";
  WritePrintable(session.err, line);
  session.err << '\n';
}

void Warn(const Session& session, const std::string& warning) {
  Print(session, "warning: " + warning);
}

void Tell(const Session& session, const ReaderNotes& notes) {
  if (!session.options.quiet) {
    session.out << notes.output;
    for (const std::string& note : notes.notes) session.out << "tavolite: " << note << '\n';
    session.out.flush();
  }
  for (const std::string& warning : notes.warnings) Warn(session, warning);
}

// The option file for the solver: the user's, unless something is to be added to it.
fs::path OptionFile(const Session& session) {
  const SolverOptions& options = session.solver_options;
  // The solver takes a path of 255 bytes.
  if (options.added_lines.empty() && Utf8(session.options.option_file).size() <= 255) {
    return session.options.option_file;
  }
  fs::path file = session.Scratch("options.txt");
  WriteText(file, options.user_lines + options.added_lines);
  return file;
}

// What is to be said no before anything is read or written.
void CheckBefore(Session& session) {
  session.solver = FindSolver(session.options);
  session.listing = ChooseListing(session.options);
  session.solver_options = ReadSolverOptions(session.options, SystemDirectory(session.solver));
  session.results = FromUtf8(session.solver_options.results_file);
  CheckFiles(session.options, session.solver, session.listing, session.results);
}

FrontEndResult Read(Session& session) {
  SolveOptions options = session.options;
  options.table.intercept = InterceptOf(session.solver_options);
  FrontEndResult input = ReadModel(options, session.running->ScratchPath());
  session.times.End("read the model");
  Tell(session, input.notes);
  session.faults = FindFaults(input.model);
  FitToModel(session.faults.observations, session.faults.coefficients,
             IsTable(session.options.format), session.solver_options);
  return input;
}

// Reads the model, writes the instance and makes the control file's text.
ModelNames Prepare(Session& session) {
  FrontEndResult input = Read(session);
  WriteInstance(input.model, session.Scratch(kInstanceName));
  ControlFile control;
  control.instance = session.Scratch(kInstanceName);
  control.status_file = session.Scratch("status.txt");
  control.system_directory = SystemDirectory(session.solver);
  control.option_file = OptionFile(session);
  if (!session.options.timing.empty()) control.timing = session.Scratch("timing.txt");
  session.control = ControlText(control);
  if (session.options.keep) WriteText(session.Scratch("control.txt"), session.control);
  ModelNames names;
  names.model = input.model.name;
  names.notes = std::move(input.notes.notes);
  names.objective_column = input.model.objective_column;
  session.model = std::move(input.model);
  session.times.End("write the instance");
  return names;
}

// The model goes while the solver starts, which needs the memory; the names are read again when
// there is a solution.
void WorkBesideSolver(Session& session) {
  session.design.Start(session.Scratch(kInstanceName), session.solver_options.constant_term,
                       IsSmall(session));
  session.model.reset();
  if (!IsSmall(session)) GiveBackFreeMemory();
}

ChildProcess::Exit RunSolver(Session& session, SolverLog& log) {
  const std::string too_few = TooFewRows(session.faults, session.solver_options);
  if (!too_few.empty()) Print(session, too_few);
  const auto on_output = [&](std::string_view piece) {
    log.Take(piece);
    if (!session.options.quiet) (session.out << piece).flush();
  };
  const auto exit =
      session.running->RunSolver(session.control, on_output, [&] { WorkBesideSolver(session); });
  log.End();
  if (!session.options.timing.empty()) session.times.EndSolver(session.Scratch("timing.txt"));
  return exit;
}

// There is no solution: says why, what to do, and whose results are there.
void TellFailure(Session& session, const ChildProcess::Exit& exit, const SolverLog& log) {
  std::string text = "the solver ended without a solution";
  if (exit.code != 0) text += " (exit status " + std::to_string(exit.code) + ")";
  session.failures.push_back(log.LastLine().empty() ? text : text + ": " + log.LastLine());
  session.failures.push_back(
      Remedy(log.LastLine(), session.faults, session.options.format, session.solver_options));
  session.failures.push_back(EarlierResults(session.results, session.start));
}

void Summarise(const Session& session, const ModelNames& names, const Solution& solution,
               const SolverLog& log) {
  std::ostream& out = session.out;
  out << "\nModel status:  " << ModelStatusText(solution.model_status) << '\n'
      << "Solve status:  " << SolveStatusText(solution.solve_status) << '\n'
      << "Objective:     " << ObjectiveText(solution) << '\n';
  if (!session.options.table.response.empty()) {
    out << "Response:      " << session.options.table.response << '\n';
  }
  if (names.intercept) {
    out << "Intercept:     " << ExactText(names.intercept->estimate) << ", added by the solver\n";
  }
  out << "Listing:       " << Utf8(session.listing) << '\n';
  if (!log.ResultsFile().empty()) out << "Results file:  " << log.ResultsFile() << '\n';
  out.flush();
}

// Waits for the check of the design and tells what it found.
bool CheckDesign(Session& session, const Solution& solution, ModelNames& names) {
  DesignFindings findings = session.design.End(names, solution);
  Tell(session, {findings.notes, findings.warnings, {}, {}});
  names.notes.insert(names.notes.end(), findings.notes.begin(), findings.notes.end());
  names.warnings = std::move(findings.warnings);
  names.condition = findings.condition;
  return findings.full_rank;
}

// `file` is the results file, where it is open already.
void FindIntercept(Session& session, ModelNames& names, const Solution& solution,
                   const SolverLog& log, Database file) {
  if (log.ResultsFile().empty() || !AddsIntercept(session.faults, session.solver_options)) return;
  try {
    TdxReader results =
        file.IsOpen() ? TdxReader(std::move(file)) : TdxReader(FromUtf8(log.ResultsFile()));
    names.intercept = ReadAddedIntercept(results, solution, names.objective_column);
  } catch (const std::exception& error) {
    names.warnings.push_back(
        std::string("the intercept that the solver has added can't be shown: ") +
        FailureText(error));
    Warn(session, names.warnings.back());
  }
}

// The page of what the solver has written, where one is wanted.
void WriteReport(Session& session, const ModelNames& names, const SolverLog& log) {
  const fs::path& report = session.options.report;
  if (report.empty()) return;
  if (log.ResultsFile().empty()) throw FileError("no results file, hence no report");
  TdxReader reader(FromUtf8(log.ResultsFile()));
  const std::string page =
      ReportPage(reader, {names.model, names.warnings, names.notes, names.condition});
  session.running->WriteInPlace(report, [&](const fs::path& file) { WriteText(file, page); });
  if (!session.options.quiet) session.out << "Report:        " << Utf8(report) << '\n';
}

// What the results file, which is left open, can't know by itself. False when another solve has
// written it since.
bool KeepRunFacts(Session& session, const ModelNames& names, int process, const SolverLog& log,
                  Database& file) {
  if (log.ResultsFile().empty()) return true;
  const WithoutInterrupt now;
  try {
    file = AddRunFacts(FromUtf8(log.ResultsFile()), process,
                       {names.model, session.options.table.response, names.condition,
                        names.warnings, names.notes});
    return file.IsOpen();
  } catch (const std::exception& error) {
    Warn(session, std::string("the results file does not name the model: ") + FailureText(error));
    return true;
  }
}

int Finish(Session& session, ModelNames& names, const ChildProcess::Exit& exit,
           const SolverLog& log) {
  const fs::path instance = session.Scratch(kInstanceName);
  const std::optional<Solution> solution = ReadSolution(instance, &names.elements);
  const bool full_rank = solution && CheckDesign(session, *solution, names);
  session.design.Stop();
  Database results;
  const bool own = !solution || KeepRunFacts(session, names, exit.process, log, results);
  if (solution) FindIntercept(session, names, *solution, log, std::move(results));
  // A large file takes its time to go; a small one goes with its directory.
  Background removal;
  if (!session.options.keep && !IsSmall(session)) {
    // Where it fails, the directory's removal tries again.
    removal.Start([instance] { RemoveInstance(instance); });
  }
  session.running->WriteInPlace(session.listing, [&](const fs::path& file) {
    WriteListing(file, session.Scratch("status.txt"), names, solution ? &*solution : nullptr);
  });
  session.times.End("return the solution");
  if (!session.options.timing.empty()) {
    session.running->WriteInPlace(session.options.timing,
                                  [&](const fs::path& file) { session.times.Write(file); });
  }
  if (!solution) {
    TellFailure(session, exit, log);
    if (!session.options.quiet) session.out << "\nListing:       " << Utf8(session.listing) << '\n';
    return kNotSolved;
  }
  if (!session.options.quiet) Summarise(session, names, *solution, log);
  if (!own && !session.options.report.empty()) {
    throw FileError(log.ResultsFile() +
                    " holds the results of another solve by now, hence no report");
  }
  WriteReport(session, names, log);
  if (exit.code != 0) {
    session.failures.push_back("the solver has returned its solution, but ended with exit status " +
                               std::to_string(exit.code) + ": the listing is not whole");
    return kNotSolved;
  }
  if (log.LacksOptions()) {
    session.failures.emplace_back(
        "the solver could not load the option library: the solution is that of its default "
        "options");
    return kNotSolved;
  }
  return full_rank ? kSolved : kNotFullRank;
}

// The solve without its end.
int Solve(Session& session) {
  int status = kBadInput;  // of what fails before the solver has run
  try {
    CheckBefore(session);
    session.running->MakeScratch(session.options);
    status = kNotSolved;
    // It takes as long to start as a small model to read.
    session.running->StartSolver(session.solver, session.results);
    status = kBadInput;
    ModelNames names = Prepare(session);
    status = kNotSolved;
    SolverLog log;
    const ChildProcess::Exit exit = RunSolver(session, log);
    if (exit.interrupted) return kInterruptedStatus;
    return Finish(session, names, exit, log);
  } catch (const std::exception&) {
    session.exception = std::current_exception();
  }
  return status;
}

}  // namespace

int RunSolve(const SolveOptions& options, std::ostream& out, std::ostream& err) {
  Session session{options, out, err, {}, {}, {}, RunningSolve::Start(), {}};
  const int status = Solve(session);
  session.running->EndWaitingSolver();
  session.design.Stop();
  // Behind an interrupt, which takes the files away, nothing that has failed counts any more.
  const WithoutInterrupt now;
  for (const std::string& line : session.failures) {
    if (!line.empty()) Print(session, line);
  }
  try {
    if (session.exception) std::rethrow_exception(session.exception);
  } catch (const std::exception& failure) {
    PrintFailure(failure, err);
  }
  if (options.keep && !options.quiet && session.running->HasScratch()) {
    out << "Scratch files: " << Utf8(session.running->ScratchPath()) << '\n';
  }
  session.running->RemoveScratch();
  return status;
}

}  // namespace host
