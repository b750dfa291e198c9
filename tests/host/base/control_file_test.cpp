#include "base/control_file.h"

#include <gtest/gtest.h>

#include "tests/support/program.h"

namespace {

using testing_support::TemporaryDirectory;

const char* const kWhole =
    "instance = m.db\nstatus_file = s.txt\nlog = -\nsystem_directory = /opt/tavo\n";

class Control : public testing::Test {
 protected:
  host::ControlFile Read(const std::string& text) {
    testing_support::WriteFile(file_, text);
    return host::ReadControlFile(file_);
  }

  TemporaryDirectory directory_;
  std::filesystem::path file_ = directory_ / "control.txt";
};

TEST_F(Control, GivesBackEveryPath) {
  const host::ControlFile control{
      testing_support::FromUtf8("/tmp/with blank/Zürich.db"),
      testing_support::FromUtf8(" = # odd \" name"),
      testing_support::FromUtf8("-"),
      testing_support::FromUtf8("C:\\tavo\\bin\\"),
      testing_support::FromUtf8("\"quoted\""),
      testing_support::FromUtf8("ends with blank "),
  };
  host::WriteControlFile(control, file_);
  const host::ControlFile read = host::ReadControlFile(file_);
  EXPECT_EQ(read.instance, control.instance);
  EXPECT_EQ(read.status_file, control.status_file);
  EXPECT_EQ(read.log, control.log);
  EXPECT_EQ(read.system_directory, control.system_directory);
  EXPECT_EQ(read.option_file, control.option_file);
  EXPECT_EQ(read.timing, control.timing);
}

TEST_F(Control, TakesWhatEditorsWrite) {
  const host::ControlFile control = Read(
      "\xEF\xBB\xBF# made by hand\r\n\r\n\tinstance=m.db\t\r\nstatus_file =\ts.txt\r\n"
      "log = -\r\nsystem_directory = \"\xC3\xBC b\"");
  EXPECT_EQ(testing_support::Utf8(control.instance), "m.db");
  EXPECT_EQ(testing_support::Utf8(control.status_file), "s.txt");
  EXPECT_TRUE(control.log.empty());
  EXPECT_EQ(testing_support::Utf8(control.system_directory), "\xC3\xBC b");
  EXPECT_TRUE(control.option_file.empty());
}

TEST_F(Control, RefusesWithTheLine) {
  const std::string whole = kWhole;
  const std::pair<std::string, std::string> cases[] = {
      {whole + "colour = red\n", "(5): unknown key \"colour\""},
      {whole + "instance = n.db\n", "(5): \"instance\" is given twice"},
      {whole + "\n#\njust text\n", "(7): expected `key = value`"},
      {whole + "option_file =\n", "(5): \"option_file\" has no value"},
      {whole + "option_file = \"\"\n", "(5): \"option_file\" has no value"},
      {whole + "option_file = " + std::string(256, 'x') + "\n", "(5): \"option_file\" is longer"},
      {whole + "timing = " + std::string("a\0b", 3) + "\n", "(5): zero byte"},
      {whole + "timing = ./s.txt\n", "named for two purposes"},
      {whole + "timing = m.db\n", "named for two purposes"},
      {"instance = m.db\nstatus_file = s.txt\nlog = -\n", "\"system_directory\" is missing"},
      {"", "\"instance\" is missing"},
  };
  for (const auto& [text, message] : cases) {
    try {
      Read(text);
      ADD_FAILURE() << "accepted; expected " << message;
    } catch (const host::FileError& error) {
      EXPECT_NE(std::string(error.what()).find("control.txt" + (message[0] == '(' ? message : "")),
                std::string::npos)
          << error.what();
      EXPECT_NE(std::string(error.what()).find(message), std::string::npos) << error.what();
    }
  }
  EXPECT_THROW(host::ReadControlFile(directory_ / "none"), host::FileError);
  EXPECT_THROW(host::ReadControlFile(directory_.Path()), host::FileError);
  host::ControlFile control = Read(kWhole);
  control.instance = "two\nlines";
  EXPECT_THROW(host::WriteControlFile(control, file_), host::FileError);
  EXPECT_EQ(testing_support::ReadFile(file_), kWhole) << "a refused file is not touched";
}

}  // namespace
