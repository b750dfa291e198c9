#include <windows.h>

#include "tavolite/system/owner_lock.h"

namespace host {
namespace {

// Nobody else can open the file while this handle is there.
HANDLE OpenAlone(const std::filesystem::path& file, DWORD disposition, bool inherited) {
  SECURITY_ATTRIBUTES attributes{sizeof attributes, nullptr, inherited ? TRUE : FALSE};
  return CreateFileW(file.c_str(), GENERIC_READ | GENERIC_WRITE, 0, &attributes, disposition,
                     FILE_ATTRIBUTE_NORMAL, nullptr);
}

}  // namespace

void OwnerLock::Take(const std::filesystem::path& file) {
  const HANDLE handle = OpenAlone(file, CREATE_NEW, true);
  if (handle != INVALID_HANDLE_VALUE) handle_ = reinterpret_cast<std::intptr_t>(handle);
}

void OwnerLock::Release() {
  if (handle_ != -1) CloseHandle(reinterpret_cast<HANDLE>(handle_));
  handle_ = -1;
}

bool OwnerLock::IsAbandoned(const std::filesystem::path& file) {
  const HANDLE handle = OpenAlone(file, OPEN_EXISTING, false);
  if (handle == INVALID_HANDLE_VALUE) return false;
  CloseHandle(handle);
  return true;
}

// The file is held from its beginning on.
void OwnerLock::RemoveUntaken(const std::filesystem::path& /*file*/) {}

}  // namespace host
