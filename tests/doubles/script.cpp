#include "tests/doubles/script.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <stdexcept>

namespace doubles {

namespace {

constexpr const char* kDefaultFits[] = {"fit 3.1 1", "fit 4.9 2", "fit 7.2 3", "fit 8.8 4",
                                        "fit 11 5"};

struct Token {
  std::string text;  // without the quotes
  char quote = ' ';
};

struct NameLine {
  bool row;
  int number;
  std::string symbol;
  std::vector<Label> labels;
};

// The model's lines as they stand, until all are known.
struct ModelLines {
  std::vector<std::vector<double>> fits;
  bool sized = false;
  int rows = 0, columns = 0;
  int objective_row = 1, objective_column = 1;
  struct EntryLine {
    int row, column;
    double value;
  };
  std::vector<EntryLine> entries;
  std::vector<NameLine> names;
};

// Quoted text from `at` on, which is its first quote; `at` is behind the closing one afterwards.
std::string ReadQuoted(const std::string& line, std::size_t& at) {
  const char quote = line[at++];
  std::string text;
  while (at < line.size() && line[at] != quote) {
    if (line[at] == '\\' && at + 1 < line.size()) ++at;
    text += line[at++];
  }
  if (at >= line.size()) throw std::runtime_error("quote without end");
  ++at;
  return text;
}

std::vector<Token> Tokens(const std::string& line) {
  std::vector<Token> tokens;
  std::size_t at = 0;
  while (at < line.size()) {
    if (line[at] == ' ') {
      ++at;
    } else if (line[at] == '"' || line[at] == '\'') {
      const char quote = line[at];
      tokens.push_back({ReadQuoted(line, at), quote});
    } else {
      std::string word;
      bool inside = false;  // a text in parentheses may hold blanks
      for (; at < line.size() && (inside || line[at] != ' '); ++at) {
        if (line[at] == '"') inside = !inside;
        word += line[at];
      }
      tokens.push_back({word});
    }
  }
  return tokens;
}

double Number(const Token& token) {
  std::size_t used = 0;
  const double value = std::stod(token.text, &used);
  if (token.quote != ' ' || used != token.text.size()) throw std::runtime_error("not a number");
  return value;
}
int Integer(const Token& token) {
  return static_cast<int>(Number(token));
}

void ReadAnswer(const std::vector<Token>& tokens, Script& script) {
  Answer answer;
  for (std::size_t i = 2; i < tokens.size(); ++i) {
    if (tokens[i].quote == '"') {
      answer.text = tokens[i].text;
    } else if (tokens[i].text == "null") {
      answer.null = true;
    } else {
      answer.number = Number(tokens[i]);
    }
  }
  script.answers[tokens[0].text] = answer;
}

void ReadName(const std::vector<Token>& tokens, ModelLines& lines) {
  NameLine name{tokens.at(1).text == "row", Integer(tokens.at(2)), tokens.at(3).text, {}};
  for (std::size_t i = 4; i < tokens.size(); ++i) {
    name.labels.push_back({tokens[i].text, tokens[i].quote});
  }
  lines.names.push_back(name);
}

void ReadDirective(const std::vector<Token>& tokens, Script& script, ModelLines& lines) {
  const std::string& word = tokens[0].text;
  if (tokens.size() > 2 && tokens[1].text == "=") {
    ReadAnswer(tokens, script);
  } else if (word == "refuse") {
    script.refused.insert(tokens.at(1).text);
  } else if (word == "message") {
    script.messages.push_back({Integer(tokens.at(1)), tokens.at(2).text});
  } else if (word == "trace" && tokens.at(1).text == "loading") {
    script.trace_loading = true;
  } else if (word == "fit") {
    std::vector<double> numbers;
    std::transform(tokens.begin() + 1, tokens.end(), std::back_inserter(numbers), Number);
    lines.fits.push_back(numbers);
  } else if (word == "objective") {
    lines.objective_row = Integer(tokens.at(1));
    lines.objective_column = Integer(tokens.at(2));
  } else if (word == "model") {
    lines.sized = true;
    lines.rows = Integer(tokens.at(1));
    lines.columns = Integer(tokens.at(2));
  } else if (word == "entry") {
    lines.entries.push_back({Integer(tokens.at(1)), Integer(tokens.at(2)), Number(tokens.at(3))});
  } else if (word == "name") {
    ReadName(tokens, lines);
  } else {
    throw std::runtime_error("unknown directive");
  }
}

void AddFits(const ModelLines& lines, Model& model) {
  for (std::size_t k = 0; k < lines.fits.size(); ++k) {
    const std::size_t row = k < static_cast<std::size_t>(model.objective_row) ? k : k + 1;
    const std::vector<double>& fit = lines.fits[k];
    model.rhs.at(row) = -fit.at(0);
    for (std::size_t c = 1; c < fit.size(); ++c) {
      const std::size_t column =
          c - 1 < static_cast<std::size_t>(model.objective_column) ? c - 1 : c;
      model.columns.at(column).push_back({static_cast<int>(row), -fit[c]});
    }
  }
  model.columns.at(static_cast<std::size_t>(model.objective_column))
      .push_back({model.objective_row, 1.0});
}

// One-based place of `item`, which is appended if need be.
template <class T>
int PlaceOf(std::vector<T>& items, const T& item) {
  auto at = std::find(items.begin(), items.end(), item);
  if (at == items.end()) at = items.insert(at, item);
  return static_cast<int>(at - items.begin()) + 1;
}

ElementName MakeName(Model& model, const std::string& symbol, const std::vector<Label>& labels) {
  ElementName name{PlaceOf(model.symbols, symbol), {}};
  for (const Label& label : labels) name.labels.push_back(PlaceOf(model.labels, label));
  return name;
}

// `objective` alone, all others `symbol` with the labels prefix1, prefix2, ...
std::vector<ElementName> DefaultNames(Model& model, std::size_t count, int objective,
                                      const std::string& objective_name, const std::string& symbol,
                                      const std::string& prefix) {
  std::vector<ElementName> names;
  int k = 0;
  for (std::size_t i = 0; i < count; ++i) {
    names.push_back(static_cast<int>(i) == objective
                        ? MakeName(model, objective_name, {})
                        : MakeName(model, symbol, {{prefix + std::to_string(++k)}}));
  }
  return names;
}

Model MakeModel(ModelLines lines) {
  if (!lines.sized && lines.fits.empty()) {
    Script unused;
    for (const char* line : kDefaultFits) ReadDirective(Tokens(line), unused, lines);
  }
  Model model;
  model.objective_row = lines.objective_row - 1;
  model.objective_column = lines.objective_column - 1;
  const std::size_t rows =
      lines.sized ? static_cast<std::size_t>(lines.rows) : lines.fits.size() + 1;
  model.rhs.resize(rows);
  model.columns.resize(lines.sized ? static_cast<std::size_t>(lines.columns)
                                   : lines.fits[0].size());
  if (!lines.sized) AddFits(lines, model);
  for (const auto& [row, column, value] : lines.entries) {
    model.columns.at(static_cast<std::size_t>(column - 1)).push_back({row - 1, value});
  }
  model.row_names = DefaultNames(model, rows, model.objective_row, "objective", "fit", "i");
  model.column_names =
      DefaultNames(model, model.columns.size(), model.objective_column, "rss", "coeff", "x");
  for (const NameLine& line : lines.names) {
    std::vector<ElementName>& names = line.row ? model.row_names : model.column_names;
    names.at(static_cast<std::size_t>(line.number - 1)) = MakeName(model, line.symbol, line.labels);
  }
  return model;
}

Script ParseScript(const char* file) {
  Script script;
  ModelLines lines;
  std::string where = "no script";
  try {
    if (file != nullptr && *file != '\0') {
      std::ifstream in(file, std::ios::binary);
      if (!in) throw std::runtime_error(std::string("can't open ") + file);
      int number = 0;
      for (std::string line; std::getline(in, line);) {
        where = "line " + std::to_string(++number) + ": " + line;
        const std::vector<Token> tokens = Tokens(line);
        if (!tokens.empty() && line[0] != '#') ReadDirective(tokens, script, lines);
      }
    }
    where = "model";
    script.model = MakeModel(lines);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "LINFIT_TEST_SCRIPT: %s: %s\n", where.c_str(), error.what());
    std::abort();
  }
  return script;
}

Script current_script;
std::map<std::string, int> call_numbers;

}  // namespace

const Script& CurrentScript() {
  return current_script;
}
void ReadScript() {
  current_script = ParseScript(std::getenv("LINFIT_TEST_SCRIPT"));
}

void CountCall(const std::string& function) {
  ++call_numbers[function];
}

const Answer* FindAnswer(const std::string& function, const std::string& argument) {
  auto at = current_script.answers.find(function + "#" + std::to_string(call_numbers[function]));
  if (at != current_script.answers.end()) return &at->second;
  at = current_script.answers.find(function + "(" + argument + ")");
  if (at == current_script.answers.end()) at = current_script.answers.find(function);
  return at == current_script.answers.end() ? nullptr : &at->second;
}

int Scripted(const std::string& name, int number, int otherwise) {
  const Answer* answer = FindAnswer(name, std::to_string(number));
  return answer != nullptr && answer->number ? static_cast<int>(*answer->number) : otherwise;
}

}  // namespace doubles
