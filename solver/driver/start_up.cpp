#include "driver/start_up.h"

#include <cstdio>
#include <string>

#include "driver/banner.h"
#include "driver/output.h"

namespace linfit {
namespace {

constexpr std::size_t kPathWidth = 300;
constexpr std::string_view kAuditLineTemplate =
    "_TAVO_Least Squares    28.2.0 r750fa45 Released Aug 19, 2019 WEI x86 64bit/MS Windows_OVAT_";
static_assert(kAuditLineTemplate.size() == 91);

// All of `text`, zeros included, and what the library has left in the message buffer, as it came.
void PrintLine(std::string_view text, std::string_view message = "") {
  std::fwrite(text.data(), 1, text.size(), stdout);
  std::fwrite(message.data(), 1, message.size(), stdout);
  std::fputc('\n', stdout);
}

std::string_view LibraryMessage(const SolverRun& run) {
  return Trimmed(run.StatusMessageBuffer);
}

}  // namespace

void SetControlFilePath(SolverRun& run, std::string_view argument) {
  run.ControlFilePath = Trimmed(argument.substr(0, kPathWidth));
}

void CreateAudit(SolverRun& run) {
  if (!run.pal.palXCreate(run.audit, run.StatusMessageBuffer)) {
    PrintLine("*** Could not create audit object: ", LibraryMessage(run));
    Stop();
  }
  run.pal.palSetAuditLine(run.audit, kAuditLineTemplate);
}

void AnswerAuditQuery(SolverRun& run) {
  if (run.ControlFilePath != "audit") return;
  const ShortResult line = run.pal.palGetAuditLine(run.audit);
  PrintLine(Trimmed(line));
  Stop();
}

void CreateEnvironment(SolverRun& run) {
  if (!run.tev.tevXCreate(run.environment, run.StatusMessageBuffer)) {
    PrintLine("*** Could not create environment object: ", LibraryMessage(run));
    Stop();
  }
}

void InitializeEnvironment(SolverRun& run) {
  run.last_return_code = run.tev.tevInitEnvironmentLegacy(run.environment, run.ControlFilePath);
  if (run.last_return_code != 0) {
    PrintLine("*** Could not initialize environment.");
    Stop();
  }
}

void CreateModel(SolverRun& run) {
  if (!run.tmo.tmoXCreate(run.model, run.StatusMessageBuffer)) {
    PrintLine("*** Could not create model object: ", LibraryMessage(run));
    Stop();
  }
}

void RegisterEnvironment(SolverRun& run) {
  run.last_return_code =
      run.tmo.tmoRegisterEnvironment(run.model, run.environment, run.StatusMessageBuffer);
  if (run.last_return_code != 0) {
    PrintLine("*** Could not register environment: ", LibraryMessage(run));
    Stop();
  }
}

void LoadModel(SolverRun& run) {
  run.last_return_code = run.tmo.tmoLoadDataLegacy(run.model, run.StatusMessageBuffer);
  if (run.last_return_code != 0) {
    PrintLine("*** Could not load TAVO model data.", LibraryMessage(run));
    Stop();
  }
}

void SetModelConventions(SolverRun& run) {
  run.tmo.tmoIndexBaseSet(run.model, 1);
  run.tmo.tmoObjStyleSet(run.model, 0);
}

void WriteAuditLine(SolverRun& run) {
  run.tev.tevLogStat(run.environment, "");
  const ShortResult status_line = run.pal.palGetAuditLine(run.audit);
  run.tev.tevStatAudit(run.environment, Trimmed(status_line));
  const ShortResult log_line = run.pal.palGetAuditLine(run.audit);
  run.tev.tevLog(run.environment, Trimmed(log_line));
  run.pal.palXFree(run.audit);
}

void WriteBanner(SolverRun& run) {
  run.tev.tevLogStat(run.environment, "");
  for (const std::string& line : BannerLines()) run.tev.tevLogStat(run.environment, line);
}

void WriteHelpText(SolverRun& run) {
  for (const std::string& line : HelpLines()) run.tev.tevStat(run.environment, line);
}

void ReadDimensions(SolverRun& run) {
  run.row_count = run.tmo.tmoM(run.model);
  run.column_count = run.tmo.tmoN(run.model);
  if (run.column_count > run.row_count) {
    FatalStop(run, "Number of observations (rows) is too small");
  }
}

void SetInfinitySentinels(SolverRun& run) {
  run.tmo.tmoPinfSet(run.model, kPlusInfinity);
  run.tmo.tmoMinfSet(run.model, kMinusInfinity);
}

void ReadOptionFileFlag(SolverRun& run) {
  run.read_option_file = run.tmo.tmoOptFile(run.model) >= 1;
}

void ReadObjective(SolverRun& run) {
  run.objective_variable = run.tmo.tmoObjVar(run.model);
  run.objective_row = run.tmo.tmoObjRow(run.model);
}

void TakeDictionary(SolverRun& run) {
  if (run.tmo.tmoDictionary(run.model) != 0) run.dictionary = run.tmo.tmoDict(run.model);
  if (run.dictionary == nullptr) FatalStop(run, "Control file error: Need dictionary file");
  if (!run.dct.dctGetReady(run.StatusMessageBuffer)) {
    PrintLine("*** Could not initialize dictionary library: ", LibraryMessage(run));
    FreeAndStop(run);
  }
}

}  // namespace linfit
