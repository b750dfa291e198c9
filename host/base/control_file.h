// The control file: tells the solver's process where everything of one solve stands.
//
//   # comment
//   instance         = /tmp/solve/model.db     the model, and later its solution
//   status_file      = /tmp/solve/status.txt   becomes part of the listing
//   log              = -                       a path, or "-" for standard output
//   system_directory = /opt/tavo               where option definition files stand
//   option_file      = linfit.opt              only if there is one
//   timing           = timing.txt              only if the time of each step is to be written
//
// A value is what stands between the "=" and the end of the line, without blanks at its ends; in
// double quotes it is taken as it stands between the first and the last quote. There are no escape
// characters. Relative paths count from the process's working directory.
#pragma once

#include <filesystem>
#include <string>

#include "base/text_file.h"

namespace host {

struct ControlFile {
  std::filesystem::path instance;
  std::filesystem::path status_file;
  std::filesystem::path log;  // empty: standard output
  std::filesystem::path system_directory;
  std::filesystem::path option_file;  // empty: none
  std::filesystem::path timing;       // empty: none
};

// Throws FileError: the file can't be read; a line that is not `key = value`; a key that is
// unknown, given twice or missing; a value that is empty or too long (option_file 255 bytes,
// system_directory 240: they reach the solver as short strings); one file in two roles.
ControlFile ReadControlFile(const std::filesystem::path& file);

// What ReadControlFile reads back, as a text and as a file. Throws FileError when the file can't be
// written or a path holds a line end.
std::string ControlText(const ControlFile& control);
void WriteControlFile(const ControlFile& control, const std::filesystem::path& file);

}  // namespace host
