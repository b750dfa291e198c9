#include "base/temporary_file.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <system_error>

#include "tests/support/program.h"

namespace host {
namespace {

namespace fs = std::filesystem;
using testing_support::ReadFile;
using testing_support::TemporaryDirectory;
using testing_support::WriteFile;

TEST(TemporaryFile, IsNewAndAsPrivateAsItsTarget) {
  const TemporaryDirectory directory;
  const fs::path target = directory / "a.txt";
  WriteFile(target, "earlier");
  fs::permissions(target, fs::perms::owner_read | fs::perms::owner_write);
  const fs::path first = CreateTemporaryFile(target);
  const fs::path second = CreateTemporaryFile(target);
  EXPECT_NE(first, second);
  EXPECT_EQ(first.parent_path(), target.parent_path());
#ifndef _WIN32
  EXPECT_EQ(fs::status(first).permissions(), fs::status(target).permissions());
#endif
  EXPECT_THROW(CreateNew(first, target), std::system_error);
  WriteFile(first, "new");
  MoveOver(first, target);
  EXPECT_EQ(ReadFile(target), "new");
  RemoveTemporaryFiles(target, CurrentProcessNumber() + 1);
  EXPECT_TRUE(fs::exists(second));
  RemoveTemporaryFiles(target, CurrentProcessNumber());
  EXPECT_FALSE(fs::exists(second));
}

TEST(TemporaryFile, WhatEndedProcessesLeftGoes) {
  const TemporaryDirectory directory;
  const fs::path target = directory / "a.txt";
  const std::string own = CreateTemporaryFile(target).filename().string();
  const std::string process = std::to_string(CurrentProcessNumber());
  const std::string behind_process = own.substr(own.find(process + "-") + process.size());
  const std::string gone = "a.txt.tmp-999999999" + behind_process;
  const std::string elsewhere = "a.txt.tmp-999999999-0-0";
  const std::string elsewhere_long_ago = "a.txt.tmp-999999999-0-1";
  for (const std::string& name : {gone, elsewhere, elsewhere_long_ago, std::string("a.txt.tmp-1-x"),
                                  std::string("a.txt.tmp-mine"), "b" + gone}) {
    WriteFile(directory / name, "");
  }
  fs::last_write_time(directory / elsewhere_long_ago,
                      fs::file_time_type::clock::now() - std::chrono::hours(25));
  MakeTemporaryName(target);
  EXPECT_FALSE(fs::exists(directory / gone));
  EXPECT_FALSE(fs::exists(directory / elsewhere_long_ago));
  for (const std::string& name :
       {own, elsewhere, std::string("a.txt.tmp-1-x"), std::string("a.txt.tmp-mine"), "b" + gone}) {
    EXPECT_TRUE(fs::exists(directory / name)) << name;
  }
}

}  // namespace
}  // namespace host
