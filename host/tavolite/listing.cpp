#include "host/tavolite/listing.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <fstream>
#include <span>
#include <string_view>

#include "host/common/text_file.h"
#include "host/tavolite/names.h"

namespace host {
namespace {

constexpr std::size_t kNumberWidth = 25;  // the longest number has 24 characters
constexpr std::size_t kBufferSize = std::size_t{1} << 20;
constexpr std::int32_t kObjectiveCode = 5;  // of the head and tail values

// Room for any number; the text is a view of `buffer` or a constant.
std::string_view Format(double value, std::span<char> buffer) {
  if (std::isnan(value)) return "NaN";
  if (std::isinf(value)) return value > 0 ? "Infinity" : "-Infinity";
  const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
  return {buffer.data(), static_cast<std::size_t>(result.ptr - buffer.data())};
}

// A file with a buffer of a size that makes millions of short lines cheap.
class Output {
 public:
  explicit Output(const std::filesystem::path& file)
      : name_(Utf8(file)), stream_(file, std::ios::binary | std::ios::trunc) {
    text_.reserve(kBufferSize + 4096);
    Check();
  }
  std::string& Text() {
    if (text_.size() > kBufferSize) Flush();
    return text_;
  }
  void Number(double value) {
    std::array<char, 32> buffer;
    const std::string_view number = Format(value, buffer);
    text_.append(kNumberWidth - std::min(number.size(), kNumberWidth), ' ');
    text_ += number;
  }
  void Close() {
    Flush();
    stream_.close();
    Check();
  }

 private:
  void Flush() {
    stream_.write(text_.data(), static_cast<std::streamsize>(text_.size()));
    Check();
    text_.clear();
  }
  void Check() const {
    if (!stream_) throw FileError(name_ + ": can't be written");
  }

  std::string name_;
  std::ofstream stream_;
  std::string text_;
};

void CopyStatusFile(const std::filesystem::path& file, Output& output) {
  std::ifstream in(file, std::ios::binary);
  std::array<char, 65536> buffer;
  while (in.read(buffer.data(), buffer.size()), in.gcount() > 0) {
    output.Text().append(buffer.data(), static_cast<std::size_t>(in.gcount()));
  }
}

void WriteElements(std::string_view title, const Dictionary& dictionary, const ElementNames& names,
                   const SolutionPart& part, Output& output) {
  std::string& heading = output.Text();
  heading += '\n';
  heading += title;
  heading += "\n\n";
  heading.append(kNumberWidth - 5, ' ');
  heading += "Level";
  heading.append(kNumberWidth - 8, ' ');
  heading += "Marginal  Name\n";
  const std::size_t count = std::min(names.symbol.size(), part.level.size());
  for (std::size_t i = 0; i < count; ++i) {
    std::string& text = output.Text();
    output.Number(part.level[i]);
    output.Number(part.marginal[i]);
    text += "  ";
    AppendDisplayName(dictionary, names, i, text);
    text += '\n';
  }
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
  std::array<char, 32> buffer;
  return std::string(Format(found->second, buffer));
}

void WriteListing(const std::filesystem::path& listing, const std::filesystem::path& status_file,
                  const ModelNames& names, const Solution* solution) {
  Output output(listing);
  CopyStatusFile(status_file, output);
  for (const std::string& note : names.notes) output.Text() += "\nNote: " + note + "\n";
  if (solution != nullptr) {
    std::string& text = output.Text();
    text += "\nSolution of " + names.model + "\n\n";
    text += "Model status: " + ModelStatusText(solution->model_status) + "\n";
    text += "Solve status: " + SolveStatusText(solution->solve_status) + "\n";
    text += "Objective:    " + ObjectiveText(*solution) + "\n";
    WriteElements("Equations", names.dictionary, names.rows, solution->rows, output);
    WriteElements("Variables", names.dictionary, names.columns, solution->columns, output);
  }
  output.Close();
}

}  // namespace host
