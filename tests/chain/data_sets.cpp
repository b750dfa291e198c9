#include "tests/chain/data_sets.h"

#include <charconv>
#include <cmath>
#include <sstream>
#include <stdexcept>

#include "tests/support/program.h"

namespace chain {

using testing_support::FromUtf8;
using testing_support::Lines;
using testing_support::ReadFile;

namespace {

std::vector<std::string> Split(const std::string& line) {
  std::vector<std::string> fields;
  std::istringstream stream(line);
  for (std::string field; std::getline(stream, field, ',');) {
    fields.push_back(field);
  }
  return fields;
}

std::string Quoted(const std::string& item) {
  return "'" + item + "'";
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

std::string Shortest(double value) {
  char text[32];
  return {text, std::to_chars(text, text + sizeof text, value).ptr};
}

}  // namespace

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
  text += "table data IN \"CSV\" \"" + set.name + ".csv\" : I <- [" + Join(labels, ",") + "], " +
          Join(NumberColumns(set), ", ") + ";\n";

  std::vector<std::string> items;
  std::vector<std::string> terms;
  for (const std::string& item : CoefficientItems(set)) {
    const bool power = item.starts_with("x^");
    items.push_back(Quoted(item));
    terms.push_back((power ? "x" + subscript + item.substr(1) : item + subscript) + " * coeff[" +
                    Quoted(item) + "]");
  }
  text += "set J := {" + Join(items, ", ") + "};\nvar rss;\nvar coeff{J};\n";
  text += "minimize objective: rss;\n";
  text += "s.t. fit{" + index + " in I}: " + set.response + subscript + " = " + Join(terms, " + ") +
          ";\nsolve;\nend;\n";
  return text;
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
