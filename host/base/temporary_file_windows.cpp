#include <windows.h>

#include <array>
#include <system_error>

#include "base/temporary_file.h"

namespace host {

int CurrentProcessNumber() {
  return static_cast<int>(GetCurrentProcessId());
}

bool ProcessExists(int number) {
  const HANDLE process = OpenProcess(SYNCHRONIZE, FALSE, static_cast<DWORD>(number));
  if (process == nullptr) return GetLastError() != ERROR_INVALID_PARAMETER;
  const bool runs = WaitForSingleObject(process, 0) == WAIT_TIMEOUT;
  CloseHandle(process);
  return runs;
}

std::string ProcessSpace() {
  std::array<char, MAX_COMPUTERNAME_LENGTH + 1> name{};
  auto size = static_cast<DWORD>(name.size());
  return GetComputerNameA(name.data(), &size) != 0 ? name.data() : "";
}

std::vector<std::filesystem::path> FilesIn(const std::filesystem::path& directory,
                                           const std::filesystem::path& prefix) {
  std::error_code failed;
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(directory, failed)) {
    const bool is_asked = entry.path().filename().native().starts_with(prefix.native());
    if (is_asked) files.push_back(entry.path());
  }
  return files;
}

void CreateNew(const std::filesystem::path& file, const std::filesystem::path& /*like*/) {
  const HANDLE handle = CreateFileW(file.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
  if (handle == INVALID_HANDLE_VALUE) {
    throw std::system_error(static_cast<int>(GetLastError()), std::system_category());
  }
  CloseHandle(handle);
}

void MoveOver(const std::filesystem::path& from, const std::filesystem::path& to) {
  if (MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING) == 0) {
    throw std::filesystem::filesystem_error(
        "cannot rename", from, to,
        std::error_code(static_cast<int>(GetLastError()), std::system_category()));
  }
}

}  // namespace host
