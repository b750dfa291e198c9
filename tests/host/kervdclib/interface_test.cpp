// The host's libraries offer exactly what the solver calls: each function has the C type and the
// signature codes that the solver has for it.
#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <vector>

#include "binding/dctmf9glu.h"
#include "binding/module.h"
#include "binding/optf9glu.h"
#include "binding/palmf9glu.h"
#include "binding/tdxf9glu.h"
#include "binding/tevmf9glu.h"
#include "binding/tmomf9glu.h"
#include "kervdclib/exports.h"
#include "tdxdclib/exports.h"
#include "tptdclib/exports.h"

namespace {

struct Expected {
  const char* name;
  std::span<const int> codes;
};

// What the solver calls, from its own lists.
#define HOST_EXPECTED(name, ...)                                                          \
  static_assert(std::is_same_v<decltype(&::name), linfit::Abi<__VA_ARGS__>::c_function>); \
  functions.push_back({#name, linfit::Abi<__VA_ARGS__>::codes})

using Functions = std::vector<Expected>;
Functions PalFunctions() {
  using namespace linfit;  // NOLINT: the types in the list
  Functions functions;
  LINFIT_PAL_FUNCTIONS(HOST_EXPECTED);
  return functions;
}
Functions TevFunctions() {
  using namespace linfit;  // NOLINT: the types in the list
  Functions functions;
  LINFIT_TEV_FUNCTIONS(HOST_EXPECTED);
  return functions;
}
Functions TmoFunctions() {
  using namespace linfit;  // NOLINT: the types in the list
  Functions functions;
  LINFIT_TMO_FUNCTIONS(HOST_EXPECTED);
  return functions;
}
Functions DctFunctions() {
  using namespace linfit;  // NOLINT: the types in the list
  Functions functions;
  LINFIT_DCT_FUNCTIONS(HOST_EXPECTED);
  return functions;
}
Functions OptFunctions() {
  using namespace linfit;  // NOLINT: the types in the list
  Functions functions;
  LINFIT_OPT_FUNCTIONS(HOST_EXPECTED);
  return functions;
}
Functions TdxFunctions() {
  using namespace linfit;  // NOLINT: the types in the list
  Functions functions;
  LINFIT_TDX_FUNCTIONS(HOST_EXPECTED);
  return functions;
}

template <class Function>
Function* Entry(linfit::ModuleHandle module, const std::string& name) {
  return reinterpret_cast<Function*>(linfit::FindExport(module, name));
}

TEST(HostInterface, AcceptsTheSolversSignaturesAndVersionsOnly) {
  struct Library {
    const char* file;
    const char* prefix;
    Functions functions;
    int version;
  };
  const Library libraries[] = {
      {KERVDCLIB, "pal", PalFunctions(), 1},  {KERVDCLIB, "tev", TevFunctions(), 6},
      {KERVDCLIB, "tmo", TmoFunctions(), 16}, {KERVDCLIB, "dct", DctFunctions(), 2},
      {TPTDCLIB, "", OptFunctions(), 4},      {TDXDCLIB, "", TdxFunctions(), 7}};
  for (const Library& library : libraries) {
    const linfit::ModuleHandle module = linfit::LoadModule(library.file);
    ASSERT_NE(module, nullptr) << linfit::ModuleFailure();
    const std::string prefix = library.prefix;
    for (const char* entry : {"XCreate", "XFree"}) {
      EXPECT_NE(linfit::FindExport(module, prefix + entry), nullptr) << prefix << entry;
    }
    auto* check = Entry<decltype(CXCheck)>(module, "C" + prefix + "XCheck");
    auto* version = Entry<decltype(CXAPIVersion)>(module, "C" + prefix + "XAPIVersion");
    ASSERT_TRUE(check != nullptr && version != nullptr);
    char message[256] = "";
    int compatible = -1;
    EXPECT_NE(version(library.version, message, &compatible), 0);
    for (const int other : {library.version - 1, library.version + 1}) {
      EXPECT_EQ(version(other, message, &compatible), 0);
      EXPECT_NE(std::string(message).find(std::to_string(other)), std::string::npos);
    }
    for (const Expected& function : library.functions) {
      const int arguments = static_cast<int>(function.codes.size()) - 1;
      EXPECT_NE(check(function.name, arguments, function.codes.data(), message), 0)
          << function.name << ": " << message;
      EXPECT_NE(linfit::FindExport(module, function.name), nullptr) << function.name;
      std::vector<int> wrong(function.codes.begin(), function.codes.end());
      wrong.back() += 1;
      EXPECT_EQ(check(function.name, arguments, wrong.data(), message), 0) << function.name;
      wrong.push_back(3);
      EXPECT_EQ(check(function.name, arguments + 1, wrong.data(), message), 0) << function.name;
    }
    const int result = 0;
    EXPECT_EQ(check("noSuchFunction", 0, &result, message), 0);
    EXPECT_STREQ(message, "there is no function noSuchFunction");
    linfit::UnloadModule(module);
  }
}

}  // namespace
