#include "kervdclib/environment.h"

#include <cstdio>
#include <utility>

namespace host {

namespace {

constexpr auto kNewFile = std::ios::binary | std::ios::trunc;

std::ofstream Opened(const std::filesystem::path& file) {
  std::ofstream stream(file, kNewFile);
  if (!stream) {
    throw FileError("can't write " + Utf8(file));
  }
  return stream;
}

void Report(const std::string& text) {
  std::fprintf(stderr, "kervdclib64: %s\n", text.c_str());
}

}  // namespace

Environment::~Environment() {
  if (!initialized_) {
    return;
  }
  try {
    EndLine();
    status_.close();
    if (!status_) {
      Report("can't write " + Utf8(control_.status_file));
    }
    if (!control_.log.empty() && (log_.close(), !log_)) {
      Report("can't write " + Utf8(control_.log));
    }
    if (!control_.timing.empty()) steps_.Write(control_.timing);
  } catch (const std::exception& error) {
    Report(error.what());
  }
}

void Environment::Initialize(const std::filesystem::path& control_file) {
  if (initialized_) {
    throw FileError("the environment has been initialized already");
  }
  control_ = ReadControlFile(control_file);
  if (!std::ifstream(control_.instance, std::ios::binary)) {
    throw FileError(Utf8(control_file) + ": can't read the instance " + Utf8(control_.instance));
  }
  status_ = Opened(control_.status_file);
  if (!control_.log.empty()) {
    log_ = Opened(control_.log);
  }
  if (!control_.timing.empty()) steps_.Start();
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
    log_ << line << '\n' << std::flush;
  }
}

void Environment::FlushStatus() {
  if (!in_block_) {
    status_.flush();
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
  status_ << line << '\n';
  line_begun_ = false;
  FlushStatus();
}

void Environment::StatPiece(std::string_view text) {
  status_ << text;
  line_begun_ = true;
}

void Environment::EndBlock() {
  in_block_ = false;
  status_.flush();
}

void Environment::LastLine(std::string_view line) noexcept {
  if (!initialized_) {
    std::fprintf(stderr, "kervdclib64: %.*s\n", static_cast<int>(line.size()), line.data());
    return;
  }
  if (line_begun_) status_ << '\n';
  status_ << line << '\n' << std::flush;
  Log(line);
}

double Environment::TimeDiff() {
  const Clock::time_point now = Clock::now();
  return std::chrono::duration<double>(now - std::exchange(last_difference_, now)).count();
}

}  // namespace host
