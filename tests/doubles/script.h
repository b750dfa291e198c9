// What the scripted libraries share: the script, the model in it, and the trace. Each of the three
// modules has its own copy of all this; they meet in the trace file. README.md has the script's
// language.
#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#define DOUBLES_EXPORT extern "C" __attribute__((visibility("default")))

namespace doubles {

struct Answer {
  std::optional<double> number;
  std::optional<std::string> text;
  bool null = false;
};

struct Label {
  std::string text;
  char quote = ' ';
  bool operator==(const Label&) const = default;
};

struct ElementName {
  int symbol = 0;  // one-based place in Model::symbols
  std::vector<int> labels;
};

struct Entry {
  int row;  // zero-based
  double value;
};

// Zero-based, apart from the numbers of symbols and labels.
struct Model {
  std::vector<double> rhs;  // one per row
  std::vector<std::vector<Entry>> columns;
  int objective_row = 0;
  int objective_column = 0;
  std::vector<std::string> symbols;
  std::vector<Label> labels;
  std::vector<ElementName> row_names;
  std::vector<ElementName> column_names;
};

struct Message {
  int kind = 0;
  std::string text;
};

struct Script {
  std::map<std::string, Answer> answers;  // "name", "name(argument)" or "name#call"
  std::set<std::string> refused;
  std::vector<Message> messages;
  Model model;
  bool trace_loading = false;
};

// The script of LINFIT_TEST_SCRIPT, read when the library is asked for its version.
const Script& CurrentScript();
void ReadScript();

void Trace(const std::string& line);
// For what happens while the library is loaded; shown only on request.
void TraceLoading(const std::string& line);

// Objects are counted, not told apart: the handle of one is the address of its kind.
struct ObjectKind {
  const char* name;
  int live = 0;
};
void Create(ObjectKind& kind, const char* entry, void** handle);
void Free(ObjectKind& kind, const char* entry, void** handle);
void RequireLive(const ObjectKind& kind, const void* handle, const char* function);

int Check(const char* entry, const char* name, int arguments, const int* codes);
int Version(const char* entry, int interface_version, char* message, int* compatibility);

// Arguments as the trace shows them.
std::string Shown(int value);
std::string Shown(double value);
std::string Shown(const std::string& text);

std::string FromShort(const char* short_string);
void ToShort(const std::string& text, char* buffer);

// One call of a library function: writes the trace line and finds the script's answer.
class Call {
 public:
  template <class... A>
  Call(const ObjectKind& kind, const void* handle, const char* function, const A&... arguments)
      : Call(kind, handle, function, std::vector<std::string>{Shown(arguments)...}) {}

  [[nodiscard]] int Int(int otherwise) const;
  [[nodiscard]] double Real(double otherwise) const;
  // The answer's text into a 256-byte buffer.
  const Call& Give(char* buffer, const std::string& otherwise = "") const;
  [[nodiscard]] bool Null() const { return answer_ != nullptr && answer_->null; }

 private:
  Call(const ObjectKind& kind, const void* handle, const char* function,
       const std::vector<std::string>& arguments);

  const Answer* answer_;
};

// Before FindAnswer, once in each call.
void CountCall(const std::string& function);
const Answer* FindAnswer(const std::string& function, const std::string& argument);
// A number that the script may set as NAME(NUMBER) = VALUE.
int Scripted(const std::string& name, int number, int otherwise);

}  // namespace doubles
