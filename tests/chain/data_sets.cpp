#include "tests/chain/data_sets.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <stdexcept>

#include "tests/support/program.h"

namespace chain {

using testing_support::FromUtf8;
using testing_support::Lines;
using testing_support::ReadFile;

namespace {

// The fields of one CSV record without line ends in it.
std::vector<std::string> Split(const std::string& line) {
  std::vector<std::string> fields(1);
  bool quoted = false;
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (quoted && line[i] == '"' && i + 1 < line.size() && line[i + 1] == '"') {
      fields.back() += line[++i];
    } else if (line[i] == '"') {
      quoted = !quoted;
    } else if (line[i] == ',' && !quoted) {
      fields.emplace_back();
    } else {
      fields.back() += line[i];
    }
  }
  return fields;
}

// A MathProg symbol.
std::string Quoted(const std::string& item) {
  std::string text = "'";
  for (const char character : item) text += character == '\'' ? "''" : std::string(1, character);
  return text + "'";
}

std::string Join(const std::vector<std::string>& parts, const std::string& separator) {
  std::string text;
  for (const std::string& part : parts) {
    text += (text.empty() ? "" : separator) + part;
  }
  return text;
}

// The columns of the CSV file that hold numbers.
std::vector<std::string> NumberColumns(const DataSet& set) {
  std::vector<std::string> columns{set.response};
  if (set.degree > 0) {
    columns.emplace_back("x");
  }
  columns.insert(columns.end(), set.regressors.begin(), set.regressors.end());
  return columns;
}

// Where the data of a model come from: a table statement, or for labels whose quotes MathProg's CSV
// reader would take for its own, a data section.
std::string TableStatement(const DataSet& set, const std::vector<std::string>& labels) {
  return "table data IN \"CSV\" \"" + set.name + ".csv\" : I <- [" + Join(labels, ",") + "], " +
         Join(NumberColumns(set), ", ") + ";\n";
}

std::string DataSection(const DataSet& set) {
  std::string text = "data;\nparam : I : " + Join(NumberColumns(set), " ") + " :=\n";
  const std::vector<std::string> lines = Lines(ReadFile(DataFile(set)));
  for (std::size_t i = 1; i < lines.size(); ++i) {
    const std::vector<std::string> fields = Split(lines[i]);
    for (std::size_t k = 0; k < fields.size(); ++k) {
      text += (k == 0 ? "" : " ") + (k < set.labels.size() ? Quoted(fields[k]) : fields[k]);
    }
    text += "\n";
  }
  return text + ";\n";
}

std::string Shortest(double value) {
  char text[32];
  return {text, std::to_chars(text, text + sizeof text, value).ptr};
}

}  // namespace

void PrintTo(const DataSet& set, std::ostream* out) {
  *out << set.name;
}

const std::vector<DataSet>& CertifiedSets() {
  static const std::vector<DataSet> sets{
      {.name = "Norris", .response = "y", .degree = 1, .correct_digits = 12.5},
      {.name = "Pontius", .response = "y", .degree = 2, .correct_digits = 12.0},
      {.name = "NoInt1", .response = "y", .degree = 1, .intercept = false, .correct_digits = 15.0},
      {.name = "Filip", .response = "y", .degree = 10, .correct_digits = 7.0},
      {.name = "Longley",
       .response = "y",
       .regressors = {"x1", "x2", "x3", "x4", "x5", "x6"},
       .correct_digits = 10.8},
      {.name = "Wampler1", .response = "y", .degree = 5, .correct_digits = 9.1},
      {.name = "Wampler4", .response = "y", .degree = 5, .correct_digits = 7.4},
  };
  return sets;
}

const std::vector<DataSet>& RealSets() {
  static const std::vector<DataSet> sets{
      {.name = "macro",
       .response = "realcons",
       .regressors = {"realdpi", "tbilrate", "unemp", "infl"},
       .labels = {"obs"}},
      {.name = "statecrime",
       .response = "murder",
       .regressors = {"hs_grad", "poverty", "single", "white", "urban"},
       .labels = {"state"}},
      {.name = "randhie",
       .response = "mdvis",
       .regressors = {"lncoins", "idp", "lpi", "fmde", "physlm", "disea", "hlthg", "hlthf",
                      "hlthp"},
       .labels = {"obs"}},
      {.name = "billboard",
       .response = "weeks",
       .regressors = {"entry", "peak", "day"},
       .labels = {"artist", "track"}},
  };
  return sets;
}

std::vector<std::string> CoefficientItems(const DataSet& set) {
  std::vector<std::string> items = set.regressors;
  for (int power = 1; power <= set.degree; ++power) {
    items.push_back("x^" + std::to_string(power));
  }
  return items;
}

std::string MathProgModel(const DataSet& set) {
  const std::vector<std::string> labels =
      set.labels.empty() ? std::vector<std::string>{"RECNO"} : set.labels;
  const std::string index = labels.size() == 1 ? "i" : "(i,k)";
  const std::string subscript = labels.size() == 1 ? "[i]" : "[i,k]";
  std::string text = "set I dimen " + std::to_string(labels.size()) + ";\n";
  for (const std::string& column : NumberColumns(set)) {
    text += "param " + column + "{I};\n";
  }
  const bool inline_data = labels.size() > 1;
  if (!inline_data) {
    text += TableStatement(set, labels);
  }

  // A matrix, since the columns come in the order of one sum.
  std::string items;
  std::string matrix;
  for (const std::string& item : CoefficientItems(set)) {
    const bool power = item.starts_with("x^");
    items += (items.empty() ? "" : ", ") + Quoted(item);
    matrix += (matrix.empty() ? "" : " else ") + ("if j = " + Quoted(item) + " then ") +
              (power ? "x" + subscript + item.substr(1) : item + subscript);
  }
  text += "set J := {" + items + "};\nparam a{" + index + " in I, j in J} := " + matrix + ";\n";
  text += "var rss;\nvar coeff{J};\nminimize objective: rss;\n";
  text += "s.t. fit{" + index + " in I}: " + set.response + subscript + " = sum{j in J} a" +
          subscript.substr(0, subscript.size() - 1) + ",j] * coeff[j];\nsolve;\n";
  return text + (inline_data ? DataSection(set) : "") + "end;\n";
}

std::string TableWithPowers(const DataSet& set) {
  std::string text = set.response;
  for (const std::string& item : CoefficientItems(set)) {
    text += "," + item;
  }
  text += "\n";
  bool header = true;
  for (const std::string& line : Lines(ReadFile(DataFile(set)))) {
    if (header) {
      header = false;
      continue;
    }
    const std::vector<std::string> fields = Split(line);
    text += fields.at(0);
    for (int power = 1; power <= set.degree; ++power) {
      text += "," + Shortest(std::pow(std::stod(fields.at(1)), power));
    }
    text += "\n";
  }
  return text;
}

Observations ReadObservations(const DataSet& set) {
  const std::vector<std::string> lines = Lines(ReadFile(DataFile(set)));
  const std::vector<std::string> header = Split(lines.at(0));
  const auto number = [&header](const std::vector<std::string>& fields, const std::string& column) {
    const auto place = std::find(header.begin(), header.end(), column) - header.begin();
    return std::stod(fields.at(static_cast<std::size_t>(place)));
  };
  Observations observations;
  observations.columns.resize(CoefficientItems(set).size());
  for (std::size_t i = 1; i < lines.size(); ++i) {
    const std::vector<std::string> fields = Split(lines[i]);
    std::vector<std::string> labels{std::to_string(i)};
    if (!set.labels.empty()) {
      labels.assign(fields.begin(),
                    fields.begin() + static_cast<std::ptrdiff_t>(set.labels.size()));
    }
    // Trailing blanks of a label don't count.
    for (std::string& label : labels) label.erase(label.find_last_not_of(' ') + 1);
    observations.labels.push_back(std::move(labels));
    observations.response.push_back(number(fields, set.response));
    for (int power = 1; power <= set.degree; ++power) {
      observations.columns[static_cast<std::size_t>(power) - 1].push_back(
          std::pow(number(fields, "x"), power));
    }
    for (std::size_t j = 0; j < set.regressors.size(); ++j) {
      observations.columns[j].push_back(number(fields, set.regressors[j]));
    }
  }
  return observations;
}

std::string SolverOptions(const DataSet& set) {
  return std::string("MAXN 100000\nMAXP 100\nADD_CONSTANT_TERM ") + (set.intercept ? "2" : "0") +
         "\n";
}

std::filesystem::path DataFile(const DataSet& set) {
  return FromUtf8(std::string(LINFIT_CHAIN_DATA) + "/" + set.name + ".csv");
}

Values Expected(const DataSet& set, const std::string& quantity) {
  Values values;
  for (const std::string& line : Lines(ReadFile(FromUtf8(LINFIT_CHAIN_DATA "/expected.csv")))) {
    const std::vector<std::string> fields = Split(line);
    if (fields.size() == 4 && fields[0] == set.name && fields[1] == quantity) {
      values[fields[2]] = std::stod(fields[3]);
    }
  }
  return values;
}

}  // namespace chain
