#include "tavolite/solve/listing.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <deque>
#include <fstream>
#include <future>
#include <string_view>
#include <system_error>

#include "base/text.h"
#include "base/text_file.h"
#include "instance/names.h"
#include "tavolite/design/design_check.h"

namespace host {
namespace {

constexpr std::string_view kInfinityText = "Infinity";
constexpr std::size_t kNumberWidth = 25;  // the longest number has 24 characters
constexpr std::size_t kUsualName = 16;
constexpr std::size_t kElementsPerPiece = 32768;

void AppendNumber(double value, std::string& text) {
  std::array<char, kNumberBuffer> buffer;
  const std::string_view number = FormatNumber(value, kInfinityText, 0, buffer);
  text.append(kNumberWidth - std::min(number.size(), kNumberWidth), ' ');
  text += number;
}

// A file that takes large pieces of text at once.
class Output {
 public:
  explicit Output(const std::filesystem::path& file) : name_(Utf8(file)) {
    errno = 0;
    stream_.open(file, std::ios::binary | std::ios::trunc);
    Check();
  }
  void Write(std::string_view text) {
    stream_.write(text.data(), static_cast<std::streamsize>(text.size()));
    Check();
  }
  void Close() {
    stream_.close();
    Check();
  }

 private:
  void Check() const {
    if (stream_) return;
    const std::string reason = errno == 0 ? "" : ": " + std::generic_category().message(errno);
    throw FileError(name_ + ": can't be written" + reason);
  }

  std::string name_;
  std::ofstream stream_;
};

void CopyStatusFile(const std::filesystem::path& file, Output& output) {
  std::error_code none;
  if (!std::filesystem::exists(file, none)) return;
  errno = 0;
  std::ifstream in(file, std::ios::binary);
  std::array<char, 16384> buffer;
  while (in.read(buffer.data(), buffer.size()), in.gcount() > 0) {
    output.Write({buffer.data(), static_cast<std::size_t>(in.gcount())});
  }
  if (in.eof() && !in.bad()) return;
  throw FileError("the solver's status file can't be read: " +
                  std::generic_category().message(errno == 0 ? EIO : errno));
}

struct Elements {
  const Dictionary& dictionary;
  const ElementNames& names;
  const SolutionPart& part;
};

// The lines of the elements from `first` to `last` - 1.
std::string ElementLines(const Elements& elements, std::size_t first, std::size_t last) {
  std::string text;
  text.reserve((last - first) * (2 * kNumberWidth + kUsualName));
  for (std::size_t i = first; i < last; ++i) {
    AppendNumber(elements.part.level[i], text);
    AppendNumber(elements.part.marginal[i], text);
    text += "  ";
    AppendDisplayName(elements.dictionary, elements.names, i, text);
    text += '\n';
  }
  return text;
}

// Where there are many elements, two threads make the next pieces while one is written.
void WriteElements(const Elements& elements, Output& output) {
  const std::size_t count = std::min(elements.names.symbol.size(), elements.part.level.size());
  const auto policy = count > kElementsPerPiece ? std::launch::async | std::launch::deferred
                                                : std::launch::deferred;
  std::deque<std::future<std::string>> pieces;
  for (std::size_t first = 0; first < count || !pieces.empty(); first += kElementsPerPiece) {
    if (first < count) {
      const std::size_t last = std::min(first + kElementsPerPiece, count);
      pieces.push_back(std::async(
          policy, [&elements, first, last] { return ElementLines(elements, first, last); }));
    }
    if (pieces.size() > 2 || first + kElementsPerPiece >= count) {
      output.Write(pieces.front().get());
      pieces.pop_front();
    }
  }
}

void WritePart(std::string_view title, const Elements& elements, Output& output) {
  std::string heading = "\n" + std::string(title) + "\n\n";
  heading.append(kNumberWidth - 5, ' ') += "Level";
  heading.append(kNumberWidth - 8, ' ') += "Marginal  Name\n";
  output.Write(heading);
  WriteElements(elements, output);
}

void WriteIntercept(const AddedIntercept& intercept, Output& output) {
  std::string line;
  AppendNumber(intercept.estimate, line);
  AppendNumber(intercept.standard_error, line);
  output.Write(line + "  Intercept, added by the solver\n");
}

}  // namespace

std::string ModelStatusText(std::int32_t status) {
  return status == 1 ? "optimal" : "code " + std::to_string(status);
}

std::string SolveStatusText(std::int32_t status) {
  return status == 1 ? "ended normally" : "code " + std::to_string(status);
}

std::string ObjectiveText(const Solution& solution) {
  const auto found = solution.head_and_tail.find(kObjectiveCode);
  if (found == solution.head_and_tail.end()) return "not stated";
  return ExactText(found->second);
}

std::string ExactText(double value) {
  std::array<char, kNumberBuffer> buffer;
  return std::string(FormatNumber(value, kInfinityText, 0, buffer));
}

void WriteListing(const std::filesystem::path& listing, const std::filesystem::path& status_file,
                  const ModelNames& names, const Solution* solution) {
  Output output(listing);
  for (const std::string& warning : names.warnings) output.Write("Warning: " + warning + "\n\n");
  CopyStatusFile(status_file, output);
  for (const std::string& note : names.notes) output.Write("\nNote: " + note + "\n");
  if (solution != nullptr) {
    output.Write("\nSolution of " + names.model +
                 "\n\nModel status: " + ModelStatusText(solution->model_status) +
                 "\nSolve status: " + SolveStatusText(solution->solve_status) +
                 "\nObjective:    " + ObjectiveText(*solution) + "\n");
    if (!std::isnan(names.condition)) {
      output.Write("Condition:    " + ConditionText(names.condition) + "\n");
    }
    WritePart("Equations", {names.elements.dictionary, names.elements.rows, solution->rows},
              output);
    WritePart("Variables", {names.elements.dictionary, names.elements.columns, solution->columns},
              output);
    if (names.intercept) WriteIntercept(*names.intercept, output);
  }
  output.Close();
}

}  // namespace host
