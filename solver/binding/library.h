// One library of the modelling system, loaded at run time: loading with its checks, objects and
// their count, and what happens when a function is called that the library does not offer.
//
// A binding is a struct derived from Library with one Function member per library function. The
// functions stand in one list per library, from which everything about them follows:
//
//   #define LINFIT_PAL_FUNCTIONS(entry)
//     entry(palSetAuditLine, void(std::string_view));
//     entry(palGetAuditLine, ShortResult())
//   struct Pal : Library { ... LINFIT_PAL_FUNCTIONS(LINFIT_ENTRY); };
//
// The members enter themselves into the library's table of functions, so the order of the list is
// the order of checking. A binding whose library is still loaded at the end of its life leaves it
// loaded: objects may live in it, and the process is about to end.
#pragma once

#include <cstddef>
#include <mutex>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "binding/abi.h"
#include "binding/module.h"

namespace linfit {

// What makes up one library's binding. A null name: the library has no such entry.
struct LibraryInterface {
  const char* base_name;    // of the file, without "64" and suffix
  const char* glue_source;  // named by failed assertions
  const char* create_entry;
  const char* create_with_directory_entry;
  const char* free_entry;
  const char* check_entry;
  const char* version_entry;
  const char* set_load_path_entry;  // comes with the one that gets it
  const char* get_load_path_entry;
  int version;
};

// Told of each call of a missing function, with the number of such calls so far. A result other
// than 0 ends the process with exit code 123.
using MissingFunctionCallback = int (*)(int& error_count, std::string_view message);

class Library;

// The untyped part of a library function.
class FunctionBase {
 public:
  FunctionBase(const FunctionBase&) = delete;
  FunctionBase& operator=(const FunctionBase&) = delete;

 protected:
  FunctionBase(Library& library, const char* name, std::span<const int> codes);
  ~FunctionBase() = default;

  Library& library_;
  const char* name_;
  std::span<const int> codes_;  // result, then arguments
  EntryPoint slot_ = nullptr;   // null: not loaded, or refused by the library's check

 private:
  friend class Library;
};

class Library {
 public:
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;

  [[nodiscard]] bool LoadedFlag() const { return loaded_flag_; }
  [[nodiscard]] int ObjectCount() const { return object_count_; }
  // Number of calls of missing functions so far.
  [[nodiscard]] int APIErrorCount() const { return api_error_count_; }

  // What a call of a missing function does. At the start, and in the solver for ever: it is echoed
  // on standard output and ends the process with exit code 123; it fails no assertion, and there is
  // no callback.
  void SetScreenIndicator(bool on) { screen_indicator_ = on; }
  void SetExitIndicator(bool on) { exit_indicator_ = on; }
  void SetExceptionIndicator(bool on) { exception_indicator_ = on; }
  void SetErrorCallback(MissingFunctionCallback callback) { error_callback_ = callback; }
  // Whether loading and counting take the locks; off at the start, since the solver has one thread.
  void SetLocking(bool on) { locking_ = on; }

  // A function was called that isn't bound: counts, reports and, by default, ends the process.
  void ReportMissing(const char* function);

 protected:
  explicit Library(const LibraryInterface& interface);
  ~Library() = default;

  // Makes an object, loading the library first if need be. False: none was made, and `message` says
  // why. In either case `message` is blank-padded afterwards.
  bool Create(Handle& handle, std::span<char> message);
  // Loads the library if need be, from `directory` unless that is blank. True when it is loaded;
  // `message` as for Create.
  bool GetReady(std::string_view directory, std::span<char> message);
  // Frees an object and clears its handle; the last object takes the library with it. Gives 1.
  int Free(Handle& handle);

 private:
  friend class FunctionBase;
  class MessageBuffer;

  bool LoadUnderLock(const std::string& directory, std::span<char> field);
  bool Load(const std::string& file_name, MessageBuffer& message);
  bool Bind(MessageBuffer& message);
  bool BindEntries(MessageBuffer& message);
  bool BindFunctions(MessageBuffer& message);
  EntryPoint Require(const char* name, MessageBuffer& message);
  EntryPoint Find(const char* name) const;
  void Unload();
  void Assert(bool condition, const char* text) const;
  std::unique_lock<std::recursive_mutex> Lock(std::recursive_mutex& mutex) const;

  LibraryInterface interface_;
  std::vector<FunctionBase*> functions_;

  ModuleHandle module_ = nullptr;
  EntryPoint create_ = nullptr;
  EntryPoint create_with_directory_ = nullptr;  // part of the interface; the solver never calls it
  EntryPoint free_ = nullptr;
  EntryPoint check_ = nullptr;
  EntryPoint version_ = nullptr;
  EntryPoint set_load_path_ = nullptr;
  EntryPoint get_load_path_ = nullptr;  // as create_with_directory_

  bool loaded_flag_ = false;
  int object_count_ = 0;
  int api_error_count_ = 0;
  bool screen_indicator_ = true;
  bool exit_indicator_ = true;
  bool exception_indicator_ = false;
  MissingFunctionCallback error_callback_ = nullptr;
  bool locking_ = false;
  // Recursive, since a callback may call a missing function in its turn.
  std::recursive_mutex library_lock_;  // loading and LoadedFlag, APIErrorCount and the callback
  // ObjectCount and unloading; not taken while library_lock_ is held.
  std::recursive_mutex object_lock_;
};

inline FunctionBase::FunctionBase(Library& library, const char* name, std::span<const int> codes)
    : library_(library), name_(name), codes_(codes) {
  library.functions_.push_back(this);
}

template <class Signature>
class Function;

template <class R, class... A>
class Function<R(A...)> : public FunctionBase {
 public:
  using abi = Abi<R(A...)>;
  Function(Library& library, const char* name) : FunctionBase(library, name, abi::codes) {}

  R operator()(Handle object, A... args) const {
    if (slot_ == nullptr) {
      library_.ReportMissing(name_);
      return abi::CallMissing(args...);
    }
    return abi::Call(reinterpret_cast<typename abi::c_function>(slot_), object, args...);
  }
};

}  // namespace linfit

// Declares the member of a binding for one library function; for the binding's list of functions.
#define LINFIT_ENTRY(name, ...)          \
  ::linfit::Function<__VA_ARGS__> name { \
    *this, #name                         \
  }
