// The text of a model or data file.
#pragma once

#include <filesystem>
#include <string>

namespace host {

// Throws InputError.
std::string ReadModelFile(const std::filesystem::path& file);

}  // namespace host
