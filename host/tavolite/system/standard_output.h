// Standard output that knows why it could not be written.
#pragma once

#include <streambuf>

namespace host {

class StandardOutput : public std::streambuf {
 public:
  // Hands over what is still held back. Returns the error number of the first write that failed, 0
  // for none.
  int End();

 protected:
  int_type overflow(int_type c) override;
  std::streamsize xsputn(const char* text, std::streamsize count) override;
  int sync() override;

 private:
  int error_ = 0;
};

}  // namespace host
