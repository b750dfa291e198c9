#include "tavolite/command/input_format.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "base/text.h"
#include "base/text_file.h"

namespace host {
namespace {

struct Format {
  std::string_view name;
  std::string_view suffixes;  // each with its point, joined by blanks
  InputFormat format;
};

constexpr std::array kFormats{
    Format{"mod", ".mod", InputFormat::kMathProg},
    Format{"mps", ".mps", InputFormat::kMps},
    Format{"free-mps", ".fmps", InputFormat::kFreeMps},
    Format{"fixed-mps", "", InputFormat::kFixedMps},
    Format{"lp", ".lp", InputFormat::kLp},
    Format{"csv", ".csv", InputFormat::kCsv},
    Format{"tsv", ".tsv .tab", InputFormat::kTsv},
    Format{"sqlite", ".db .sqlite .sqlite3", InputFormat::kSqlite},
};

bool HasWord(std::string_view words, const std::string& word) {
  return !word.empty() &&
         (" " + std::string(words) + " ").find(" " + word + " ") != std::string::npos;
}

// Whether it is a table of lines.
bool IsText(InputFormat format) {
  return format == InputFormat::kCsv || format == InputFormat::kTsv;
}

}  // namespace

std::vector<std::pair<std::string, InputFormat>> InputFormats() {
  std::vector<std::pair<std::string, InputFormat>> formats;
  for (const Format& entry : kFormats) formats.emplace_back(entry.name, entry.format);
  return formats;
}

bool IsStandardInput(const std::filesystem::path& input) {
  return input == "-";
}

bool IsPacked(const std::filesystem::path& input) {
  return LowerCase(Utf8(input.extension())) == ".gz";
}

std::string InputName(const std::filesystem::path& input) {
  return IsStandardInput(input) ? "standard input" : Utf8(input);
}

std::string ModelName(const std::filesystem::path& input) {
  if (IsStandardInput(input)) return "stdin";
  return Utf8(IsPacked(input) ? input.stem().stem() : input.stem());
}

std::optional<InputFormat> InputFormatOf(const std::filesystem::path& file) {
  const bool is_packed = IsPacked(file);
  const std::string suffix =
      LowerCase(Utf8(is_packed ? file.stem().extension() : file.extension()));
  for (const Format& entry : kFormats) {
    if (!HasWord(entry.suffixes, suffix)) continue;
    if (!is_packed || IsText(entry.format)) return entry.format;
  }
  return std::nullopt;
}

bool IsSpreadsheet(const std::filesystem::path& file) {
  return HasWord(".xls .xlsx .xlsm .ods .numbers", LowerCase(Utf8(file.extension())));
}

std::string KnownSuffixes() {
  std::string suffixes;
  for (const Format& entry : kFormats) {
    if (entry.suffixes.empty()) continue;
    suffixes += suffixes.empty() ? "" : " ";
    suffixes += entry.suffixes;
  }
  return suffixes;
}

bool IsTable(InputFormat format) {
  return IsText(format) || format == InputFormat::kSqlite;
}

}  // namespace host
