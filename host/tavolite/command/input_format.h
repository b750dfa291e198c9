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

// "-", which stands for standard input.
bool IsStandardInput(const std::filesystem::path& input);
// With the suffix .gz.
bool IsPacked(const std::filesystem::path& input);
// For messages.
std::string InputName(const std::filesystem::path& input);
// The input's name without directory and suffixes.
std::string ModelName(const std::filesystem::path& input);

// Nothing when the suffix does not tell.
std::optional<InputFormat> InputFormatOf(const std::filesystem::path& file);

// Whether the suffix is a spreadsheet's.
bool IsSpreadsheet(const std::filesystem::path& file);

// The suffixes that tell, joined by blanks.
std::string KnownSuffixes();

bool IsTable(InputFormat format);

}  // namespace host
