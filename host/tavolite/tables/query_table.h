// Tables that a query of an SQLite database gives.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "base/database.h"
#include "tavolite/tables/plan.h"
#include "tavolite/tables/rows.h"

namespace host {

// One statement that only reads, on a file that is opened for reading. Values count as stored: NULL
// is missing, a text in a column of numbers is taken as in a text table. Throws InputError and
// DatabaseError.
class QueryTable {
 public:
  QueryTable(const std::filesystem::path& file, const std::string& query, bool progress);

  // Nothing when there is nothing to say about the query.
  [[nodiscard]] std::vector<std::string> Notes() const;
  [[nodiscard]] TableHeader ReadHeader() const;
  TableRows ReadRows(const TablePlan& plan, const std::filesystem::path& instance);

 private:
  std::string name_;
  std::string query_;
  Database database_;
  std::string_view rest_;  // of the query, behind the statement
  Statement statement_;
  bool progress_;
};

}  // namespace host
