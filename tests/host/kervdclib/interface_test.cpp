// The host's libraries offer exactly what the solver calls: each function has the C type and the
// signature codes that the solver has for it.
#include <gtest/gtest.h>

#include <type_traits>

#include "binding/dctmf9glu.h"
#include "binding/module.h"
#include "binding/optf9glu.h"
#include "binding/palmf9glu.h"
#include "binding/tevmf9glu.h"
#include "binding/tmomf9glu.h"
#include "kervdclib/exports.h"
#include "tptdclib/exports.h"

namespace {

struct Expected {
  const char* name;
  std::span<const int> codes;
};

#define HOST_SAME(Library, function)                                                \
  []() -> Expected {                                                                \
    using abi = decltype(linfit::Library::function)::abi;                           \
    static_assert(std::is_same_v<decltype(&function), abi::c_function>, #function); \
    return {#function, abi::codes};                                                 \
  }()

const Expected kPal[] = {HOST_SAME(Pal, palSetAuditLine), HOST_SAME(Pal, palGetAuditLine)};
const Expected kTev[] = {HOST_SAME(Tev, tevInitEnvironmentLegacy),
                         HOST_SAME(Tev, tevLog),
                         HOST_SAME(Tev, tevLogStat),
                         HOST_SAME(Tev, tevStat),
                         HOST_SAME(Tev, tevStatC),
                         HOST_SAME(Tev, tevStatAudit),
                         HOST_SAME(Tev, tevStatCon),
                         HOST_SAME(Tev, tevStatCoff),
                         HOST_SAME(Tev, tevStatPChar),
                         HOST_SAME(Tev, tevGetStrOpt),
                         HOST_SAME(Tev, tevTimeDiff)};
const Expected kTmo[] = {HOST_SAME(Tmo, tmoRegisterEnvironment),
                         HOST_SAME(Tmo, tmoLoadDataLegacy),
                         HOST_SAME(Tmo, tmoOptFile),
                         HOST_SAME(Tmo, tmoNameOptFile),
                         HOST_SAME(Tmo, tmoDict),
                         HOST_SAME(Tmo, tmoDictionary),
                         HOST_SAME(Tmo, tmoIndexBaseSet),
                         HOST_SAME(Tmo, tmoObjStyleSet),
                         HOST_SAME(Tmo, tmoPinfSet),
                         HOST_SAME(Tmo, tmoMinfSet),
                         HOST_SAME(Tmo, tmoM),
                         HOST_SAME(Tmo, tmoN),
                         HOST_SAME(Tmo, tmoObjVar),
                         HOST_SAME(Tmo, tmoObjRow),
                         HOST_SAME(Tmo, tmoGetColStat),
                         HOST_SAME(Tmo, tmoGetColJacInfoOne),
                         HOST_SAME(Tmo, tmoGetRhsOne),
                         HOST_SAME(Tmo, tmoGetEquTypeOne),
                         HOST_SAME(Tmo, tmoGetVarLowerOne),
                         HOST_SAME(Tmo, tmoGetVarUpperOne),
                         HOST_SAME(Tmo, tmoSetHeadnTail),
                         HOST_SAME(Tmo, tmoSetSolutionVarRec),
                         HOST_SAME(Tmo, tmoSetSolutionEquRec),
                         HOST_SAME(Tmo, tmoModelStatSet),
                         HOST_SAME(Tmo, tmoSolveStatSet),
                         HOST_SAME(Tmo, tmoUnloadSolutionLegacy)};
const Expected kDct[] = {HOST_SAME(Dct, dctSymName), HOST_SAME(Dct, dctUelLabel),
                         HOST_SAME(Dct, dctColUels), HOST_SAME(Dct, dctRowUels)};
const Expected kOpt[] = {HOST_SAME(Opt, optReadDefinition),    HOST_SAME(Opt, optEchoSet),
                         HOST_SAME(Opt, optReadParameterFile), HOST_SAME(Opt, optMessageCount),
                         HOST_SAME(Opt, optGetMessage),        HOST_SAME(Opt, optGetIntStr),
                         HOST_SAME(Opt, optGetStrStr)};

template <class Function>
Function* Entry(linfit::ModuleHandle module, const std::string& name) {
  return reinterpret_cast<Function*>(linfit::FindExport(module, name));
}

TEST(HostInterface, AcceptsTheSolversSignaturesAndVersionsOnly) {
  struct Library {
    const char* file;
    const char* prefix;
    std::span<const Expected> functions;
    int version;
  };
  const Library libraries[] = {{KERVDCLIB, "pal", kPal, 1},
                               {KERVDCLIB, "tev", kTev, 6},
                               {KERVDCLIB, "tmo", kTmo, 16},
                               {KERVDCLIB, "dct", kDct, 2},
                               {TPTDCLIB, "", kOpt, 4}};
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
