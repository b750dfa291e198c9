// Writes a results file and ends as the second argument says: "close" it, "exit" without, be killed
// ("kill"), or end by a signal ("INT", "TERM", "HUP"). The third is the number of records. Prints
// what the library says: for "count" the number of errors after the symbol and then all that
// "close" prints. With "delete" or "wal", a journal mode, it is an SQL program that dies while it
// changes the file.
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <map>

#include "base/database.h"
#include "tests/host/tdxdclib/tdx_session.h"
#include "tests/support/process.h"

namespace {

[[noreturn]] void DieInTheMiddle(const std::filesystem::path& file, const std::string& mode) {
  host::Database database(file, host::Database::Mode::kReadWrite);
  database.Execute("PRAGMA journal_mode = " + mode + "; PRAGMA cache_size = 2; BEGIN;" +
                   "UPDATE tdx_data_1 SET value = 0");
  if (mode == "wal") database.Execute("COMMIT");
  testing_support::KillThisProcess();
  std::abort();
}

}  // namespace

// NOLINTNEXTLINE(bugprone-exception-escape): the test that starts it sees that
int main(int argc, char** argv) {
  if (argc != 4) return 2;
  const std::filesystem::path file = testing_support::FromUtf8(argv[1]);
  const std::string end = argv[2];
  if (end == "delete" || end == "wal") DieInTheMiddle(file, end);
  auto* session = new host::TdxSession;  // a process that exits early frees nothing
  if (!session->Open(file)) return 3;
  session->Start("resid", 1);
  for (int i = 0; i < std::atoi(argv[3]); ++i) session->Record({"r" + std::to_string(i)}, i);
  session->Done();
  if (end == "count") std::printf("%d ", session->ErrorCount());
  if (end == "kill") testing_support::KillThisProcess();
  if (end == "exit") std::exit(0);
#ifndef _WIN32
  const std::map<std::string, int> signals{{"INT", SIGINT}, {"TERM", SIGTERM}, {"HUP", SIGHUP}};
  if (const auto signal = signals.find(end); signal != signals.end()) std::raise(signal->second);
#endif
  const bool closed = session->Close();
  std::printf("%s %d %s\n", closed ? "closed" : "failed", session->ErrorCount(),
              session->LastError().c_str());
  delete session;
  return 0;
}
