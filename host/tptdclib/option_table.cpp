#include "tptdclib/option_table.h"

#include "base/short_string.h"
#include "base/text_file.h"

namespace host {

namespace {

constexpr const char* kIntegerType = "INTEGER";
constexpr const char* kStringType = "STRING";

std::string Checked(OptionText value) {
  if (value.text.size() > kShortStringLength) {
    throw FileError("longer than " + std::to_string(kShortStringLength) + " bytes");
  }
  return std::move(value.text);
}

bool IsKey(std::string_view key) {
  return !key.empty() &&
         key.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_") == std::string_view::npos;
}

std::string UpperKey(std::string_view key) {
  return OptionLine(key).Key();
}

}  // namespace

void OptionTable::Queue(MessageKind kind, std::string_view text) {
  do {
    char piece[kShortStringBuffer];
    ToShortString(text, piece);
    const std::string_view taken = ShortStringText(piece);
    messages_.push_back({kind, std::string(taken)});
    // Bytes that are no UTF-8 may leave no place for a cut.
    text.remove_prefix(taken.empty() ? text.size() : taken.size());
  } while (!text.empty());
}

void OptionTable::Declare(OptionLine line) {
  const std::string key = line.Key();
  if (!IsKey(key)) {
    throw FileError("\"" + key + "\" can't be a key");
  }
  const std::string type = line.Key();
  if (type != kIntegerType && type != kStringType) {
    throw FileError("type of " + key + ": expected integer or string, found \"" + type + "\"");
  }
  Option option{type == kIntegerType, 0, {}, {}};
  try {
    OptionText value = line.Value();
    if (option.is_integer) {
      option.integer = OptionInteger(value);
    } else {
      option.text = Checked(std::move(value));
    }
  } catch (const FileError& error) {
    throw FileError("default of " + key + ": " + error.what());
  }
  option.help = line.Rest();
  if (option.help.empty()) {
    throw FileError(key + " has no line of help");
  }
  if (!options_.emplace(key, std::move(option)).second) {
    throw FileError(key + " is declared twice");
  }
}

template <class Take>
bool OptionTable::ForEachLine(const std::filesystem::path& file, bool echo, Take take) {
  bool success = true;
  const auto fail = [&](const std::string& text) {
    Queue(MessageKind::kError, "*** " + text);
    success = false;
  };
  try {
    std::size_t number = 0;
    for (const std::string& text : ReadLines(file)) {
      ++number;
      if (echo) {
        Queue(MessageKind::kEcho, text);
      }
      const OptionLine line(text);
      try {
        if (!line.IsEmpty()) {
          take(line, number);
        }
      } catch (const FileError& error) {
        fail(AtLine(file, number, error.what()));
      }
    }
  } catch (const UnreadableFile&) {
    throw;  // what it sets isn't known: no answer would be right
  } catch (const FileError& error) {
    fail(error.what());
  }
  return success;
}

bool OptionTable::ReadDefinition(const std::filesystem::path& file) {
  options_.clear();
  const bool success =
      ForEachLine(file, false, [this](const OptionLine& line, std::size_t) { Declare(line); });
  if (!success) {
    options_.clear();
  }
  return success;
}

void OptionTable::Set(OptionLine line, std::size_t number, const std::filesystem::path& file) {
  const std::string key = line.Key();
  const auto found = options_.find(key);
  if (found == options_.end()) {
    throw FileError("unknown option \"" + key + "\"");
  }
  Option& option = found->second;
  try {
    line.Equals();
    OptionText value = line.Value();
    if (!line.Rest().empty()) {
      throw FileError("unexpected text after the value: " + std::string(line.Rest()));
    }
    if (option.is_integer) {
      option.integer = OptionInteger(value);
    } else {
      option.text = Checked(std::move(value));
    }
  } catch (const FileError& error) {
    throw FileError(key + ": " + error.what());
  }
  if (option.set_in_line != 0) {
    Queue(MessageKind::kWarning,
          AtLine(file, number,
                 key + " replaces its value of line " + std::to_string(option.set_in_line)));
  }
  option.set_in_line = number;
}

bool OptionTable::ReadParameterFile(const std::filesystem::path& file) {
  for (auto& [key, option] : options_) {
    option.set_in_line = 0;
  }
  return ForEachLine(file, echo_,
                     [&](const OptionLine& line, std::size_t number) { Set(line, number, file); });
}

const OptionTable::Option* OptionTable::Find(std::string_view key, bool is_integer) {
  const auto found = options_.find(UpperKey(key));
  if (found == options_.end() || found->second.is_integer != is_integer) {
    Queue(MessageKind::kError, "*** there is no " + std::string(is_integer ? "integer" : "string") +
                                   " option \"" + std::string(key) + "\"");
    return nullptr;
  }
  return &found->second;
}

std::size_t OptionTable::LineOf(const std::string& key) const {
  const auto found = options_.find(key);
  return found == options_.end() ? 0 : found->second.set_in_line;
}

std::int32_t OptionTable::Integer(std::string_view key) {
  const Option* option = Find(key, true);
  return option == nullptr ? 0 : option->integer;
}

std::string OptionTable::Text(std::string_view key) {
  const Option* option = Find(key, false);
  return option == nullptr ? std::string() : option->text;
}

}  // namespace host
