// The formats of what `tavolite solve` reads, by name and by file suffix.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tavolite/command/options.h"

namespace host {

std::vector<std::pair<std::string, InputFormat>> InputFormats();

// Nothing when the suffix does not tell.
std::optional<InputFormat> InputFormatOf(const std::filesystem::path& file);

// Whether the suffix is a spreadsheet's.
bool IsSpreadsheet(const std::filesystem::path& file);

// The suffixes that tell, joined by blanks.
std::string KnownSuffixes();

bool IsTable(InputFormat format);

}  // namespace host
