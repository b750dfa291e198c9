// Option library.
#include "binding/optf9glu.h"
#include "tests/doubles/exports.h"

namespace {

using doubles::Call;
using doubles::FromShort;

doubles::ObjectKind options{"option object"};

int DefaultOf(const std::string& key) {
  const std::map<std::string, int> defaults{
      {"ADD_CONSTANT_TERM", 2}, {"DEBUG_LEVEL", 0}, {"MAXN", 1000}, {"MAXP", 25}};
  return defaults.at(key);
}

}  // namespace

DOUBLES_ENTRIES(options, , )

DOUBLES_EXPORT void CoptSetLoadPath(const char* directory) {
  doubles::TraceLoading("CoptSetLoadPath " + doubles::Shown(std::string(directory)));
}
DOUBLES_EXPORT int optReadDefinition(void* h, const char* file) {
  return Call(options, h, "optReadDefinition", FromShort(file)).Int(0);
}
DOUBLES_EXPORT void optEchoSet(void* h, int flag) {
  const Call call(options, h, "optEchoSet", flag);
}
DOUBLES_EXPORT int optReadParameterFile(void* h, const char* file) {
  return Call(options, h, "optReadParameterFile", FromShort(file)).Int(0);
}
DOUBLES_EXPORT int optMessageCount(void* h) {
  const int count = static_cast<int>(doubles::CurrentScript().messages.size());
  return Call(options, h, "optMessageCount").Int(count);
}
DOUBLES_EXPORT void optGetMessage(void* h, int number, char* text, int* kind) {
  const Call call(options, h, "optGetMessage", number);
  const std::vector<doubles::Message>& messages = doubles::CurrentScript().messages;
  const auto place = static_cast<std::size_t>(number - 1);
  const doubles::Message message = place < messages.size() ? messages[place] : doubles::Message();
  call.Give(text, message.text);
  *kind = message.kind;
}
DOUBLES_EXPORT int optGetIntStr(void* h, const char* key) {
  return Call(options, h, "optGetIntStr", FromShort(key)).Int(DefaultOf(FromShort(key)));
}
DOUBLES_EXPORT void optGetStrStr(void* h, const char* key, char* value) {
  Call(options, h, "optGetStrStr", FromShort(key)).Give(value, "linfit.tdx");
}

namespace linfit {
LINFIT_OPT_FUNCTIONS(DOUBLES_SAME_TYPE);
}  // namespace linfit
