#include "tdxdclib/exports.h"

#include <mutex>
#include <set>
#include <string>

#include "base/left_failure.h"
#include "base/short_string.h"
#include "tdxdclib/results_file.h"
#include "tdxdclib/tdx_version.h"

using host::Guarded;
using host::ResultsFile;
using host::ShortStringText;
using host::ToShortString;

namespace {

constexpr int kInterfaceVersion = 7;

constexpr host::Signature kSignatures[] = {TDXDCLIB_FUNCTIONS(HOST_SIGNATURE)};

// The objects that are alive. A process may end without freeing them (the solver does); what they
// have open is then removed here, when the library goes.
class LiveObjects {
 public:
  ~LiveObjects() {
    for (ResultsFile* object : objects_) object->Abandon();
  }
  void Add(ResultsFile* object) {
    const std::lock_guard lock(mutex_);
    objects_.insert(object);
  }
  void Remove(ResultsFile* object) {
    const std::lock_guard lock(mutex_);
    objects_.erase(object);
  }

 private:
  std::mutex mutex_;
  std::set<ResultsFile*> objects_;
};

LiveObjects live_objects;
std::string load_path;

// The reason why there is no file, for the environment's log and status file: the program may have
// no question for it.
void LeaveReason(const ResultsFile& object) {
  Guarded([&] { host::LeaveFailure(object.ErrorText(object.LastError())); });
}

ResultsFile& Of(void* handle) {
  return *static_cast<ResultsFile*>(handle);
}

}  // namespace

void XCreate(void** handle) {
  host::CreateObject<ResultsFile>(handle);
  if (*handle == nullptr) return;
  const bool added = Guarded(false, [&] {
    live_objects.Add(&Of(*handle));
    return true;
  });
  if (!added) host::FreeObject<ResultsFile>(handle);
}

void XFree(void** handle) {
  live_objects.Remove(static_cast<ResultsFile*>(*handle));
  host::FreeObject<ResultsFile>(handle);
}

int CXCheck(const char* name, int arguments, const int* codes, char* message) {
  return host::CheckSignature(kSignatures, name, arguments, codes, message);
}

int CXAPIVersion(int version, char* message, int* compatibility) {
  return host::CheckVersion("results-file library", kInterfaceVersion, version, message,
                            compatibility);
}

void CtdxSetLoadPath(const char* directory) {
  Guarded([&] { load_path = directory; });
}

void CtdxGetLoadPath(char* directory) {
  host::PutMessage(load_path, directory);
}

int tdxGetDLLVersion(void* /*handle*/, char* version) {
  ToShortString(host::kTdxLibraryVersion, version);
  return 1;
}

int tdxOpenWrite(void* handle, const char* file, const char* producer, int* error_number) {
  const bool done = Guarded(
      false, [&] { return Of(handle).Open(ShortStringText(file), ShortStringText(producer)); });
  *error_number = done ? 0 : Of(handle).LastError();
  if (!done) LeaveReason(Of(handle));
  return done ? 1 : 0;
}

int tdxDataWriteStrStart(void* handle, const char* name, const char* text, int dimension, int type,
                         int user_info) {
  return Guarded(0, [&] {
    return Of(handle).StartSymbol({.name = std::string(ShortStringText(name)),
                                   .text = std::string(ShortStringText(text)),
                                   .dimension = dimension,
                                   .type = type,
                                   .user_info = user_info,
                                   .view = {}})
               ? 1
               : 0;
  });
}

int tdxDataWriteStr(void* handle, const char* keys, const double* values) {
  return Guarded(0, [&] { return Of(handle).WriteRecord(keys, values[0]) ? 1 : 0; });
}

int tdxDataWriteDone(void* handle) {
  return Guarded(0, [&] { return Of(handle).EndSymbol() ? 1 : 0; });
}

int tdxClose(void* handle) {
  const bool done = Guarded(false, [&] { return Of(handle).Close(); });
  if (!done) LeaveReason(Of(handle));
  return done ? 0 : 1;
}

int tdxErrorStr(void* handle, int error_number, char* text) {
  ToShortString("", text);
  Guarded([&] { ToShortString(Of(handle).ErrorText(error_number), text); });
  return 1;
}

int tdxGetLastError(void* handle) {
  return Of(handle).LastError();
}

int tdxErrorCount(void* handle) {
  return Of(handle).ErrorCount();
}

int tdxCurrentDim(void* handle) {
  return Of(handle).CurrentDimension();
}
