// Definition files and option files: the input is one of each, with a zero byte between them. A
// fault is told by a message, and keys keep a value of their type.
#include "tests/fuzz/fuzz_input.h"
#include "tptdclib/option_table.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const std::size_t zero = std::min(bytes.find('\0'), size);
  const std::filesystem::path definition = fuzz::ScratchFile("definition");
  const std::filesystem::path parameters = fuzz::ScratchFile("options");
  fuzz::WriteBytes(definition, bytes.substr(0, zero));
  fuzz::WriteBytes(parameters, bytes.substr(std::min(zero + 1, size)));
  host::OptionTable options;
  const bool defined = options.ReadDefinition(definition);
  fuzz::Check(defined == options.Messages().empty(), "a message for each faulty definition");
  options.SetEcho((size & 1U) != 0);
  const std::size_t before = options.Messages().size();
  const bool read = options.ReadParameterFile(parameters);
  fuzz::Check(read || options.Messages().size() > before, "a message for a faulty option file");
  options.Integer("maxn");
  options.Text("name");
  for (const host::OptionTable::Message& message : options.Messages()) {
    fuzz::Check(message.text.size() <= 255, "messages fit a short string");
  }
  std::filesystem::remove(definition);
  std::filesystem::remove(parameters);
  return 0;
}
