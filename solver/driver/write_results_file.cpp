#include "driver/write_results_file.h"

#include <array>
#include <string>
#include <string_view>

#include "binding/fixed_text.h"
#include "driver/output.h"
#include "driver/solver_run.h"
#include "resultsfile/results_content.h"

namespace linfit {
namespace {

constexpr std::string_view kProducer = "linfit";
constexpr int kParameterType = 1;
constexpr int kUserInfo = 0;

using LibraryText = std::array<char, 255>;

// The library results that go to the last return code are not looked at: after each symbol the
// library's count of errors tells.
class LibraryWriter {
 public:
  explicit LibraryWriter(SolverRun& run) : run_(run) {}

  void Start(const SymbolHead& symbol) {
    run_.last_return_code = run_.tdx.tdxDataWriteStrStart(
        run_.results_file, symbol.name, symbol.text, symbol.dimension, kParameterType, kUserInfo);
  }

  void Record(const KeyList& keys, double value) {
    value_[0] = value;
    run_.last_return_code = run_.tdx.tdxDataWriteStr(run_.results_file, keys.Texts(), value_);
  }

  void Done(const SymbolHead& symbol) {
    run_.last_return_code = run_.tdx.tdxDataWriteDone(run_.results_file);
    if (run_.tdx.tdxErrorCount(run_.results_file) <= 0) return;
    LibraryText text;
    run_.tdx.tdxErrorStr(run_.results_file, run_.tdx.tdxGetLastError(run_.results_file), text);
    FatalStop(run_,
              "TDX error(" + std::string(Trimmed(symbol.name)) + "):" + std::string(Trimmed(text)));
  }

 private:
  SolverRun& run_;
  ValueRecord value_{};  // only the first, a parameter's value, is ever set
};

void CreateObject(SolverRun& run) {
  LibraryText message;
  message.fill(' ');
  if (!run.tdx.tdxCreate(run.results_file, message)) {
    FatalStop(run, "Could not initialize TDX:" + std::string(Trimmed(message)));
  }
}

void WriteVersionAndName(SolverRun& run, std::string_view file_name) {
  LibraryText field;
  std::string_view version;
  run.last_return_code = run.tdx.tdxGetDLLVersion(run.results_file, field);
  if (run.last_return_code == 0) {
    version = "** Failed tdxGetDLLVersion() **";
  } else {
    version = Trimmed(field);
    if (version.empty()) version = "** tdxGetDLLVersion() returned blank!! **";
  }
  WriteStatAndLog(run, "TDX library version: " + std::string(version));
  WriteStatAndLog(run, "TDX file: " + std::string(file_name));
}

void AnalyseKeys(SolverRun& run) {
  AnalyseCoefficientKeys(run.data.CoefficientNames, run.coefficient_shape);
  const Failure failure = AnalyseObservationKeys(run.data.ObservationNames, run.observation_shape);
  if (failure) FatalStop(run, *failure);
}

}  // namespace

void WriteResultsFile(SolverRun& run) {
  const std::string_view file_name = Trimmed(std::string_view(run.options.results_file_name));
  WriteStatAndLog(run, "");
  CreateObject(run);
  WriteVersionAndName(run, file_name);
  AnalyseKeys(run);

  int error_number = 0;
  run.last_return_code = run.tdx.tdxOpenWrite(run.results_file, file_name, kProducer, error_number);
  if (run.last_return_code == 0) {
    FatalStop(run, "Could not open for write:" + std::string(file_name));
  }
  LibraryWriter writer(run);
  const ResultsContent content{{run.data.CoefficientNames, run.coefficient_shape},
                               {run.data.ObservationNames, run.observation_shape},
                               run.result,
                               run.error_monitor};
  if (const Failure failure = PutAllSymbols(writer, content)) FatalStop(run, *failure);

  run.last_return_code = run.tdx.tdxClose(run.results_file);
  if (run.last_return_code != 0) FatalStop(run, "Error closing TDX file");
}

}  // namespace linfit
