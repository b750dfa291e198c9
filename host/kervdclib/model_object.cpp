#include "kervdclib/model_object.h"

#include <limits>
#include <utility>

#include "base/end_process.h"

namespace host {

namespace {

void Put(SolutionPart& part, std::size_t i, double level, double marginal, int basis, int status) {
  part.level[i] = level;
  part.marginal[i] = marginal;
  part.basis[i] = basis;
  part.status[i] = status;
}

// Makes room once, and for all members or none.
void Size(SolutionPart& part, std::size_t count) {
  if (!part.level.empty()) return;
  SolutionPart sized;
  sized.level.resize(count);
  sized.marginal.resize(count);
  sized.basis.resize(count);
  sized.status.resize(count);
  part = std::move(sized);
}

}  // namespace

void ModelObject::Register(EnvironmentObject environment) {
  if (environment == nullptr || !environment->IsInitialized()) {
    throw FileError("the environment is not initialized");
  }
  environment_ = std::move(environment);
}

void ModelObject::Load() {
  if (environment_ == nullptr) {
    throw FileError("no environment is registered");
  }
  if (reader_) {
    throw FileError("the model has been loaded already");
  }
  environment_->Steps().See(CallGroup::kLoad);
  reader_.emplace(environment_->Control().instance);
  dictionary = {this, true};
  environment_->Steps().See(CallGroup::kRows);
}

void ModelObject::See(CallGroup group) {
  if (environment_ != nullptr) environment_->Steps().See(group);
}

void ModelObject::BringRows(std::int32_t row) noexcept {
  OrEnd([&] { reader_->ReadRows(static_cast<std::size_t>(row)); },
        [this](std::string_view line) { LastLine(line); });
}

bool ModelObject::OpenPiece(std::int32_t column, std::size_t entry) {
  const InstanceData* data = Data();
  if (data == nullptr || column < 0 || static_cast<std::size_t>(column) >= data->columns.size()) {
    return false;
  }
  const std::int32_t entries = data->columns[static_cast<std::size_t>(column)].entries;
  if (entry >= static_cast<std::size_t>(entries)) return false;
  reader_->ReadPiece(column, entry, piece_);
  return true;
}

void ModelObject::NextEntry(std::int32_t column, void** cursor, double& value, std::int32_t& row) {
  const auto at = reinterpret_cast<std::uintptr_t>(*cursor);
  if (!piece_.Holds(column, at) && !OpenPiece(column, at)) {
    *cursor = nullptr;
    value = std::numeric_limits<double>::quiet_NaN();
    row = index_base;
    return;
  }
  if (TakeEntry(column, cursor, value, row)) return;
  value = piece_.Value(at);
  row = piece_.Row(at) + index_base;
  *cursor = nullptr;
  See(CallGroup::kColumns);
}

bool ModelObject::SetRow(std::int32_t row, double level, double marginal, int basis, int status) {
  if (Data() == nullptr || row < 0 || row >= Data()->row_count) return false;
  Size(solution.rows, static_cast<std::size_t>(Data()->row_count));
  Put(solution.rows, static_cast<std::size_t>(row), level, marginal, basis, status);
  return true;
}

bool ModelObject::SetColumn(std::int32_t column, double level, double marginal, int basis,
                            int status) {
  if (Data() == nullptr || column < 0 ||
      static_cast<std::size_t>(column) >= Data()->columns.size()) {
    return false;
  }
  Size(solution.columns, Data()->columns.size());
  Put(solution.columns, static_cast<std::size_t>(column), level, marginal, basis, status);
  return true;
}

void ModelObject::WriteOut() {
  if (Data() == nullptr) {
    throw FileError("no model is loaded");
  }
  Size(solution.rows, static_cast<std::size_t>(Data()->row_count));
  Size(solution.columns, Data()->columns.size());
  WriteSolution(solution, environment_->Control().instance);
}

void ModelObject::Tell(const std::string& text) {
  if (environment_ != nullptr) {
    environment_->StatOwnLine(text);
    environment_->Log(text);
  }
}

void ModelObject::LastLine(std::string_view line) noexcept {
  if (environment_ != nullptr) environment_->LastLine(line);
}

}  // namespace host
