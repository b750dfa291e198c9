// Data sets with results that are proven elsewhere, as models and as tables for whole solves.
#pragma once

#include <filesystem>
#include <map>
#include <ostream>
#include <string>
#include <vector>

namespace chain {

struct DataSet {
  std::string name;  // of the CSV file and in expected.csv
  std::string response;
  std::vector<std::string> regressors = {};  // empty: powers of x up to `degree`
  int degree = 0;
  std::vector<std::string> labels =
      {};  // columns that name an observation; none: the record number
  bool intercept = true;
  double correct_digits = 0.0;  // that the worst estimate reaches, certified sets only
};

// For messages of the tests.
void PrintTo(const DataSet& set, std::ostream* out);

const std::vector<DataSet>& CertifiedSets();
const std::vector<DataSet>& RealSets();

// Names of the coefficients, as expected.csv has them, without the intercept: "x1", "x^2".
std::vector<std::string> CoefficientItems(const DataSet& set);

// The set as a MathProg model that reads `name`.csv by a table statement.
std::string MathProgModel(const DataSet& set);
// The set as a table with one column per coefficient, for the sets whose regressors are powers of
// x.
std::string TableWithPowers(const DataSet& set);
// Options with which every set is accepted.
std::string SolverOptions(const DataSet& set);

// The numbers of a set as the model hands them to the solver.
struct Observations {
  std::vector<std::vector<std::string>> labels;  // of each observation
  std::vector<double> response;
  std::vector<std::vector<double>> columns;  // one per coefficient item
};
Observations ReadObservations(const DataSet& set);

std::filesystem::path DataFile(const DataSet& set);

// The value of `quantity` ("estimate", "rss", "confint 0.95 LO") per item; the item of a scalar is
// "".
using Values = std::map<std::string, double>;
Values Expected(const DataSet& set, const std::string& quantity);

}  // namespace chain
