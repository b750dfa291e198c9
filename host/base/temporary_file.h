// A file that is written beside its target and takes the target's name when it is whole.
//
// The name is "<target>.tmp-<process>-<number>". A process that is killed leaves its temporary file
// behind; the next one that writes the same target removes it.
#pragma once

#include <filesystem>

namespace host {

// A name for the temporary file of `target` that no other call gets, in this process or another
// one. Also removes what processes that are gone have left beside the target.
std::filesystem::path MakeTemporaryName(const std::filesystem::path& target);

// The parts that each system does its own way.
int CurrentProcessNumber();
bool ProcessExists(int number);
// Renames `from` to `to`, in one step; a file that has the name already is replaced. Throws
// std::system_error.
void MoveOver(const std::filesystem::path& from, const std::filesystem::path& to);

}  // namespace host
