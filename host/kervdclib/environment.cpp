#include "kervdclib/environment.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <new>
#include <system_error>
#include <utility>

#include "base/left_failure.h"

namespace host {

namespace {

constexpr auto kNewFile = std::ios::binary | std::ios::trunc;

int ErrorNumber() {
  return errno == 0 ? EIO : errno;
}

std::ofstream Opened(const std::filesystem::path& file) {
  std::ofstream stream(file, kNewFile);
  if (!stream) {
    throw FileError("can't write " + Utf8(file) + ": " +
                    std::generic_category().message(ErrorNumber()));
  }
  return stream;
}

void Report(const char* text) {
  std::fprintf(stderr, "kervdclib64: %s\n", text);
}

void ReportFault(const std::filesystem::path& file, int fault) {
  const std::string name = file.empty() ? "standard output" : Utf8(file);
  Report(("can't write " + name + ": " + std::generic_category().message(fault)).c_str());
}

}  // namespace

void Environment::Output::Flush() {
  stream.flush();
  if (!stream && fault == 0) fault = ErrorNumber();
}

void Environment::Output::Close() {
  stream.close();
  if (!stream && fault == 0) fault = ErrorNumber();
}

bool Environment::End() noexcept {
  if (!initialized_) return true;
  bool done = false;
  try {
    done = EndFiles();
  } catch (const std::bad_alloc&) {
    Report("out of memory");
  } catch (const std::exception& error) {
    Report(error.what());
  }
  initialized_ = false;
  return done;
}

bool Environment::EndFiles() {
  EndLine();
  if (const std::string reason = LeftFailure(); !reason.empty()) {
    LastLine(reason);
  }
  status_.Close();
  if (status_.fault != 0) ReportFault(control_.status_file, status_.fault);
  if (!control_.log.empty()) {
    log_.Close();
  } else if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
    log_.fault = ErrorNumber();
  }
  if (log_.fault != 0) ReportFault(control_.log, log_.fault);
  if (!control_.timing.empty()) steps_.Write(control_.timing);
  return status_.fault == 0 && log_.fault == 0;
}

void Environment::Initialize(const std::filesystem::path& control_file) {
  if (initialized_) {
    throw FileError("the environment has been initialized already");
  }
  control_ = ReadControlFile(control_file);
  last_difference_ = Clock::now();
  if (!control_.timing.empty()) steps_.Start();
  if (!std::ifstream(control_.instance, std::ios::binary)) {
    throw FileError(Utf8(control_file) + ": can't read the instance " + Utf8(control_.instance));
  }
  status_.stream = Opened(control_.status_file);
  if (!control_.log.empty()) {
    log_.stream = Opened(control_.log);
  }
  LeaveFailure({});
  initialized_ = true;
}

void Environment::Log(std::string_view line) {
  if (!initialized_) {
    return;
  }
  if (control_.log.empty()) {
    std::fwrite(line.data(), 1, line.size(), stdout);
    std::fputc('\n', stdout);
    std::fflush(stdout);
  } else {
    log_.stream << line << '\n';
    log_.Flush();
  }
}

void Environment::FlushStatus() {
  if (!in_block_) {
    status_.Flush();
  }
}

void Environment::EndLine() {
  if (line_begun_) {
    Stat("");
  }
}

void Environment::StatOwnLine(std::string_view line) {
  EndLine();
  Stat(line);
}

void Environment::Stat(std::string_view line) {
  steps_.SeeStatusLine(line);
  status_.stream << line << '\n';
  line_begun_ = false;
  FlushStatus();
}

void Environment::StatPiece(std::string_view text) {
  status_.stream << text;
  line_begun_ = true;
}

void Environment::EndBlock() {
  in_block_ = false;
  status_.Flush();
}

void Environment::LastLine(std::string_view reason) noexcept {
  constexpr std::size_t kLine = 512;
  std::array<char, kLine> line;
  std::snprintf(line.data(), line.size(), "*** %.*s", static_cast<int>(reason.size()),
                reason.data());
  if (!initialized_) {
    Report(line.data() + 4);
    return;
  }
  if (line_begun_) status_.stream << '\n';
  line_begun_ = false;
  status_.stream << line.data() << '\n';
  status_.Flush();
  Log(line.data());
}

double Environment::TimeDiff() {
  const Clock::time_point now = Clock::now();
  return std::chrono::duration<double>(now - std::exchange(last_difference_, now)).count();
}

}  // namespace host
