// A file that is written beside its target and takes the target's name when it is whole.
//
// The name is "<target>.tmp-<process>-<host>-<random>", the last two as hexadecimal digits: <host>
// stands for what process numbers count in, a running system or a container. A process that is
// killed leaves its temporary file behind; the next one that writes the same target removes it, or
// an empty directory of such a name.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace host {

// A name for the temporary file of `target` that no other call gets, in this process or another
// one. Also removes what processes that are gone have left beside the target.
std::filesystem::path MakeTemporaryName(const std::filesystem::path& target);

// Makes the file, empty, under such a name: nobody else has made it, and it has the permissions of
// the target, where there is one. Throws std::system_error.
std::filesystem::path CreateTemporaryFile(const std::filesystem::path& target);

// Removes what the process `number`, which has ended, has left beside `target`.
void RemoveTemporaryFiles(const std::filesystem::path& target, int number);

// The parts that each system does its own way.
int CurrentProcessNumber();
bool ProcessExists(int number);
// Differs wherever the same process number may mean different processes.
std::string ProcessSpace();
// The paths of what a directory holds under names that start with `prefix`; none when it can't be
// read. The standard library's iterator ends the process where memory runs out.
std::vector<std::filesystem::path> FilesIn(const std::filesystem::path& directory,
                                           const std::filesystem::path& prefix);
// Makes a file that wasn't there, with the permissions of `like` if there is such a file. Throws
// std::system_error.
void CreateNew(const std::filesystem::path& file, const std::filesystem::path& like);
// Renames `from` to `to`, in one step; a file that has the name already is replaced. Throws
// std::system_error.
void MoveOver(const std::filesystem::path& from, const std::filesystem::path& to);

}  // namespace host
