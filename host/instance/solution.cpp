#include <string>

#include "instance/instance.h"
#include "instance/instance_check.h"
#include "instance/instance_tables.h"

namespace host {

namespace {

struct Counts {
  std::int64_t rows;
  std::int64_t columns;
  bool has_dictionary;
};

Counts ReadCounts(Database& database) {
  Statement row(database, "SELECT row_count, column_count, has_dictionary FROM model");
  if (!row.Step() || row.Int(0) < 0 || row.Int(0) > kMaxElements || row.Int(1) < 0 ||
      row.Int(1) > kMaxElements) {
    throw FileError("no usable model");
  }
  return {row.Int(0), row.Int(1), row.Int(2) != 0};
}

void CheckPart(const char* kind, const SolutionPart& part, std::int64_t count) {
  const auto elements = static_cast<std::size_t>(count);
  if (part.level.size() != elements || part.marginal.size() != elements ||
      part.basis.size() != elements || part.status.size() != elements) {
    throw FileError(std::string("the solution does not have one record per ") + kind);
  }
}

void WritePart(ArrayTableWriter& arrays, const std::string& kind, const SolutionPart& part) {
  arrays.Write(kind + "_level", part.level);
  arrays.Write(kind + "_marginal", part.marginal);
  arrays.Write(kind + "_basis", part.basis);
  arrays.Write(kind + "_status", part.status);
}

SolutionPart ReadPart(ArrayTableReader& arrays, const std::string& kind, std::int64_t count) {
  SolutionPart part;
  part.level = arrays.Read<double>(kind + "_level", count);
  part.marginal = arrays.Read<double>(kind + "_marginal", count);
  part.basis = arrays.Read<std::int32_t>(kind + "_basis", count);
  part.status = arrays.Read<std::int32_t>(kind + "_status", count);
  return part;
}

// An undefined value is NULL: SQLite has no NaN.
void WriteHeadAndTail(Database& database, const std::map<std::int32_t, double>& values) {
  database.Execute("DELETE FROM head_and_tail");
  Statement insert(database, "INSERT INTO head_and_tail VALUES(?, ?)");
  for (const auto& [code, value] : values) {
    insert.Bind(1, std::int64_t{code}).Bind(2, value).Run();
  }
}

// Runs `step` on the instance; a failure of the database becomes a FileError that names the file.
template <class Step>
void WithInstance(const std::filesystem::path& file, Database::Mode mode, Step step) {
  Database database = OpenInstance(file, mode);
  try {
    InContext(Utf8(file), [&] { step(database); });
  } catch (const DatabaseError& error) {
    throw FileError(error.what());
  }
}

}  // namespace

void WriteSolution(const Solution& solution, const std::filesystem::path& instance) {
  WithInstance(instance, Database::Mode::kReadWrite, [&](Database& database) {
    // An interrupted process leaves a journal behind that takes a transaction back; the machine's
    // own end may lose the whole solve anyway. An older solution stays where it is until then.
    database.Execute("PRAGMA synchronous = OFF; BEGIN IMMEDIATE");
    const Counts counts = ReadCounts(database);
    CheckPart("row", solution.rows, counts.rows);
    CheckPart("column", solution.columns, counts.columns);
    const ArrayHead head = ReadArrayHead(database);
    ArrayReader check(ArrayPath(instance), head.stamp);
    if (check.Size() < head.bytes) throw FileError("the file of arrays is cut short");
    database.Execute("DELETE FROM solution");
    ArrayWriter file = ArrayWriter::Behind(ArrayPath(instance), check.Size());
    {
      ArrayTableWriter arrays(database, file);
      WritePart(arrays, "row", solution.rows);
      WritePart(arrays, "column", solution.columns);
    }
    file.Close();
    WriteHeadAndTail(database, solution.head_and_tail);
    Statement insert(database, "INSERT INTO solution VALUES(?, ?)");
    insert.Bind(1, std::int64_t{solution.model_status})
        .Bind(2, std::int64_t{solution.solve_status})
        .Run();
    database.Execute("COMMIT");
  });
}

std::optional<Solution> ReadSolution(const std::filesystem::path& instance, InstanceNames* names) {
  std::optional<Solution> result;
  WithInstance(instance, Database::Mode::kRead, [&](Database& database) {
    Statement head(database, "SELECT model_status, solve_status FROM solution");
    if (!head.Step()) {
      return;
    }
    Solution solution;
    solution.model_status = static_cast<std::int32_t>(head.Int(0));
    solution.solve_status = static_cast<std::int32_t>(head.Int(1));
    const Counts counts = ReadCounts(database);
    ArrayTableReader arrays(database, instance);
    solution.rows = ReadPart(arrays, "row", counts.rows);
    solution.columns = ReadPart(arrays, "column", counts.columns);
    if (names != nullptr && counts.has_dictionary) {
      *names = ReadInstanceNames(arrays, solution.rows.level.size(), solution.columns.level.size());
    }
    Statement value(database, "SELECT code, value FROM head_and_tail");
    while (value.Step()) {
      solution.head_and_tail[static_cast<std::int32_t>(value.Int(0))] =
          value.IsNull(1) ? std::numeric_limits<double>::quiet_NaN() : value.Real(1);
    }
    result = std::move(solution);
  });
  return result;
}

}  // namespace host
