// Writes a results file and ends as the second argument says: "close" it, "exit" without, or be
// killed ("kill"). The third is the number of records. Prints what the library says: for "count"
// the number of errors after the symbol and then all that "close" prints.
#include <cstdio>
#include <cstdlib>

#include "tests/host/tdxdclib/tdx_session.h"
#include "tests/support/process.h"

int main(int argc, char** argv) {
  if (argc != 4) return 2;
  const std::string end = argv[2];
  auto* session = new host::TdxSession;  // a process that exits early frees nothing
  if (!session->Open(testing_support::FromUtf8(argv[1]))) return 3;
  session->Start("resid", 1);
  for (int i = 0; i < std::atoi(argv[3]); ++i) session->Record({"r" + std::to_string(i)}, i);
  session->Done();
  if (end == "count") std::printf("%d ", session->ErrorCount());
  if (end == "kill") testing_support::KillThisProcess();
  if (end == "exit") std::exit(0);
  const bool closed = session->Close();
  std::printf("%s %d %s\n", closed ? "closed" : "failed", session->ErrorCount(),
              session->LastError().c_str());
  delete session;
  return 0;
}
