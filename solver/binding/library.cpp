#include "binding/library.h"

#include <cstdio>
#include <cstdlib>

namespace linfit {
namespace {

using CreateEntry = void (*)(Handle*);
using FreeEntry = void (*)(Handle*);
using CheckEntry = int (*)(const char* name, int arguments, const int* codes, char* message);
using VersionEntry = int (*)(int interface_version, char* message, int* compatibility);
using SetLoadPathEntry = void (*)(const char* directory);

constexpr std::size_t kLibraryMessage = 256;  // what a library may write into a message buffer
constexpr std::size_t kLongestDirectory = 511;
constexpr int kMissingFunctionExitCode = 123;

std::string ToCase(std::string text, int (*convert)(int)) {
  for (char& character : text) {
    character = static_cast<char>(convert(static_cast<unsigned char>(character)));
  }
  return text;
}

}  // namespace

// The caller's message field while loading goes on: terminated text, its last byte always the
// terminator. A library writes 256 bytes at most, so a shorter field is replaced by a buffer of
// ours until Finish.
class Library::MessageBuffer {
 public:
  explicit MessageBuffer(std::span<char> field) : field_(field) { Clear(); }

  void Clear() {
    own_[0] = '\0';
    if (!field_.empty()) field_[0] = '\0';
  }
  // For an entry of the library to write into.
  char* ForLibrary() { return field_.size() < kLibraryMessage ? own_.data() : field_.data(); }
  void TakeLibraryText() {
    if (field_.size() < kLibraryMessage) Write(TerminatedText(own_));
  }
  void Write(std::string_view text) {
    if (field_.empty()) return;
    const std::string_view kept = text.substr(0, field_.size() - 1);
    *std::copy(kept.begin(), kept.end(), field_.begin()) = '\0';
  }
  [[nodiscard]] std::string_view Text() const { return TerminatedText(field_); }
  [[nodiscard]] bool HasField() const { return !field_.empty(); }
  // Blank-pads the caller's field behind its text.
  void Finish() {
    std::fill(field_.begin() + static_cast<std::ptrdiff_t>(Text().size()), field_.end(), ' ');
  }

 private:
  static std::string_view TerminatedText(std::span<const char> buffer) {
    const auto end = std::find(buffer.begin(), buffer.end(), '\0');
    return {buffer.data(), static_cast<std::size_t>(end - buffer.begin())};
  }

  std::span<char> field_;
  std::array<char, kLibraryMessage> own_;
};

Library::Library(const LibraryInterface& interface) : interface_(interface) {}

std::unique_lock<std::recursive_mutex> Library::Lock(std::recursive_mutex& mutex) const {
  return locking_ ? std::unique_lock(mutex) : std::unique_lock(mutex, std::defer_lock);
}

// Holds in every build, so it isn't assert().
void Library::Assert(bool condition, const char* text) const {
  if (condition) return;
  std::fprintf(stderr, "%s: assertion failed: %s\n", interface_.glue_source, text);
  std::fflush(nullptr);
  std::abort();
}

EntryPoint Library::Find(const char* name) const {
  const std::string exact = name;
  if (EntryPoint entry = FindExport(module_, exact)) return entry;
  const std::string lower = ToCase(exact, std::tolower);
  const std::string upper = ToCase(exact, std::toupper);
  for (const std::string& spelling : {lower + "_", upper + "_", exact + "_", lower, upper}) {
    if (EntryPoint entry = FindExport(module_, spelling)) return entry;
  }
  return nullptr;
}

// As Find, but a missing name is reported, also on standard output.
EntryPoint Library::Require(const char* name, MessageBuffer& message) {
  EntryPoint entry = Find(name);
  if (entry == nullptr) {
    const std::string text = "Could not load symbol '" + std::string(name) + "': ";
    message.Write(text);
    const std::string_view shown = message.HasField() ? message.Text() : text;
    std::printf("%.*s\n", static_cast<int>(shown.size()), shown.data());
  }
  return entry;
}

bool Library::BindEntries(MessageBuffer& message) {
  const auto require = [&](EntryPoint& entry, const char* name) {
    return name == nullptr || (entry = Require(name, message)) != nullptr;
  };
  return require(create_, interface_.create_entry) &&
         require(create_with_directory_, interface_.create_with_directory_entry) &&
         require(free_, interface_.free_entry) && require(check_, interface_.check_entry) &&
         require(version_, interface_.version_entry);
}

// A function whose signature the library refuses keeps an empty slot; it is no reason to refuse the
// library.
bool Library::BindFunctions(MessageBuffer& message) {
  const auto check = reinterpret_cast<CheckEntry>(check_);
  for (FunctionBase* function : functions_) {
    function->slot_ = nullptr;
    const int arguments = static_cast<int>(function->codes_.size()) - 1;
    if (check(function->name_, arguments, function->codes_.data(), message.ForLibrary()) == 0) {
      continue;
    }
    function->slot_ = Require(function->name_, message);
    if (function->slot_ == nullptr) return false;
  }
  return true;
}

bool Library::Bind(MessageBuffer& message) {
  if (!BindEntries(message)) return false;
  int compatibility = 0;
  const auto version = reinterpret_cast<VersionEntry>(version_);
  if (version(interface_.version, message.ForLibrary(), &compatibility) == 0) {
    message.TakeLibraryText();
    return false;
  }
  if (interface_.set_load_path_entry != nullptr) {
    set_load_path_ = Find(interface_.set_load_path_entry);
    get_load_path_ = Find(interface_.get_load_path_entry);
  }
  if (!BindFunctions(message)) return false;
  message.TakeLibraryText();
  return true;
}

bool Library::Load(const std::string& file_name, MessageBuffer& message) {
  if (loaded_flag_) return true;
  module_ = LoadModule(file_name);
  if (module_ == nullptr) {
    message.Write("Could not load shared library " + file_name + ": " + ModuleFailure());
    return false;
  }
  message.Clear();
  const bool bound = Bind(message);
  if (!bound) Unload();
  return bound;
}

// Takes every address out of use before it becomes invalid: a later call is then a missing
// function, a later free a failed assertion.
void Library::Unload() {
  for (FunctionBase* function : functions_) function->slot_ = nullptr;
  create_ = create_with_directory_ = free_ = check_ = version_ = nullptr;
  set_load_path_ = get_load_path_ = nullptr;
  UnloadModule(module_);
  module_ = nullptr;
  loaded_flag_ = false;
}

// `directory` is empty or a directory's name without trailing blanks.
bool Library::LoadUnderLock(const std::string& directory, std::span<char> field) {
  const auto lock = Lock(library_lock_);
  MessageBuffer message(field);
  if (!loaded_flag_) {
    std::string file_name = directory;
    if (!directory.empty() && !IsDirectorySeparator(directory.back())) {
      file_name += DirectorySeparator();
    }
    file_name.append(interface_.base_name).append("64").append(ModuleSuffix());
    loaded_flag_ = Load(file_name, message);
    if (loaded_flag_ && set_load_path_ != nullptr && !directory.empty()) {
      reinterpret_cast<SetLoadPathEntry>(set_load_path_)(directory.c_str());
    }
  }
  message.Finish();
  return loaded_flag_;
}

bool Library::GetReady(std::string_view directory, std::span<char> message) {
  return LoadUnderLock(std::string(Trimmed(directory).substr(0, kLongestDirectory)), message);
}

bool Library::Create(Handle& handle, std::span<char> message) {
  if (!LoadUnderLock({}, message)) return false;
  Assert(create_ != nullptr, interface_.create_entry);
  handle = nullptr;
  reinterpret_cast<CreateEntry>(create_)(&handle);
  if (handle == nullptr) {
    MessageBuffer text(message);
    text.Write("Error while creating object");
    text.Finish();
    return false;
  }
  const auto lock = Lock(object_lock_);
  ++object_count_;
  return true;
}

int Library::Free(Handle& handle) {
  Assert(free_ != nullptr, interface_.free_entry);
  reinterpret_cast<FreeEntry>(free_)(&handle);
  const auto lock = Lock(object_lock_);
  --object_count_;
  if (loaded_flag_ && object_count_ == 0) Unload();
  return 1;
}

void Library::ReportMissing(const char* function) {
  // In a buffer of its own: memory may be what is missing.
  std::array<char, 128> message;
  const int length = std::snprintf(message.data(), message.size(),
                                   "%s could not be loaded or has wrong signature!", function);
  {
    const auto lock = Lock(library_lock_);
    ++api_error_count_;
  }
  if (screen_indicator_) {
    std::printf("FIX ME in C glu: %s\n", message.data());
    std::fflush(stdout);
  }
  bool refused = false;
  {
    const auto lock = Lock(library_lock_);
    const std::string_view text(message.data(), static_cast<std::size_t>(length));
    refused = error_callback_ != nullptr && error_callback_(api_error_count_, text) != 0;
  }
  if (refused) std::exit(kMissingFunctionExitCode);
  Assert(!exception_indicator_, "!exceptionIndicator");
  if (exit_indicator_) std::exit(kMissingFunctionExitCode);
}

}  // namespace linfit
