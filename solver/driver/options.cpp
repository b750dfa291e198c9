#include "driver/options.h"

#include <algorithm>
#include <array>
#include <string>

#include "driver/output.h"

namespace linfit {
namespace {

constexpr std::size_t kTextWidth = 300;
// Far more than a file for five keys gives rise to; a count beyond it is no count.
constexpr int kMostMessages = 10000;

std::string DefinitionFilePath(SolverRun& run) {
  const ShortResult directory = run.tev.tevGetStrOpt(run.environment, "NameSysDir");
  std::string path(Trimmed(directory));
  path += "optlinfit.def";  // the directory ends in a separator
  return path.substr(0, kTextWidth);
}

void ReadUserFile(SolverRun& run, Handle option) {
  Opt& opt = run.opt;
  opt.optEchoSet(option, 1);
  const ShortResult name = run.tmo.tmoNameOptFile(run.model);
  run.last_return_code = opt.optReadParameterFile(option, Trimmed(name));
  // A faulty file counts for nothing: a run on the half of it that was read would be neither what
  // the user asked for nor the default.
  if (run.last_return_code != 0) return;
  run.data.AddConstantTerm = opt.optGetIntStr(option, "ADD_CONSTANT_TERM");
  const ShortResult file_name = opt.optGetStrStr(option, "TDX_FILE_NAME");
  run.options.results_file_name = Trimmed(file_name);
  run.options.debug_level = opt.optGetIntStr(option, "DEBUG_LEVEL");
  run.options.maxn = opt.optGetIntStr(option, "MAXN");
  run.options.maxp = opt.optGetIntStr(option, "MAXP");
}

void WriteMessages(SolverRun& run, Handle option) {
  const int count = std::min(run.opt.optMessageCount(option), kMostMessages);
  for (int number = 1; number <= count; ++number) {
    std::array<char, kTextWidth> text;
    int kind = 0;
    run.opt.optGetMessage(option, number, text, kind);
    WriteStatAndLog(run, Trimmed(text));
  }
}

}  // namespace

void ReadOptions(SolverRun& run) {
  if (!run.read_option_file) return;
  Handle option = nullptr;
  if (!run.opt.optCreate(option, run.StatusMessageBuffer)) {
    WriteStatAndLog(run, "Could not load option library.");
    return;
  }
  const std::string path = DefinitionFilePath(run);
  run.last_return_code = run.opt.optReadDefinition(option, path);
  if (run.last_return_code == 0) {
    ReadUserFile(run, option);
  } else {
    const std::string text = "Option definition file \"" + path + "\" not read successfully";
    WriteStatAndLog(run, text.substr(0, kTextWidth));
  }
  WriteMessages(run, option);
  run.opt.optFree(option);
}

}  // namespace linfit
