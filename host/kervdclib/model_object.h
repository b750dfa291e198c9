// The model of one solve, as the `tmo` functions give it, and the solution that they take.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "instance/instance.h"
#include "instance/instance_reader.h"
#include "kervdclib/environment.h"

namespace host {

class ModelObject;

// What a dictionary handle points to. The model object's own belongs to the model object; one that
// was created by itself has no names in it.
struct DictionaryObject {
  ModelObject* model = nullptr;
  bool belongs_to_model = false;
};

class ModelObject {
 public:
  // Throws FileError unless the environment is initialized.
  void Register(EnvironmentObject environment);
  // Loads the instance that the control file names. Throws FileError.
  void Load();
  [[nodiscard]] const InstanceData* Data() const { return reader_ ? &reader_->Data() : nullptr; }
  [[nodiscard]] Environment* GetEnvironment() const { return environment_.get(); }

  // The rows at hand, with the zero-based `row` among them; null when there is no such row. A
  // failure ends the process.
  const RowPiece* RowsWith(std::int32_t row) noexcept {
    if (!reader_ || row < 0 || row >= Data()->row_count) return nullptr;
    if (!reader_->Rows().Holds(static_cast<std::size_t>(row))) BringRows(row);
    return &reader_->Rows();
  }

  // Gives one entry of a column and then the next: `cursor` is null before the first and after the
  // last. A number that is none of a column gives an undefined value in the first row. Numbers are
  // zero-based here, but for `row`, which is the caller's.
  void NextEntry(std::int32_t column, void** cursor, double& value, std::int32_t& row);
  // The same for an entry that is at hand and not its column's last, as nearly all are; it can't
  // fail. False, and nothing is done, for another one.
  bool TakeEntry(std::int32_t column, void** cursor, double& value, std::int32_t& row) noexcept {
    // The cursor is the number of entries handed out, so that it outlives a change of column.
    const auto at = reinterpret_cast<std::uintptr_t>(*cursor);
    if (!piece_.Holds(column, at) || at + 1 == piece_.entries) return false;
    value = piece_.Value(at);
    row = piece_.Row(at) + index_base;
    *cursor = reinterpret_cast<void*>(at + 1);  // NOLINT(performance-no-int-to-ptr)
    return true;
  }

  // Keeps records of rows or columns for WriteOut. False when there is no such element.
  bool SetRow(std::int32_t row, double level, double marginal, int basis, int status);
  bool SetColumn(std::int32_t column, double level, double marginal, int basis, int status);
  // Writes the solution to the instance. Throws FileError.
  void WriteOut();

  // Writes a message to the status file and the log.
  void Tell(const std::string& text);
  // The same before the process ends; allocates nothing.
  void LastLine(std::string_view line) noexcept;
  // Tells the environment's observer of a call.
  void See(CallGroup group);

  int index_base = 0;
  double plus_infinity = kInfinity;
  double minus_infinity = -kInfinity;
  Solution solution;
  DictionaryObject dictionary;

 private:
  void BringRows(std::int32_t row) noexcept;
  bool OpenPiece(std::int32_t column, std::size_t entry);

  EnvironmentObject environment_;
  std::optional<InstanceReader> reader_;
  ColumnPiece piece_;
};

}  // namespace host
