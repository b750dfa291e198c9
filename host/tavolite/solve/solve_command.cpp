#include "tavolite/solve/solve_command.h"

#include <future>
#include <memory>
#include <ostream>
#include <system_error>
#include <utility>
#include <vector>

#include "base/control_file.h"
#include "base/input_error.h"
#include "base/text_file.h"
#include "instance/instance.h"
#include "tavolite/solve/front_end.h"
#include "tavolite/solve/listing.h"
#include "tavolite/solve/scratch.h"
#include "tavolite/solve/solve_files.h"
#include "tavolite/solve/solver_log.h"
#include "tavolite/solve/step_times.h"
#include "tavolite/system/child_process.h"
#include "tavolite/system/interrupt.h"

namespace host {
namespace {

namespace fs = std::filesystem;

// What an interrupt has to end and to remove; it may come at any time until the process is gone.
struct Interruptible {
  explicit Interruptible(const SolveOptions& options) : scratch(options.work, options.keep) {}
  ScratchDirectory scratch;
  ChildProcess solver;
};

struct Session {
  const SolveOptions& options;
  std::ostream& out;
  std::ostream& err;
  fs::path solver;
  fs::path listing;
  StepTimes times;
  std::shared_ptr<Interruptible> running;
  std::future<void> matrix_end;
  [[nodiscard]] fs::path Scratch(const char* name) const { return running->scratch.Path() / name; }
};

void Tell(const Session& session, const ReaderNotes& notes) {
  if (!session.options.quiet) {
    session.out << notes.output;
    for (const std::string& note : notes.notes) session.out << "tavolite: " << note << '\n';
    session.out.flush();
  }
  for (const std::string& warning : notes.warnings) {
    session.err << "tavolite: warning: " << warning << '\n';
  }
}

// The user's option file; without one, that which fits a table.
fs::path OptionFile(const Session& session, const FrontEndResult& input) {
  if (!session.options.option_file.empty() || input.option_file.empty()) {
    return session.options.option_file;
  }
  fs::path file = session.Scratch("options.txt");
  WriteText(file, input.option_file);
  return file;
}

// Reads the model and writes instance and control file. The matrix goes while the solver starts,
// which needs the memory.
ModelNames Prepare(Session& session) {
  FrontEndResult input = ReadModel(session.options, session.running->scratch.Path());
  session.times.End("read the model");
  Tell(session, input.notes);
  WriteInstance(input.model, session.Scratch("instance.db"));
  ControlFile control;
  control.instance = session.Scratch("instance.db");
  control.status_file = session.Scratch("status.txt");
  control.system_directory = SystemDirectory(session.solver);
  control.option_file = OptionFile(session, input);
  if (!session.options.timing.empty()) control.timing = session.Scratch("timing.txt");
  WriteControlFile(control, session.Scratch("control.txt"));
  session.matrix_end = std::async([columns = std::move(input.model.columns)]() mutable {
    std::vector<Column>().swap(columns);
  });
  session.times.End("write the instance");
  return {std::move(input.model.name), std::move(input.model.dictionary),
          std::move(input.model.row_names), std::move(input.model.column_names),
          std::move(input.notes.notes)};
}

ChildProcess::Exit RunSolver(Session& session, SolverLog& log) {
  const auto on_output = [&](std::string_view piece) {
    log.Take(piece);
    if (!session.options.quiet) (session.out << piece).flush();
  };
  const auto exit =
      session.running->solver.Run(session.solver, session.Scratch("control.txt"), on_output);
  log.End();
  session.times.EndSolver(session.Scratch("timing.txt"));
  return exit;
}

std::string Failure(const ChildProcess::Exit& exit, const SolverLog& log) {
  std::string text = "the solver ended without a solution";
  if (exit.code != 0) text += " (exit status " + std::to_string(exit.code) + ")";
  return log.LastLine().empty() ? text : text + ": " + log.LastLine();
}

void Summarise(const Session& session, const Solution& solution, const SolverLog& log) {
  std::ostream& out = session.out;
  out << "\nModel status:  " << ModelStatusText(solution.model_status) << '\n'
      << "Solve status:  " << SolveStatusText(solution.solve_status) << '\n'
      << "Objective:     " << ObjectiveText(solution) << '\n'
      << "Listing:       " << Utf8(session.listing) << '\n';
  if (!log.ResultsFile().empty()) out << "Results file:  " << log.ResultsFile() << '\n';
  out.flush();
}

int Finish(Session& session, const ModelNames& names, const ChildProcess::Exit& exit,
           const SolverLog& log) {
  const fs::path instance = session.Scratch("instance.db");
  const std::optional<Solution> solution = ReadSolution(instance);
  // A large file takes its time to go.
  std::future<void> removal;
  if (!session.options.keep) {
    removal = std::async([instance] {
      std::error_code ignored;  // the directory's removal tries again
      fs::remove(instance, ignored);
    });
  }
  WriteListing(session.listing, session.Scratch("status.txt"), names,
               solution ? &*solution : nullptr);
  session.times.End("return the solution");
  if (!session.options.timing.empty()) session.times.Write(session.options.timing);
  if (!solution) {
    session.err << "tavolite: " << Failure(exit, log) << '\n';
    if (!session.options.quiet) session.out << "\nListing:       " << Utf8(session.listing) << '\n';
    return kNotSolved;
  }
  if (!session.options.quiet) Summarise(session, *solution, log);
  return kSolved;
}

std::shared_ptr<Interruptible> MakeInterruptible(const SolveOptions& options) {
  try {
    return std::make_shared<Interruptible>(options);
  } catch (const fs::filesystem_error& error) {
    throw InputError("no scratch directory can be made in " + Utf8(error.path1().parent_path()) +
                     ": " + error.code().message());
  }
}

int Solve(Session& session) {
  int status = kBadInput;  // of what fails before the solver has run
  try {
    session.solver = FindSolver(session.options);
    session.listing = ChooseListing(session.options);
    session.running = MakeInterruptible(session.options);
    OnInterrupt([running = session.running] {
      running->solver.Stop();
      running->scratch.Remove();
    });
    const ModelNames names = Prepare(session);
    status = kNotSolved;
    SolverLog log;
    const ChildProcess::Exit exit = RunSolver(session, log);
    if (exit.interrupted) return kInterrupted;
    return Finish(session, names, exit, log);
  } catch (const std::bad_alloc&) {
    session.err << "tavolite: not enough memory\n";
  } catch (const std::exception& error) {
    session.err << "tavolite: " << error.what() << '\n';
  }
  return status;
}

}  // namespace

int RunSolve(const SolveOptions& options, std::ostream& out, std::ostream& err) {
  Session session{options, out, err, {}, {}, {}, nullptr, {}};
  const int status = Solve(session);
  if (session.running != nullptr) {
    if (options.keep && !options.quiet) {
      out << "Scratch files: " << Utf8(session.running->scratch.Path()) << '\n';
    }
    session.running->scratch.Remove();
  }
  return status;
}

}  // namespace host
