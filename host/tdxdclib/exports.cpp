// The functions that the results-file library exports.
//
// Every function takes the object's handle first; int results are 1 on success and 0 on failure,
// but for tdxClose, where 0 is success. No exception leaves the library.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <exception>
#include <mutex>
#include <set>
#include <span>
#include <string>
#include <string_view>

#include "base/short_string.h"
#include "tdxdclib/tdx_version.h"
#include "tdxdclib/tdx_writer.h"

namespace {

using host::TdxWriter;

constexpr int kInterfaceVersion = 7;
constexpr std::size_t kMessageBuffer = 256;  // of the version and check entries

// A function's name and its signature: the result's code, then one code per argument. 3 is an int,
// 4 an int by reference, 11 and 12 short strings in and out, 53 a value record, 55 an index tuple.
struct Signature {
  std::string_view name;
  std::array<int, 6> codes;
  std::size_t count;
};

constexpr std::array<Signature, 10> kSignatures{{
    {"tdxGetDLLVersion", {3, 12}, 2},
    {"tdxOpenWrite", {3, 11, 11, 4}, 4},
    {"tdxDataWriteStrStart", {3, 11, 11, 3, 3, 3}, 6},
    {"tdxDataWriteStr", {3, 55, 53}, 3},
    {"tdxDataWriteDone", {3}, 1},
    {"tdxClose", {3}, 1},
    {"tdxGetLastError", {3}, 1},
    {"tdxErrorStr", {3, 3, 12}, 3},
    {"tdxErrorCount", {3}, 1},
    {"tdxCurrentDim", {3}, 1},
}};

// The objects that are alive. A process may end without freeing them (the solver does); what they
// have open is then removed here, when the library goes.
class LiveObjects {
 public:
  ~LiveObjects() {
    for (TdxWriter* object : objects_) object->Abandon();
  }
  void Add(TdxWriter* object) {
    const std::lock_guard lock(mutex_);
    objects_.insert(object);
  }
  void Remove(TdxWriter* object) {
    const std::lock_guard lock(mutex_);
    objects_.erase(object);
  }

 private:
  std::mutex mutex_;
  std::set<TdxWriter*> objects_;
};

LiveObjects live_objects;
std::string load_path;

TdxWriter& Object(void* handle) {
  return *static_cast<TdxWriter*>(handle);
}

void PutMessage(std::string_view text, char* message) {
  if (message == nullptr) return;
  const std::size_t length = std::min(text.size(), kMessageBuffer - 1);
  std::copy_n(text.data(), length, message);
  message[length] = '\0';
}

}  // namespace

extern "C" {

void XCreate(void** handle) {
  *handle = nullptr;
  try {
    auto* object = new TdxWriter;
    live_objects.Add(object);
    *handle = object;
  } catch (const std::exception&) {
    *handle = nullptr;
  }
}

void XFree(void** handle) {
  if (*handle == nullptr) return;
  live_objects.Remove(&Object(*handle));
  delete &Object(*handle);
  *handle = nullptr;
}

int CXAPIVersion(int interface_version, char* message, int* compatibility) {
  const bool accepted = interface_version == kInterfaceVersion;
  if (compatibility != nullptr) *compatibility = accepted ? 1 : 0;
  if (!accepted) {
    PutMessage("tdxdclib64: the program asks for interface version " +
                   std::to_string(interface_version) + ", the library offers " +
                   std::to_string(kInterfaceVersion),
               message);
  }
  return accepted ? 1 : 0;
}

int CXCheck(const char* name, int arguments, const int* codes, char* message) {
  const auto* known = std::ranges::find(kSignatures, std::string_view(name), &Signature::name);
  if (known == kSignatures.end()) {
    PutMessage(std::string("tdxdclib64: there is no function ") + name, message);
    return 0;
  }
  const std::span<const int> offered(known->codes.data(), known->count);
  if (arguments < 0 ||
      !std::ranges::equal(offered, std::span(codes, static_cast<std::size_t>(arguments) + 1))) {
    PutMessage(std::string("tdxdclib64: the signature of ") + name + " differs", message);
    return 0;
  }
  return 1;
}

// The library loads nothing itself: the path is kept and given back.
void CtdxSetLoadPath(const char* directory) {
  load_path = directory;
}

void CtdxGetLoadPath(char* directory) {
  PutMessage(load_path, directory);
}

int tdxGetDLLVersion(void*, char* version) {
  host::ToShortString(host::kTdxLibraryVersion, version);
  return 1;
}

int tdxOpenWrite(void* handle, const char* file_name, const char* producer, int* error_number) {
  TdxWriter& object = Object(handle);
  const bool done = object.Open(host::ShortStringText(file_name), host::ShortStringText(producer));
  *error_number = done ? 0 : object.LastError();
  return done ? 1 : 0;
}

int tdxDataWriteStrStart(void* handle, const char* name, const char* text, int dimension, int type,
                         int user_info) {
  return Object(handle).StartSymbol({std::string(host::ShortStringText(name)),
                                     std::string(host::ShortStringText(text)), dimension, type,
                                     user_info})
             ? 1
             : 0;
}

int tdxDataWriteStr(void* handle, const char* keys, const double* values) {
  return Object(handle).WriteRecord(keys, values[0]) ? 1 : 0;
}

int tdxDataWriteDone(void* handle) {
  return Object(handle).EndSymbol() ? 1 : 0;
}

int tdxClose(void* handle) {
  return Object(handle).Close() ? 0 : 1;
}

int tdxErrorCount(void* handle) {
  return Object(handle).ErrorCount();
}

int tdxGetLastError(void* handle) {
  return Object(handle).LastError();
}

int tdxErrorStr(void* handle, int error_number, char* text) {
  host::ToShortString(Object(handle).ErrorText(error_number), text);
  return 1;
}

int tdxCurrentDim(void* handle) {
  return Object(handle).CurrentDimension();
}

}  // extern "C"
