// A file that shows other processes whether its maker is still at work.
//
// One implementation per system: owner_lock_posix.cpp, owner_lock_windows.cpp.
#pragma once

#include <cstdint>
#include <filesystem>

namespace host {

class OwnerLock {
 public:
  OwnerLock() = default;
  OwnerLock(const OwnerLock&) = delete;
  OwnerLock& operator=(const OwnerLock&) = delete;
  ~OwnerLock() { Release(); }

  // Makes the file, held by this process and by all that it starts until the last of them has
  // ended, however it did. Where the file's system has no locks there will be no file.
  void Take(const std::filesystem::path& file);
  // Lets go of it; the file stays.
  void Release();

  // The file is there, belongs to this user, and nobody holds it.
  [[nodiscard]] static bool IsAbandoned(const std::filesystem::path& file);
  // Removes what a process that was killed in Take has left.
  static void RemoveUntaken(const std::filesystem::path& file);

 private:
  std::intptr_t handle_ = -1;
};

}  // namespace host
