#include "host/tavolite/front_end.h"

#include <algorithm>
#include <array>
#include <cctype>

#include "host/common/text_file.h"
#include "host/tavolite/input_error.h"

namespace host {
namespace {

struct FormatEntry {
  const char* name;
  const char* suffix;  // nullptr: only by name
  ModelFormat format;
};

constexpr std::array kFormats{
    FormatEntry{"mod", ".mod", ModelFormat::kMathProg},
    FormatEntry{"mps", ".mps", ModelFormat::kMps},
    FormatEntry{"free-mps", ".fmps", ModelFormat::kFreeMps},
    FormatEntry{"fixed-mps", nullptr, ModelFormat::kFixedMps},
    FormatEntry{"lp", ".lp", ModelFormat::kLp},
};

std::string LowerCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

ModelFormat ChooseFormat(const FrontEndOptions& options) {
  const std::string suffix = LowerCase(Utf8(options.model.extension()));
  std::string suffixes;
  for (const FormatEntry& entry : kFormats) {
    const bool by_suffix =
        options.format.empty() && entry.suffix != nullptr && suffix == entry.suffix;
    if (by_suffix || options.format == entry.name) return entry.format;
    if (entry.suffix != nullptr) suffixes += std::string(" ") + entry.suffix;
  }
  throw InputError(Utf8(options.model) + ": the suffix does not tell the format (known are" +
                   suffixes + "): give it with --format");
}

}  // namespace

std::vector<std::string> FormatNames() {
  std::vector<std::string> names;
  for (const FormatEntry& entry : kFormats) names.emplace_back(entry.name);
  return names;
}

FrontEndResult ReadModel(const FrontEndOptions& options, const std::filesystem::path& scratch) {
  const ModelFormat format = ChooseFormat(options);
  const bool is_mathprog = format == ModelFormat::kMathProg;
  if (!options.data.empty() && !is_mathprog) throw InputError("--data is for MathProg models only");
  if (options.split_underscores && is_mathprog) {
    throw InputError("--split-underscores is for MPS and LP models only");
  }
  ModelSource source;
  source.model = options.model;
  source.data = options.data;
  source.scratch = scratch;
  source.format = format;
  source.data_side = options.data_side;
  source.split_underscores = options.split_underscores;
  FrontEndResult result;
  result.model = ReadGlpkModel(source, result.notes);
  return result;
}

}  // namespace host
