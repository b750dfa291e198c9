#include "base/control_file.h"

#include <algorithm>
#include <array>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <system_error>

#include "base/text.h"

namespace host {

namespace {

struct Key {
  std::string_view name;
  std::filesystem::path ControlFile::*field;
  bool required;
  std::size_t max_length;  // bytes; 0: any
};

// A short string holds 255 bytes, and the solver appends the name of its definition file to the
// system directory.
constexpr std::array kKeys{
    Key{"instance", &ControlFile::instance, true, 0},
    Key{"status_file", &ControlFile::status_file, true, 0},
    Key{"log", &ControlFile::log, true, 0},
    Key{"system_directory", &ControlFile::system_directory, true, 240},
    Key{"option_file", &ControlFile::option_file, false, 255},
    Key{"timing", &ControlFile::timing, false, 0},
};
constexpr std::string_view kStandardOutput = "-";

std::string InQuotes(std::string_view text) {
  return std::string("\"").append(text).append("\"");
}

std::string_view Unquoted(std::string_view value) {
  const bool quoted = value.size() >= 2 && value.front() == '"' && value.back() == '"';
  return quoted ? value.substr(1, value.size() - 2) : value;
}

const Key& FindKey(std::string_view name) {
  const auto* key =
      std::find_if(kKeys.begin(), kKeys.end(), [&](const Key& k) { return k.name == name; });
  if (key == kKeys.end()) {
    throw FileError("unknown key " + InQuotes(name));
  }
  return *key;
}

std::filesystem::path Value(const Key& key, std::string_view text) {
  const std::string_view value = Unquoted(text);
  if (value.empty()) {
    throw FileError(InQuotes(key.name) + " has no value");
  }
  if (key.max_length > 0 && value.size() > key.max_length) {
    throw FileError(InQuotes(key.name) + " is longer than " + std::to_string(key.max_length) +
                    " bytes");
  }
  return FromUtf8(value);
}

void TakeLine(std::string_view line, ControlFile& control, std::set<std::string_view>& seen) {
  const std::size_t equals = line.find('=');
  if (equals == std::string_view::npos) {
    throw FileError("expected `key = value`");
  }
  const Key& key = FindKey(Stripped(line.substr(0, equals)));
  if (!seen.insert(key.name).second) {
    throw FileError(InQuotes(key.name) + " is given twice");
  }
  const std::string_view text = Stripped(line.substr(equals + 1));
  if (key.field == &ControlFile::log && text == kStandardOutput) {
    return;  // the field stays empty
  }
  control.*key.field = Value(key, text);
}

// One file in two roles would be overwritten while it is needed.
void CheckDistinct(const ControlFile& control, const std::filesystem::path& file) {
  std::set<std::filesystem::path> files;
  for (const std::filesystem::path& path : {file, control.instance, control.status_file,
                                            control.log, control.option_file, control.timing}) {
    std::error_code error;
    const std::filesystem::path whole =
        std::filesystem::weakly_canonical(std::filesystem::absolute(path, error), error);
    // A device such as /dev/null may serve several times.
    const bool ordinary = !path.empty() && !error && !std::filesystem::is_other(whole, error);
    if (ordinary && !files.insert(whole).second) {
      throw FileError(Utf8(file) + ": " + Utf8(path) + " is named for two purposes");
    }
  }
}

}  // namespace

ControlFile ReadControlFile(const std::filesystem::path& file) {
  ControlFile control;
  std::set<std::string_view> seen;
  std::size_t number = 0;
  for (const std::string& text : ReadLines(file)) {
    ++number;
    const std::string_view line = Stripped(text);
    if (line.empty() || line.front() == '#') {
      continue;
    }
    try {
      TakeLine(line, control, seen);
    } catch (const FileError& error) {
      throw FileError(AtLine(file, number, error.what()));
    }
  }
  for (const Key& key : kKeys) {
    if (key.required && !seen.contains(key.name)) {
      throw FileError(Utf8(file) + ": " + InQuotes(key.name) + " is missing");
    }
  }
  CheckDistinct(control, file);
  return control;
}

std::string ControlText(const ControlFile& control) {
  std::string text;
  for (const Key& key : kKeys) {
    const bool to_standard_output = key.field == &ControlFile::log && (control.*key.field).empty();
    const std::string value = Utf8(control.*key.field);
    if (value.find_first_of(std::string_view("\r\n\0", 3)) != std::string::npos) {
      throw FileError("can't name " + value + " in a control file: it holds a line end");
    }
    if (to_standard_output) {
      text.append(key.name).append(" = ").append(kStandardOutput).append("\n");
    } else if (!value.empty()) {
      // Quotes keep blanks at the ends, and a file named "-" from being the standard output.
      const std::string bare(Stripped(value));
      const bool plain = bare == value && value.front() != '"' && value != kStandardOutput;
      text.append(key.name).append(" = ").append(plain ? value : InQuotes(value)).append("\n");
    }
  }
  return text;
}

void WriteControlFile(const ControlFile& control, const std::filesystem::path& file) {
  WriteText(file, ControlText(control));
}

}  // namespace host
