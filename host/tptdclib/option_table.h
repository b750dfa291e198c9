// Options: what a definition file declares and an option file sets.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "tptdclib/option_line.h"

namespace host {

class OptionTable {
 public:
  enum class MessageKind { kEcho = 1, kWarning = 2, kError = 3 };
  struct Message {
    MessageKind kind;
    std::string text;  // at most 255 bytes: longer ones are continued in the next message
  };

  // Both read a whole file and queue a message for every fault, with file and line. False when
  // there was one. A definition file that fails leaves nothing declared; an option file keeps the
  // lines that were right.
  bool ReadDefinition(const std::filesystem::path& file);
  bool ReadParameterFile(const std::filesystem::path& file);

  // Whether ReadParameterFile queues the file's lines, too.
  void SetEcho(bool on) { echo_ = on; }
  [[nodiscard]] const std::vector<Message>& Messages() const { return messages_; }

  // The line of the option file that has set the key, in upper case; 0 when none has.
  [[nodiscard]] std::size_t LineOf(const std::string& key) const;

  // The value of a key of that type, in any case of letters. A key that isn't declared so gives 0
  // or an empty text, and queues a message.
  std::int32_t Integer(std::string_view key);
  std::string Text(std::string_view key);

 private:
  struct Option {
    bool is_integer;
    std::int32_t integer;
    std::string text;
    std::string help;
    std::size_t set_in_line = 0;  // 0: not set, the value is the default
  };

  template <class Take>
  bool ForEachLine(const std::filesystem::path& file, bool echo, Take take);
  void Declare(OptionLine line);
  void Set(OptionLine line, std::size_t number, const std::filesystem::path& file);
  const Option* Find(std::string_view key, bool is_integer);
  void Queue(MessageKind kind, std::string_view text);

  std::map<std::string, Option> options_;
  std::vector<Message> messages_;
  bool echo_ = false;
};

}  // namespace host
