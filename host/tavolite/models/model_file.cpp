#include "tavolite/models/model_file.h"

#include <fstream>
#include <iterator>
#include <system_error>

#include "base/input_error.h"
#include "base/text_file.h"

namespace host {

std::string ReadModelFile(const std::filesystem::path& file) {
  std::error_code error;
  if (std::filesystem::is_directory(file, error)) throw InputError(Utf8(file) + ": is a directory");
  std::ifstream in(file, std::ios::binary);
  if (!in) throw InputError(Utf8(file) + ": can't be opened");
  std::string text{std::istreambuf_iterator<char>(in), {}};
  if (in.bad()) throw InputError(Utf8(file) + ": can't be read");
  return text;
}

}  // namespace host
