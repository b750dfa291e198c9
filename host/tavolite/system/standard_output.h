// Standard output that knows why it could not be written. What goes to a terminal is printable:
// nothing in it steers the terminal.
#pragma once

#include <streambuf>
#include <string>
#include <string_view>

namespace host {

class StandardOutput : public std::streambuf {
 public:
  StandardOutput();
  explicit StandardOutput(bool to_terminal) : to_terminal_(to_terminal) {}

  // Hands over what is still held back. Returns the error number of the first write that failed, 0
  // for none.
  int End();

 protected:
  int_type overflow(int_type c) override;
  std::streamsize xsputn(const char* text, std::streamsize count) override;
  int sync() override;

 private:
  bool Write(std::string_view text);
  bool WriteToTerminal(std::string_view text);

  bool to_terminal_;
  std::string held_;  // the begin of a character, or a carriage return, for a terminal
  int error_ = 0;
};

}  // namespace host
