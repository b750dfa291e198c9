// The library loaded at run time and driven through its C entries, with the solver's definitions.
#include <gtest/gtest.h>

#include "base/short_string.h"
#include "binding/module.h"
#include "tests/support/program.h"
#include "tptdclib/exports.h"

namespace {

std::string Short(const std::string& text) {
  std::string buffer(256, '\0');
  host::ToShortString(text, buffer.data());
  return buffer;
}

TEST(Tptdclib, ReadsTheSolversOptions) {
  const linfit::ModuleHandle module = linfit::LoadModule(TPTDCLIB);
  ASSERT_NE(module, nullptr) << linfit::ModuleFailure();
#define CALL(name) (reinterpret_cast<decltype(::name)*>(linfit::FindExport(module, #name)))
  const testing_support::TemporaryDirectory directory(" ü");
  const std::string file = testing_support::Utf8(directory / "linfit.opt");
  testing_support::WriteFile(directory / "linfit.opt", "maxp 40\n");
  void* opt = nullptr;
  CALL(XCreate)(&opt);
  ASSERT_EQ(CALL(optReadDefinition)(opt, Short(DEFINITION_FILE).data()), 0);
  CALL(optEchoSet)(opt, 1);
  ASSERT_EQ(CALL(optReadParameterFile)(opt, Short(file).data()), 0);
  const std::pair<const char*, int> integers[] = {
      {"ADD_CONSTANT_TERM", 2}, {"DEBUG_LEVEL", 0}, {"MAXN", 1000}, {"MAXP", 40}};
  for (const auto& [key, value] : integers) {
    EXPECT_EQ(CALL(optGetIntStr)(opt, Short(key).data()), value) << key;
  }
  char text[256];
  CALL(optGetStrStr)(opt, Short("TDX_FILE_NAME").data(), text);
  EXPECT_EQ(host::ShortStringText(text), "linfit.tdx");
  ASSERT_EQ(CALL(optMessageCount)(opt), 1);
  int kind = -1;
  CALL(optGetMessage)(opt, 1, text, &kind);
  EXPECT_EQ(host::ShortStringText(text), "maxp 40");
  EXPECT_EQ(kind, 1);
  for (const int number : {0, 2}) {
    CALL(optGetMessage)(opt, number, text, &kind);
    EXPECT_EQ(text[0], '\0');
    EXPECT_EQ(kind, 0);
  }
  EXPECT_NE(CALL(optReadParameterFile)(opt, Short(file + "x").data()), 0);
  EXPECT_NE(CALL(optReadDefinition)(opt, Short(file).data()), 0);
  CALL(XFree)(&opt);
  EXPECT_EQ(opt, nullptr);
  CALL(CoptSetLoadPath)("/some/where");
  CALL(CoptGetLoadPath)(text);
  EXPECT_STREQ(text, "/some/where");
  linfit::UnloadModule(module);
}

}  // namespace
