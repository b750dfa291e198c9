#include <windows.h>

#include <array>
#include <mutex>
#include <string>

#include "base/text_file.h"
#include "tavolite/system/child_process.h"
#include "tavolite/system/first_failure.h"
#include "tavolite/system/windows_support.h"

namespace host {
namespace {

constexpr DWORD kControlCExit = 0xC000013A;  // how the system ends a program on Ctrl-C

class Handle {
 public:
  Handle() = default;
  explicit Handle(HANDLE handle) : handle_(handle) {}
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  ~Handle() { Close(); }
  void Close() {
    if (handle_ != nullptr) CloseHandle(handle_);
    handle_ = nullptr;
  }
  [[nodiscard]] HANDLE Get() const { return handle_; }
  HANDLE* Out() { return &handle_; }

 private:
  HANDLE handle_ = nullptr;
};

// Whatever the program's mode of output, lines end in "\n" behind this.
void ReadToEnd(HANDLE pipe, const std::function<void(std::string_view)>& on_output) {
  std::array<char, 65536> buffer;
  std::string text;
  DWORD count = 0;
  while (ReadFile(pipe, buffer.data(), static_cast<DWORD>(buffer.size()), &count, nullptr) != 0 &&
         count > 0) {
    text.append(buffer.data(), count);
    for (std::size_t at = 0; (at = text.find("\r\n", at)) != std::string::npos;) text.erase(at, 1);
    // Half a line's end waits for the other half.
    const bool cut = text.ends_with('\r');
    on_output(std::string_view(text).substr(0, text.size() - (cut ? 1 : 0)));
    text = cut ? "\r" : "";
  }
  if (!text.empty()) on_output(text);
}

// Paths have no quotes on this system, and one that ends in a backslash is no file.
std::wstring CommandLine(const std::filesystem::path& program,
                         const std::filesystem::path& argument) {
  return L"\"" + program.wstring() + L"\" \"" + argument.wstring() + L"\"";
}

}  // namespace

struct ChildProcess::State {
  std::mutex mutex;
  HANDLE process = nullptr;  // of the running child, null when there is none
  int last = 0;              // number of the child that was started last
  bool stopped = false;
  std::filesystem::path program;
};

ChildProcess::ChildProcess() : state_(std::make_unique<State>()) {}
ChildProcess::~ChildProcess() = default;

void ChildProcess::Start(const std::filesystem::path& program) {
  state_->program = program;
}

void ChildProcess::EndWaiting() {}

ChildProcess::Exit ChildProcess::Run(std::string_view text, const std::filesystem::path& file,
                                     const std::function<void(std::string_view)>& on_output,
                                     const std::function<void()>& meanwhile) {
  WriteText(file, text);
  const std::filesystem::path& program = state_->program;
  SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
  Handle read_end;
  Handle write_end;
  if (CreatePipe(read_end.Out(), write_end.Out(), &inherited, 0) == 0) FailWithLastError("pipe");
  SetHandleInformation(read_end.Get(), HANDLE_FLAG_INHERIT, 0);
  Handle input(CreateFileW(L"NUL", GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited,
                           OPEN_EXISTING, 0, nullptr));

  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdInput = input.Get();
  startup.hStdOutput = write_end.Get();
  startup.hStdError = GetStdHandle(STD_ERROR_HANDLE);
  PROCESS_INFORMATION information{};
  std::wstring line = CommandLine(program, file);
  {
    const std::lock_guard lock(state_->mutex);
    if (state_->stopped) return {.interrupted = true};
    if (CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                       &startup, &information) == 0) {
      FailWithLastError("can't start " + ToUtf8(program.wstring()));
    }
    state_->process = information.hProcess;
    state_->last = static_cast<int>(information.dwProcessId);
  }
  const Handle process(information.hProcess);
  const Handle thread(information.hThread);
  write_end.Close();
  FirstFailure failure;
  failure.Try(meanwhile);
  ReadToEnd(read_end.Get(),
            [&](std::string_view piece) { failure.Try([&] { on_output(piece); }); });
  WaitForSingleObject(process.Get(), INFINITE);
  DWORD code = 0;
  GetExitCodeProcess(process.Get(), &code);
  const std::lock_guard lock(state_->mutex);
  state_->process = nullptr;
  failure.Rethrow();
  return {static_cast<int>(code), state_->last, code == kControlCExit};
}

int ChildProcess::Stop() {
  const std::lock_guard lock(state_->mutex);
  state_->stopped = true;
  if (state_->process == nullptr) return state_->last;
  TerminateProcess(state_->process, kControlCExit);
  WaitForSingleObject(state_->process, INFINITE);
  return state_->last;
}

}  // namespace host
