// Runs the command and the solver again and again, each time with one fault, and prints a table:
// class of faults, runs, bad runs. Status 1 if one was bad.
//
// usage: fault_matrix PROGRAM_DIRECTORY SHIM DATA_DIRECTORY [RUNS]      RUNS: at most so many of
// each cell of the matrix
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <csignal>
#include <cstdio>
#include <fstream>
#include <map>
#include <mutex>
#include <random>
#include <set>
#include <thread>

#include "tests/faults/judge.h"
#include "tests/faults/run.h"

namespace faults {
namespace {

namespace fs = std::filesystem;
using std::chrono::seconds;

constexpr seconds kLimit{60};
constexpr std::size_t kShownFaults = 12;  // of each class

struct Scenario {
  const char* name;
  const char* input;  // in the data directory, or made by MakeInputs
  std::vector<std::string> arguments;
  std::vector<const char*> programs;  // in which of them faults are tried
};

const std::vector<Scenario> kScenarios{
    {"table",
     "Longley.csv",
     {"solve", "Longley.csv", "--response", "y", "--listing", "out.lst"},
     {"tavolite", "linfit"}},
    {"large table",
     "large.csv",
     {"solve", "large.csv", "--response", "y", "--listing", "out.lst"},
     {"tavolite", "linfit"}},
    {"query",
     "data.db",
     {"solve", "data.db", "--query", "select * from t", "--response", "y", "--listing", "out.lst"},
     {"tavolite"}},
    {"model", "small.mod", {"solve", "small.mod", "--listing", "out.lst"}, {"tavolite"}},
    {"show", "Longley.csv", {"show", "linfit.tdx"}, {"tavolite"}},
    {"show json", "Longley.csv", {"show", "linfit.tdx", "resid", "--format", "json"}, {"tavolite"}},
};

struct FaultClass {
  const char* name;
  const char* kind;  // as the shim names it
  const char* span;
};

constexpr const char* kEver = "1000000000";
const std::vector<FaultClass> kClasses{{"memory, one call", "memory", "1"},
                                       {"memory, from a call on", "memory", kEver},
                                       {"files, one call", "files", "1"},
                                       {"files, from a call on", "files", kEver},
                                       {"full disk", "disk", kEver}};

struct Matrix {
  fs::path programs, shim, data, scratch;
  std::size_t most = 100000;
  std::mutex lock;
  std::map<std::string, std::pair<std::size_t, std::size_t>> table;  // class to runs and bad runs
  std::atomic<unsigned> directories{0};

  void Add(const std::string& fault_class, const std::string& run, const std::string& fault) {
    const std::lock_guard guard(lock);
    auto& [runs, bad] = table[fault_class];
    ++runs;
    if (fault.empty()) return;
    ++bad;
    if (bad <= kShownFaults)
      std::printf("bad: %s: %s: %s\n", fault_class.c_str(), run.c_str(), fault.c_str());
  }
};

void MakeInputs(const fs::path& directory) {
  std::ofstream(directory / "before.csv") << "y,x\n1,1\n2,3\n3,4\n5,5\n";
  std::ofstream(directory / "small.mod")
      << "set I := 1..6; param x{i in I} := i*i; param y{i in I} := 3*i + i mod 3;\n"
         "var rss; var b; var c; minimize o: rss;\n"
         "fit{i in I}: y[i] = b*x[i] + c*i;\nsolve;\nend;\n";
  std::ofstream large(directory / "large.csv");
  large << "y,a,b,c\n";
  std::mt19937 random(1);
  for (int i = 0; i < 9000; ++i)
    large << random() % 1000 << ',' << random() % 997 << ',' << i << ',' << i % 89 << '\n';
  const std::string sql = "sqlite3 '" + (directory / "data.db").string() +
                          "' \"create table t as with recursive n(k) as (select 1 union all select "
                          "k+1 from n where k<40)"
                          " select k*k%17 y, k x, k*k z from n\"";
  if (std::system(sql.c_str()) != 0) std::abort();
}

// A directory for one run, as a user's: the input, a results file of an earlier solve, a place for
// scratch files.
class RunDirectory {
 public:
  RunDirectory(Matrix& matrix, const Scenario& scenario)
      : path_(matrix.scratch / std::to_string(matrix.directories++)) {
    fs::create_directories(path_ / "temporary");
    const fs::path made = matrix.scratch / scenario.input;
    fs::copy_file(fs::exists(made) ? made : matrix.data / scenario.input, path_ / scenario.input);
    if (fs::exists(matrix.scratch / "before.tdx"))
      fs::copy_file(matrix.scratch / "before.tdx", path_ / "linfit.tdx");
  }
  RunDirectory(const RunDirectory&) = delete;
  RunDirectory& operator=(const RunDirectory&) = delete;
  ~RunDirectory() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }

  [[nodiscard]] Command Run(const Matrix& matrix, const Scenario& scenario) const {
    return {matrix.programs / "tavolite",
            scenario.arguments,
            path_,
            {{"TMPDIR", (path_ / "temporary").string()}},
            path_.string() + ".out",
            path_.string() + ".err"};
  }
  [[nodiscard]] const fs::path& Path() const { return path_; }
  [[nodiscard]] Verdict Judge(const Expected& expected, const Outcome& outcome) const {
    Verdict verdict{expected, path_, outcome, ReadText(path_.string() + ".out"),
                    ReadText(path_.string() + ".err")};
    fs::remove(path_.string() + ".out");
    fs::remove(path_.string() + ".err");
    return verdict;
  }

 private:
  fs::path path_;
};

Expected RunWithoutFault(Matrix& matrix, const Scenario& scenario) {
  const RunDirectory directory(matrix, scenario);
  Expected expected;
  expected.before = ResultsText(directory.Path() / "linfit.tdx");
  const Outcome outcome = RunWatched(directory.Run(matrix, scenario), kLimit);
  expected.out = directory.Judge(expected, outcome).out;
  expected.listing = ReadText(directory.Path() / "out.lst");
  expected.results = ResultsText(directory.Path() / "linfit.tdx");
  if (outcome.status != 0 || expected.results.empty()) {
    std::printf("%s: ends with status %d without any fault\n", scenario.name, outcome.status);
    std::exit(2);
  }
  return expected;
}

struct Cell {
  const Scenario& scenario;
  const Expected& expected;
  const char* program;
  const FaultClass& faults;
};

Command WithFault(const Matrix& matrix, const Cell& cell, const RunDirectory& directory,
                  std::uint64_t at) {
  Command command = directory.Run(matrix, cell.scenario);
  command.environment["LD_PRELOAD"] = matrix.shim.string();
  command.environment["FAULTS_PROGRAM"] = cell.program;
  command.environment["FAULTS_CLASS"] = cell.faults.kind;
  command.environment["FAULTS_SPAN"] = cell.faults.span;
  command.environment["FAULTS_AT"] = std::to_string(at);
  return command;
}

std::uint64_t CountCalls(Matrix& matrix, const Cell& cell) {
  const RunDirectory directory(matrix, cell.scenario);
  const fs::path file = directory.Path().string() + ".count";
  std::ofstream(file) << std::string(8, '\0');
  Command command = WithFault(matrix, cell, directory, 0);
  command.environment["FAULTS_COUNT"] = file.string();
  RunWatched(command, kLimit);
  std::uint64_t calls = 0;
  std::ifstream(file, std::ios::binary).read(reinterpret_cast<char*>(&calls), 8);
  fs::remove(file);
  if (calls == 0) {
    std::printf("%s: the shim saw no call of %s\n", cell.scenario.name, cell.program);
    std::exit(2);
  }
  return calls;
}

// The numbers first .. last, or `most` of them, evenly spread.
std::vector<std::uint64_t> Spread(std::uint64_t last, std::size_t most) {
  std::vector<std::uint64_t> numbers;
  const auto count = std::min<std::uint64_t>(last, most);
  for (std::uint64_t k = 0; k < count; ++k) numbers.push_back(1 + k * last / count);
  return numbers;
}

// Calls `run` with 0 .. count - 1 on all processors.
void InParallel(std::size_t count, const std::function<void(std::size_t)>& run) {
  std::atomic<std::size_t> next{0};
  std::vector<std::jthread> workers;
  for (unsigned k = 0; k < std::max(1U, std::thread::hardware_concurrency()); ++k) {
    workers.emplace_back([&] {
      for (std::size_t i = next++; i < count; i = next++) run(i);
    });
  }
}

void RunCell(Matrix& matrix, const Cell& cell) {
  constexpr std::size_t kDiskSizes = 20;
  const bool disk = std::string(cell.faults.kind) == "disk";
  const auto at =
      Spread(CountCalls(matrix, cell), disk ? std::min(kDiskSizes, matrix.most) : matrix.most);
  InParallel(at.size(), [&](std::size_t i) {
    const RunDirectory directory(matrix, cell.scenario);
    const Outcome outcome = RunWatched(WithFault(matrix, cell, directory, at[i]), kLimit);
    Verdict verdict = directory.Judge(cell.expected, outcome);
    verdict.may_leave_files = !disk && cell.faults.span == kEver;
    matrix.Add(cell.faults.name,
               std::string(cell.scenario.name) + ", " + cell.program + ", " + std::to_string(at[i]),
               verdict.Fault());
  });
}

// The solver that `command` has started, 0 if there is none.
pid_t SolverOf(pid_t command) {
  const std::string number = std::to_string(command);
  return static_cast<pid_t>(
      std::atoi(ReadText("/proc/" + number + "/task/" + number + "/children").c_str()));
}

// One kill or signal at a random moment; after it, an ordinary solve must find and leave everything
// in order.
void RunInterrupted(Matrix& matrix, const Scenario& scenario, const Expected& expected,
                    std::size_t number) {
  static constexpr std::array kSignals{SIGKILL, SIGINT, SIGTERM, SIGHUP};
  static constexpr std::array kNames{"kill -9", "SIGINT", "SIGTERM", "SIGHUP"};
  const std::size_t which = number % 2 == 0 ? 0 : 1 + number / 2 % 3;
  const bool solver_alone = number % 4 == 2;
  std::mt19937 random(static_cast<unsigned>(number));
  const std::chrono::microseconds delay(random() %
                                        (std::string(scenario.name) == "table" ? 25000 : 80000));
  const RunDirectory directory(matrix, scenario);
  pid_t group = 0;
  const Outcome outcome = RunWatched(directory.Run(matrix, scenario), kLimit, [&](pid_t command) {
    group = command;
    std::this_thread::sleep_for(delay);
    const pid_t solver = solver_alone ? SolverOf(command) : 0;
    kill(solver != 0 ? solver : command, kSignals[which]);
  });
  while (kill(-group, 0) == 0) std::this_thread::sleep_for(std::chrono::milliseconds(1));
  Verdict verdict = directory.Judge(expected, outcome);
  verdict.may_leave_files = which == 0;
  // Before it has begun, the command leaves a signal to the system.
  const bool too_early = outcome.status == 128 + kSignals[which] && verdict.out.empty() &&
                         ResultsText(directory.Path() / "linfit.tdx") == expected.before;
  verdict.killed = which == 0 || too_early;
  std::string fault = verdict.Fault();
  if (fault.empty() && !verdict.killed && outcome.status != 0 && outcome.status != 130) {
    fault = "status " + std::to_string(outcome.status) + " after a signal";
  }
  if (fault.empty()) {
    const Outcome again = RunWatched(directory.Run(matrix, scenario), kLimit);
    fault = directory.Judge(expected, again).Fault();
    if (fault.empty() && again.status != 0) fault = "status " + std::to_string(again.status);
    if (!fault.empty()) fault = "the next solve: " + fault;
  }
  matrix.Add(kNames[which], std::string(scenario.name) + ", run " + std::to_string(number), fault);
}

// Twenty solves of two models at once that write one results file: it and every listing are one
// run's.
void RunSideBySide(Matrix& matrix, const Expected& table, const Expected& model) {
  constexpr std::size_t kSolves = 20;
  const Scenario& first = kScenarios[0];
  const Scenario& second = kScenarios[3];
  const RunDirectory directory(matrix, first);
  fs::copy_file(matrix.scratch / second.input, directory.Path() / second.input);
  std::vector<std::jthread> solves;
  std::vector<Outcome> outcomes(kSolves);
  for (std::size_t k = 0; k < kSolves; ++k) {
    solves.emplace_back([&, k] {
      Command command = directory.Run(matrix, k % 2 == 0 ? first : second);
      command.arguments.back() = std::to_string(k) + ".lst";
      command.out += std::to_string(k);
      command.err += std::to_string(k);
      outcomes[k] = RunWatched(command, kLimit);
    });
  }
  solves.clear();
  for (std::size_t k = 0; k < kSolves; ++k) {
    const Expected& expected = k % 2 == 0 ? table : model;
    const std::string results = ResultsText(directory.Path() / "linfit.tdx");
    std::string fault;
    if (outcomes[k].status != 0) fault = "status " + std::to_string(outcomes[k].status);
    if (results != table.results && results != model.results)
      fault = "the results file is nobody's";
    if (!IsPartOf(ReadText(directory.Path() / (std::to_string(k) + ".lst")), expected.listing,
                  ReadText(directory.Path().string() + ".err" + std::to_string(k))))
      fault = "the listing differs";
    matrix.Add("side by side", "solve " + std::to_string(k), fault);
  }
}

int PrintTable(const Matrix& matrix) {
  std::size_t all = 0, bad = 0;
  std::printf("%-26s %8s %6s\n", "class", "runs", "bad");
  for (const auto& [name, counts] : matrix.table) {
    std::printf("%-26s %8zu %6zu\n", name.c_str(), counts.first, counts.second);
    all += counts.first;
    bad += counts.second;
  }
  std::printf("%-26s %8zu %6zu\n", "all", all, bad);
  return bad == 0 ? 0 : 1;
}

int RunMatrix(Matrix& matrix) {
  MakeInputs(matrix.scratch);
  const Scenario earlier{
      "earlier", "before.csv", {"solve", "before.csv", "--response", "y", "--quiet"}, {}};
  {
    const RunDirectory directory(matrix, earlier);
    if (RunWatched(directory.Run(matrix, earlier), kLimit).status != 0) return 2;
    fs::copy_file(directory.Path() / "linfit.tdx", matrix.scratch / "before.tdx");
  }
  std::vector<Expected> expected;
  for (const Scenario& scenario : kScenarios) expected.push_back(RunWithoutFault(matrix, scenario));
  for (std::size_t s = 0; s < kScenarios.size(); ++s) {
    for (const char* program : kScenarios[s].programs) {
      for (const FaultClass& faults : kClasses) {
        const bool writes = expected[s].results != expected[s].before;
        if (!writes && std::string(faults.kind) == "disk") continue;
        RunCell(matrix, {kScenarios[s], expected[s], program, faults});
      }
    }
  }
  const std::size_t interrupted = std::min<std::size_t>(matrix.most, 300);
  for (const std::size_t s : {0U, 1U}) {
    InParallel(interrupted,
               [&](std::size_t i) { RunInterrupted(matrix, kScenarios[s], expected[s], i); });
  }
  RunSideBySide(matrix, expected[0], expected[3]);
  return PrintTable(matrix);
}

}  // namespace
}  // namespace faults

int main(int argc, char** argv) {
  if (argc < 4) {
    std::fprintf(stderr, "usage: fault_matrix PROGRAM_DIRECTORY SHIM DATA_DIRECTORY [RUNS]\n");
    return 2;
  }
  faults::Matrix matrix;
  matrix.programs = std::filesystem::absolute(argv[1]);
  matrix.shim = std::filesystem::absolute(argv[2]);
  matrix.data = std::filesystem::absolute(argv[3]);
  if (argc > 4) matrix.most = static_cast<std::size_t>(std::atol(argv[4]));
  char directory[] = "/tmp/linfit-faults-XXXXXX";
  if (mkdtemp(directory) == nullptr) return 2;
  matrix.scratch = directory;
  const int status = faults::RunMatrix(matrix);
  std::error_code ignored;
  std::filesystem::remove_all(matrix.scratch, ignored);
  return status;
}
