// A results file as a whole: what may be replaced by one, how it takes its place, and what the host
// adds to it.
#pragma once

#include <filesystem>

#include "base/database.h"
#include "tdx/tdx_schema.h"

namespace host {

// True when the file is a results file: by the application id that it has, or by its tables when it
// has none. False when it can't be read.
bool IsTdxFile(const std::filesystem::path& file);

// Throws FileError with the reason when there is something under the name that is neither a results
// file nor an empty file.
void CheckTdxTarget(const std::filesystem::path& target);

// Gives `file`, a whole results file, the name of `target`. What an SQL program has left beside an
// earlier file of that name, a journal or a log, would be applied to the new one and goes before.
// Throws std::system_error.
void PutTdxInPlace(const std::filesystem::path& file, const std::filesystem::path& target);

// Adds them to the results file that the solver's process has just written, and leaves it open. The
// result is not open when the file is not that process's: another solve has written it meanwhile,
// or it is no results file. At most 255 bytes of each name and 2000 bytes of warnings and 1000 of
// notes are kept. Throws DatabaseError.
Database AddRunFacts(const std::filesystem::path& file, int process, const RunFacts& facts);

}  // namespace host
