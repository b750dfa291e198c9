#include <windows.h>
// After windows.h, which it needs.
#include <shellapi.h>

#include <array>
#include <mutex>
#include <system_error>

#include "tavolite/system/child_process.h"

namespace host {
namespace {

constexpr UINT kInterruptStatus = 130;
constexpr DWORD kControlCExit = 0xC000013A;  // how the system ends a program on Ctrl-C

[[noreturn]] void Fail(const std::string& what) {
  throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), what);
}

std::string Utf8(const std::wstring& text) {
  const int size = WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()),
                                       nullptr, 0, nullptr, nullptr);
  std::string result(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), result.data(), size,
                      nullptr, nullptr);
  return result;
}

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

// The console's handler is a plain function: what it calls has to stand where it finds it.
std::function<void()>& InterruptCleanup() {
  static std::function<void()> cleanup;
  return cleanup;
}

BOOL WINAPI OnConsoleEvent(DWORD /*event*/) {
  InterruptCleanup()();
  TerminateProcess(GetCurrentProcess(), kInterruptStatus);
  return TRUE;
}

}  // namespace

std::filesystem::path OwnProgram() {
  std::wstring path(32768, L'\0');
  const DWORD size = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
  if (size == 0) Fail("own program");
  path.resize(size);
  return path;
}

std::filesystem::path ProgramFileName(const std::string& name) {
  return name + ".exe";
}

std::vector<std::string> Utf8Arguments(int argc, char** argv) {
  int count = 0;
  wchar_t** wide = CommandLineToArgvW(GetCommandLineW(), &count);
  if (wide == nullptr) return {argv, argv + argc};
  std::vector<std::string> arguments;
  for (int i = 0; i < count; ++i) arguments.push_back(Utf8(wide[i]));
  LocalFree(wide);
  return arguments;
}

void UseUtf8Console() {
  SetConsoleOutputCP(CP_UTF8);
}

struct ChildProcess::State {
  std::mutex mutex;
  HANDLE process = nullptr;  // of the running child, null when there is none
};

ChildProcess::ChildProcess() : state_(std::make_unique<State>()) {}
ChildProcess::~ChildProcess() = default;

ChildProcess::Exit ChildProcess::Run(const std::filesystem::path& program,
                                     const std::filesystem::path& argument,
                                     const std::function<void(std::string_view)>& on_output) {
  SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
  Handle read_end;
  Handle write_end;
  if (CreatePipe(read_end.Out(), write_end.Out(), &inherited, 0) == 0) Fail("pipe");
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
  std::wstring line = CommandLine(program, argument);
  {
    const std::lock_guard lock(state_->mutex);
    if (CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                       &startup, &information) == 0) {
      Fail("can't start " + Utf8(program.wstring()));
    }
    state_->process = information.hProcess;
  }
  const Handle process(information.hProcess);
  const Handle thread(information.hThread);
  write_end.Close();
  ReadToEnd(read_end.Get(), on_output);
  WaitForSingleObject(process.Get(), INFINITE);
  DWORD code = 0;
  GetExitCodeProcess(process.Get(), &code);
  const std::lock_guard lock(state_->mutex);
  state_->process = nullptr;
  return {static_cast<int>(code), code == kControlCExit};
}

void ChildProcess::Stop() {
  const std::lock_guard lock(state_->mutex);
  if (state_->process == nullptr) return;
  TerminateProcess(state_->process, kControlCExit);
  WaitForSingleObject(state_->process, INFINITE);
}

void OnInterrupt(std::function<void()> cleanup) {
  InterruptCleanup() = std::move(cleanup);
  SetConsoleCtrlHandler(&OnConsoleEvent, TRUE);
}

}  // namespace host
