#include "tavolite/models/name_parser.h"

#include <algorithm>
#include <optional>

#include "base/input_error.h"

namespace host {
namespace {

// GLPK cuts longer MathProg names and ends them in "...".
constexpr std::size_t kGlpkNameLimit = 255;

// The label at the start of `text`, which is moved behind it; nothing when its quote is not closed.
std::optional<std::string> TakeLabel(std::string_view& text) {
  std::string label;
  if (text.empty() || text.front() != '\'') {
    const std::size_t end = std::min(text.find(','), text.size());
    label = text.substr(0, end);
    text.remove_prefix(end);
    return label;
  }
  for (std::size_t i = 1; i < text.size(); ++i) {
    if (text[i] == '\'') {
      if (i + 1 == text.size() || text[i + 1] != '\'') {
        text.remove_prefix(i + 1);
        return label;
      }
      ++i;
    }
    label += text[i];
  }
  return std::nullopt;
}

// Labels separated by commas; nothing when `text` is not such a list.
std::optional<std::vector<std::string>> TakeLabels(std::string_view text) {
  std::vector<std::string> labels;
  while (true) {
    std::optional<std::string> label = TakeLabel(text);
    if (!label) return std::nullopt;
    labels.push_back(std::move(*label));
    if (text.empty()) return labels;
    if (text.front() != ',') return std::nullopt;
    text.remove_prefix(1);
  }
}

std::optional<ElementName> SplitAtBrackets(std::string_view name, NameStyle style) {
  const std::size_t open = name.find_first_of(style == NameStyle::kMathProg ? "[" : "[(");
  if (open == std::string_view::npos || open == 0) return std::nullopt;
  if (name.back() != (name[open] == '[' ? ']' : ')')) return std::nullopt;
  auto labels = TakeLabels(name.substr(open + 1, name.size() - open - 2));
  if (!labels) return std::nullopt;
  // "f(a)(b)" is no symbol with the label "a)(b".
  const auto is_plain = [](const std::string& label) {
    return !label.empty() && label.find_first_of("()[]") == std::string::npos;
  };
  if (style != NameStyle::kMathProg && !std::all_of(labels->begin(), labels->end(), is_plain) &&
      name.find('\'') == std::string_view::npos) {
    return std::nullopt;
  }
  return ElementName{std::string(name.substr(0, open)), std::move(*labels)};
}

std::optional<ElementName> SplitAtUnderscores(std::string_view name) {
  ElementName parsed;
  while (true) {
    const std::size_t underscore = name.find_last_of('_');
    if (underscore == std::string_view::npos || underscore == 0) break;
    const std::string_view label = name.substr(underscore + 1);
    if (label.empty() || label.find_first_not_of("0123456789") != std::string_view::npos) break;
    parsed.labels.insert(parsed.labels.begin(), std::string(label));
    name = name.substr(0, underscore);
  }
  if (parsed.labels.empty()) return std::nullopt;
  parsed.symbol = name;
  return parsed;
}

ElementName Split(std::string_view name, NameStyle style) {
  if (auto parsed = SplitAtBrackets(name, style)) return std::move(*parsed);
  if (style == NameStyle::kBracketsOrUnderscores) {
    if (auto parsed = SplitAtUnderscores(name)) return std::move(*parsed);
  }
  if (style == NameStyle::kMathProg && name.find('[') != std::string_view::npos) {
    throw InputError("name can't be taken apart: " + std::string(name));
  }
  return {std::string(name), {}};
}

void CheckLength(const std::string& text, const char* what, std::string_view name) {
  if (text.empty())
    throw InputError("name with an empty " + std::string(what) + ": " + std::string(name));
  if (text.size() > kMaxNameLength) {
    throw InputError(std::string(what) + " longer than " + std::to_string(kMaxNameLength) +
                     " characters in the name " + std::string(name));
  }
}

}  // namespace

ElementName ParseName(std::string_view name, NameStyle style) {
  if (name.empty()) throw InputError("a row or column has no name");
  if (name.size() >= kGlpkNameLimit && name.ends_with("...")) {
    throw InputError("name longer than 255 characters was cut: " + std::string(name));
  }
  ElementName parsed = Split(name, style);
  CheckLength(parsed.symbol, "symbol", name);
  if (parsed.labels.size() > static_cast<std::size_t>(kMaxLabels)) {
    throw InputError("more than " + std::to_string(kMaxLabels) + " labels in the name " +
                     std::string(name));
  }
  for (const std::string& label : parsed.labels) CheckLength(label, "label", name);
  return parsed;
}

}  // namespace host
