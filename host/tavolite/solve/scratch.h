// The directory that holds the files of one solve.
#pragma once

#include <filesystem>

#include "tavolite/system/owner_lock.h"

namespace host {

class ScratchDirectory {
 public:
  // Makes a directory of its own below `parent`, or below the system's directory for temporary
  // files when `parent` is empty. Only its owner has access. Removes what solves that were killed
  // have left there. Throws std::filesystem::filesystem_error.
  ScratchDirectory(const std::filesystem::path& parent, bool keep);
  ScratchDirectory(const ScratchDirectory&) = delete;
  ScratchDirectory& operator=(const ScratchDirectory&) = delete;
  ~ScratchDirectory();

  [[nodiscard]] const std::filesystem::path& Path() const { return path_; }
  // Removes it with all it holds, unless it is to be kept, also while another thread still writes
  // there. Does no harm when called again.
  void Remove();

 private:
  std::filesystem::path path_;
  bool keep_;
  OwnerLock lock_;
};

}  // namespace host
