#include "tests/support/process.h"

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <cstdlib>
#include <stdexcept>

namespace testing_support {

namespace {

// Quotes one argument so that the C run time of the program reads it back unchanged.
std::wstring Quoted(const std::wstring& argument) {
  std::wstring text = L"\"";
  std::size_t backslashes = 0;
  for (const wchar_t character : argument) {
    if (character == L'\\') {
      ++backslashes;
      continue;
    }
    text.append(character == L'"' ? 2 * backslashes + 1 : backslashes, L'\\');
    backslashes = 0;
    text += character;
  }
  text.append(2 * backslashes, L'\\');
  return text + L'"';
}

HANDLE OpenInherited(const std::wstring& file, DWORD access, DWORD disposition) {
  SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
  return CreateFileW(file.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited,
                     disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
}

// The caller's environment with the given variables in front, which win over later ones of the same
// name.
std::wstring EnvironmentBlock(const RunOptions& options) {
  std::wstring block;
  for (const auto& [name, value] : options.environment) {
    block += FromUtf8(name + "=" + value).wstring() + L'\0';
  }
  wchar_t* own = GetEnvironmentStringsW();
  for (const wchar_t* entry = own; *entry != L'\0';) {
    const std::wstring text = entry;
    const std::string name = Utf8(std::filesystem::path(text.substr(0, text.find(L'='))));
    if (options.environment.count(name) == 0) {
      block += text + L'\0';
    }
    entry += text.size() + 1;
  }
  FreeEnvironmentStringsW(own);
  return block + L'\0';
}

}  // namespace

int RunProcess(const std::filesystem::path& program, const std::vector<std::string>& arguments,
               const RunOptions& options, const std::filesystem::path& out,
               const std::filesystem::path& err) {
  std::wstring line = Quoted(program.wstring());
  for (const std::string& argument : arguments) {
    line += L' ' + Quoted(FromUtf8(argument).wstring());
  }
  STARTUPINFOW startup{};
  startup.cb = sizeof(startup);
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdInput = OpenInherited(L"NUL", GENERIC_READ, OPEN_EXISTING);
  startup.hStdOutput = OpenInherited(out.wstring(), GENERIC_WRITE, CREATE_ALWAYS);
  startup.hStdError = OpenInherited(err.wstring(), GENERIC_WRITE, CREATE_ALWAYS);

  std::wstring environment = EnvironmentBlock(options);
  const std::wstring directory = options.directory.wstring();
  PROCESS_INFORMATION process{};
  const BOOL started = CreateProcessW(
      program.wstring().c_str(), line.data(), nullptr, nullptr, TRUE, CREATE_UNICODE_ENVIRONMENT,
      environment.data(), directory.empty() ? nullptr : directory.c_str(), &startup, &process);
  for (HANDLE handle : {startup.hStdInput, startup.hStdOutput, startup.hStdError}) {
    CloseHandle(handle);
  }
  if (started == FALSE) {
    throw std::runtime_error("can't start " + Utf8(program));
  }
  WaitForSingleObject(process.hProcess, INFINITE);
  DWORD code = 0;
  GetExitCodeProcess(process.hProcess, &code);
  CloseHandle(process.hProcess);
  CloseHandle(process.hThread);
  return static_cast<int>(code);
}

void SetVariable(const std::string& name, const std::string& value) {
  _putenv_s(name.c_str(), value.c_str());
}

void KillThisProcess() {
  TerminateProcess(GetCurrentProcess(), 137);
  std::abort();  // not reached
}

}  // namespace testing_support
