// Control files: what can be read is the same after it has been written and read again.
#include "base/control_file.h"
#include "tests/fuzz/fuzz_input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::filesystem::path file = fuzz::ScratchFile("control");
  fuzz::WriteBytes(file, {reinterpret_cast<const char*>(data), size});
  try {
    const host::ControlFile first = host::ReadControlFile(file);
    host::WriteControlFile(first, file);
    const host::ControlFile second = host::ReadControlFile(file);
    fuzz::Check(first.instance == second.instance && first.status_file == second.status_file &&
                    first.log == second.log && first.system_directory == second.system_directory &&
                    first.option_file == second.option_file && first.timing == second.timing,
                "a control file written is the one read");
  } catch (const host::FileError&) {
  }
  std::filesystem::remove(file);
  return 0;
}
