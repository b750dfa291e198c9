// Results-file library.
#include "binding/tdxf9glu.h"
#include "tests/doubles/exports.h"

namespace {

using doubles::Call;
using doubles::FromShort;

doubles::ObjectKind results_file{"results-file object"};
std::string last_symbol;
int current_dimension = 0;

}  // namespace

DOUBLES_ENTRIES(results_file, , )

DOUBLES_EXPORT void CtdxSetLoadPath(const char* directory) {
  doubles::TraceLoading("CtdxSetLoadPath " + doubles::Shown(std::string(directory)));
}
DOUBLES_EXPORT int tdxGetDLLVersion(void* h, char* version) {
  return Call(results_file, h, "tdxGetDLLVersion").Give(version, "scripted results file").Int(1);
}
DOUBLES_EXPORT int tdxOpenWrite(void* h, const char* file, const char* producer, int* error) {
  *error = 0;
  return Call(results_file, h, "tdxOpenWrite", FromShort(file), FromShort(producer)).Int(1);
}
DOUBLES_EXPORT int tdxDataWriteStrStart(void* h, const char* symbol, const char* text,
                                        int dimension, int type, int user_info) {
  last_symbol = FromShort(symbol);
  current_dimension = dimension;
  return Call(results_file, h, "tdxDataWriteStrStart", last_symbol, FromShort(text), dimension,
              type, user_info)
      .Int(1);
}
DOUBLES_EXPORT int tdxDataWriteStr(void* h, const char* keys, const double* values) {
  doubles::RequireLive(results_file, h, "tdxDataWriteStr");
  std::string line = "tdxDataWriteStr";
  for (int k = 0; k < current_dimension; ++k, keys += 256) {
    line.append(" ").append(doubles::Shown(FromShort(keys)));
  }
  for (int k = 0; k < 5; ++k) line.append(" ").append(doubles::Shown(values[k]));
  doubles::Trace(line);
  doubles::CountCall("tdxDataWriteStr");
  const doubles::Answer* answer = doubles::FindAnswer("tdxDataWriteStr", "");
  return answer != nullptr && answer->number ? static_cast<int>(*answer->number) : 1;
}
DOUBLES_EXPORT int tdxDataWriteDone(void* h) {
  return Call(results_file, h, "tdxDataWriteDone").Int(1);
}
DOUBLES_EXPORT int tdxClose(void* h) {
  return Call(results_file, h, "tdxClose").Int(0);
}
DOUBLES_EXPORT int tdxGetLastError(void* h) {
  return Call(results_file, h, "tdxGetLastError").Int(0);
}
DOUBLES_EXPORT int tdxErrorStr(void* h, int number, char* text) {
  return Call(results_file, h, "tdxErrorStr", number).Give(text).Int(1);
}
DOUBLES_EXPORT int tdxErrorCount(void* h) {
  const Call call(results_file, h, "tdxErrorCount");
  const doubles::Answer* answer = doubles::FindAnswer("tdxErrorCount", doubles::Shown(last_symbol));
  return answer != nullptr && answer->number ? static_cast<int>(*answer->number) : 0;
}
// Not traced: the binding asks it before each record.
DOUBLES_EXPORT int tdxCurrentDim(void* h) {
  doubles::RequireLive(results_file, h, "tdxCurrentDim");
  return doubles::Scripted("tdxCurrentDim", 0, current_dimension);
}

namespace linfit {
LINFIT_TDX_FUNCTIONS(DOUBLES_SAME_TYPE);
}  // namespace linfit
