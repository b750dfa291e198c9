#include "tptdclib/exports.h"

#include <string>

#include "base/end_process.h"
#include "base/short_string.h"
#include "base/text_file.h"
#include "tptdclib/option_table.h"

using host::Guarded;
using host::OptionTable;
using host::ShortStringText;
using host::ToShortString;

namespace {

constexpr int kInterfaceVersion = 4;

constexpr host::Signature kSignatures[] = {TPTDCLIB_FUNCTIONS(HOST_SIGNATURE)};

std::string load_path;

OptionTable& Of(void* handle) {
  return *static_cast<OptionTable*>(handle);
}

// Where memory runs out or a file fails, the options would not be those of the user: the process
// ends.
template <class Body>
auto OrEnd(Body body) noexcept {
  return host::OrEnd("tptdclib64", body);
}

}  // namespace

void XCreate(void** handle) {
  host::CreateObject<OptionTable>(handle);
}

void XFree(void** handle) {
  host::FreeObject<OptionTable>(handle);
}

int CXCheck(const char* name, int arguments, const int* codes, char* message) {
  return host::CheckSignature(kSignatures, name, arguments, codes, message);
}

int CXAPIVersion(int version, char* message, int* compatibility) {
  return host::CheckVersion("option library", kInterfaceVersion, version, message, compatibility);
}

void CoptSetLoadPath(const char* directory) {
  Guarded([&] { load_path = directory; });
}

void CoptGetLoadPath(char* directory) {
  host::PutMessage(load_path, directory);
}

int optReadDefinition(void* handle, const char* file) {
  return OrEnd(
      [&] { return Of(handle).ReadDefinition(host::FromUtf8(ShortStringText(file))) ? 0 : 1; });
}

int optReadParameterFile(void* handle, const char* file) {
  return OrEnd(
      [&] { return Of(handle).ReadParameterFile(host::FromUtf8(ShortStringText(file))) ? 0 : 1; });
}

void optEchoSet(void* handle, int on) {
  Of(handle).SetEcho(on != 0);
}

int optMessageCount(void* handle) {
  return static_cast<int>(Of(handle).Messages().size());
}

void optGetMessage(void* handle, int number, char* text, int* kind) {
  const std::vector<OptionTable::Message>& messages = Of(handle).Messages();
  if (number < 1 || static_cast<std::size_t>(number) > messages.size()) {
    ToShortString("", text);
    *kind = 0;
    return;
  }
  const OptionTable::Message& message = messages[static_cast<std::size_t>(number) - 1];
  ToShortString(message.text, text);
  *kind = static_cast<int>(message.kind);
}

int optGetIntStr(void* handle, const char* key) {
  return OrEnd([&] { return Of(handle).Integer(ShortStringText(key)); });
}

void optGetStrStr(void* handle, const char* key, char* value) {
  ToShortString("", value);
  OrEnd([&] { ToShortString(Of(handle).Text(ShortStringText(key)), value); });
}
