#include "kervdclib/model_object.h"

#include <utility>

namespace host {

namespace {

void Put(SolutionPart& part, std::size_t i, double level, double marginal, int basis, int status) {
  part.level[i] = level;
  part.marginal[i] = marginal;
  part.basis[i] = basis;
  part.status[i] = status;
}

void Size(SolutionPart& part, std::size_t count) {
  part.level.resize(count);
  part.marginal.resize(count);
  part.basis.resize(count);
  part.status.resize(count);
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
  dictionary = {&reader_->Data(), true};
  environment_->Steps().See(CallGroup::kRows);
}

void ModelObject::See(CallGroup group) {
  if (environment_ != nullptr) environment_->Steps().See(group);
}

bool ModelObject::OpenColumn(std::int32_t column) {
  const InstanceData* data = Data();
  if (failed_ || data == nullptr || column < 0 ||
      column >= static_cast<std::int32_t>(data->columns.size())) {
    return false;
  }
  column_ = -1;
  size_ = 0;
  try {
    reader_->ReadColumn(column, entries_);
  } catch (const std::exception& error) {
    failed_ = true;
    Tell(std::string("*** ") + error.what());
    return false;
  }
  column_ = column;
  size_ = entries_.values.size();
  return true;
}

void ModelObject::EndColumn(std::int32_t column) {
  See(CallGroup::kColumns);
  // The memory serves the next column; the objective variable's is the one nobody asks for.
  const auto last = static_cast<std::int32_t>(Data()->columns.size()) - 1;
  if (column == (Data()->objective_column == last ? last - 1 : last)) {
    ReleaseColumn();
  }
}

void ModelObject::ReleaseColumn() {
  column_ = -1;
  size_ = 0;
  entries_ = {};
  if (reader_) reader_->ReleaseAhead();
}

bool ModelObject::SetRow(std::int32_t row, double level, double marginal, int basis, int status) {
  if (Data() == nullptr || row < 0 || static_cast<std::size_t>(row) >= Data()->rhs.size()) {
    return false;
  }
  if (solution.rows.level.empty()) {
    ReleaseColumn();
    Size(solution.rows, Data()->rhs.size());
  }
  Put(solution.rows, static_cast<std::size_t>(row), level, marginal, basis, status);
  return true;
}

bool ModelObject::SetColumn(std::int32_t column, double level, double marginal, int basis,
                            int status) {
  if (Data() == nullptr || column < 0 ||
      static_cast<std::size_t>(column) >= Data()->columns.size()) {
    return false;
  }
  if (solution.columns.level.empty()) {
    Size(solution.columns, Data()->columns.size());
  }
  Put(solution.columns, static_cast<std::size_t>(column), level, marginal, basis, status);
  return true;
}

void ModelObject::WriteOut() {
  if (Data() == nullptr) {
    throw FileError("no model is loaded");
  }
  if (failed_) {
    throw FileError("the instance could not be read to its end; no solution is stored");
  }
  ReleaseColumn();
  Size(solution.rows, Data()->rhs.size());
  Size(solution.columns, Data()->columns.size());
  WriteSolution(solution, environment_->Control().instance);
}

void ModelObject::Tell(const std::string& text) {
  if (environment_ != nullptr) {
    environment_->StatOwnLine(text);
    environment_->Log(text);
  }
}

}  // namespace host
