// The model object's entries.
#include <algorithm>
#include <string>

#include "base/end_process.h"
#include "base/short_string.h"
#include "kervdclib/exports.h"
#include "kervdclib/model_object.h"

using host::Guarded;
using host::InstanceData;
using host::ModelObject;

namespace {

ModelObject& Of(void* handle) {
  return *static_cast<ModelObject*>(handle);
}

const InstanceData* DataOf(void* handle) {
  return Of(handle).Data();
}

// The zero-based number of the caller's row or column; -1 when there can be none.
std::int32_t ZeroBased(const ModelObject& model, int number) {
  return number < model.index_base ? -1 : number - model.index_base;
}

// Of the caller's `column`; null when there is none.
const host::ColumnHead* ColumnOf(void* handle, int column) {
  const InstanceData* data = DataOf(handle);
  if (data == nullptr) return nullptr;
  const std::int32_t index = ZeroBased(Of(handle), column);
  const bool within = index >= 0 && static_cast<std::size_t>(index) < data->columns.size();
  return within ? &data->columns[static_cast<std::size_t>(index)] : nullptr;
}

// The element of the caller's `row` in one of the arrays of rows, `none` when there is no such row.
template <class T, class Result>
Result ElementOf(void* handle, int row, std::vector<T> host::RowPiece::*elements, Result none) {
  const std::int32_t index = ZeroBased(Of(handle), row);
  const host::RowPiece* rows = Of(handle).RowsWith(index);
  if (rows == nullptr) return none;
  return static_cast<Result>((rows->*elements)[static_cast<std::size_t>(index) - rows->begin]);
}

double Bound(const ModelObject& model, double bound) {
  if (bound == host::kInfinity) return model.plus_infinity;
  if (bound == -host::kInfinity) return model.minus_infinity;
  return bound;
}

// Runs `body`; a failure ends the process with a line in the environment's files.
template <class Body>
auto With(void* handle, Body body) noexcept {
  ModelObject& model = Of(handle);
  return host::OrEnd([&] { return body(model); },
                     [&](std::string_view line) { model.LastLine(line); });
}

// Out of line, so that tmoGetColJacInfoOne stays a few instructions.
[[gnu::noinline]] void NextEntry(void* handle, std::int32_t column, void** cursor, double* value,
                                 int* row) {
  With(handle, [&](ModelObject& model) { model.NextEntry(column, cursor, *value, *row); });
}

// Runs `body`; a failure's text goes into `message`. Gives the function's result.
template <class Body>
int WithMessage(char* message, Body body) {
  host::ToShortString("", message);
  return Guarded(1, [&] {
    try {
      body();
      return 0;
    } catch (const std::bad_alloc&) {
      host::ToShortString("out of memory", message);
    } catch (const std::exception& error) {
      host::ToShortString(error.what(), message);
    }
    return 1;
  });
}

}  // namespace

void tmoXCreate(void** handle) {
  host::CreateObject<ModelObject>(handle);
}

void tmoXCreateD(void** handle, const char* /*directory*/) {
  tmoXCreate(handle);
}

void tmoXFree(void** handle) {
  host::FreeObject<ModelObject>(handle);
}

int tmoRegisterEnvironment(void* handle, void* environment, char* message) {
  return WithMessage(message, [&] {
    if (environment == nullptr) {
      throw host::FileError("there is no environment");
    }
    Of(handle).Register(*static_cast<host::EnvironmentObject*>(environment));
  });
}

int tmoLoadDataLegacy(void* handle, char* message) {
  return WithMessage(message, [&] { Of(handle).Load(); });
}

int tmoOptFile(void* handle) {
  const host::Environment* environment = Of(handle).GetEnvironment();
  return environment != nullptr && !environment->Control().option_file.empty() ? 1 : 0;
}

void tmoNameOptFile(void* handle, char* name) {
  host::ToShortString("", name);
  With(handle, [&](const ModelObject& model) {
    if (tmoOptFile(handle) != 0) {
      host::ToShortString(host::Utf8(model.GetEnvironment()->Control().option_file), name);
    }
  });
}

void* tmoDict(void* handle) {
  return tmoDictionary(handle) != 0 ? &Of(handle).dictionary : nullptr;
}

int tmoDictionary(void* handle) {
  return DataOf(handle) != nullptr && DataOf(handle)->has_dictionary ? 1 : 0;
}

void tmoIndexBaseSet(void* handle, int base) {
  With(handle, [&](ModelObject& model) {
    if (base == 0 || base == 1) {
      model.index_base = base;
    } else {
      model.Tell("*** index base " + std::to_string(base) + " is neither 0 nor 1");
    }
  });
}

void tmoObjStyleSet(void* handle, int style) {
  With(handle, [&](ModelObject& model) {
    // The objective row and variable are always part of the model here.
    if (style != 0) {
      model.Tell("*** objective style " + std::to_string(style) + " is not offered, only 0");
    }
  });
}

void tmoPinfSet(void* handle, double value) {
  Of(handle).plus_infinity = value;
}

void tmoMinfSet(void* handle, double value) {
  Of(handle).minus_infinity = value;
}

int tmoM(void* handle) {
  return DataOf(handle) == nullptr ? 0 : DataOf(handle)->row_count;
}

int tmoN(void* handle) {
  return DataOf(handle) == nullptr ? 0 : static_cast<int>(DataOf(handle)->columns.size());
}

int tmoObjVar(void* handle) {
  const InstanceData* data = DataOf(handle);
  return (data == nullptr ? -1 : data->objective_column) + Of(handle).index_base;
}

int tmoObjRow(void* handle) {
  const InstanceData* data = DataOf(handle);
  return (data == nullptr ? -1 : data->objective_row) + Of(handle).index_base;
}

int tmoGetColStat(void* handle, int column, int* entries, int* quadratic, int* nonlinear,
                  int* objective) {
  *entries = *quadratic = *nonlinear = *objective = 0;
  With(handle, [](ModelObject& model) { model.See(host::CallGroup::kColumns); });
  const host::ColumnHead* head = ColumnOf(handle, column);
  if (head == nullptr) {
    return 1;
  }
  *entries = head->entries;
  *objective = head->in_objective_row ? 1 : 0;
  return 0;
}

void tmoGetColJacInfoOne(void* handle, int column, void** cursor, double* value, int* row,
                         int* nonlinear) {
  ModelObject& model = Of(handle);
  const std::int32_t number = ZeroBased(model, column);
  *nonlinear = 0;
  if (!model.TakeEntry(number, cursor, *value, *row)) NextEntry(handle, number, cursor, value, row);
}

double tmoGetRhsOne(void* handle, int row) {
  return ElementOf(handle, row, &host::RowPiece::rhs, 0.0);
}

int tmoGetEquTypeOne(void* handle, int row) {
  return ElementOf(handle, row, &host::RowPiece::types, -1);
}

double tmoGetVarLowerOne(void* handle, int column) {
  const host::ColumnHead* head = ColumnOf(handle, column);
  return head == nullptr ? 0.0 : Bound(Of(handle), head->lower);
}

double tmoGetVarUpperOne(void* handle, int column) {
  const host::ColumnHead* head = ColumnOf(handle, column);
  return head == nullptr ? 0.0 : Bound(Of(handle), head->upper);
}

void tmoSetHeadnTail(void* handle, int code, double value) {
  With(handle, [&](ModelObject& model) { model.solution.head_and_tail[code] = value; });
}

int tmoSetSolutionVarRec(void* handle, int column, double level, double marginal, int basis,
                         int status) {
  return With(handle, [&](ModelObject& model) {
    return model.SetColumn(ZeroBased(model, column), level, marginal, basis, status) ? 0 : 1;
  });
}

int tmoSetSolutionEquRec(void* handle, int row, double level, double marginal, int basis,
                         int status) {
  return With(handle, [&](ModelObject& model) {
    return model.SetRow(ZeroBased(model, row), level, marginal, basis, status) ? 0 : 1;
  });
}

void tmoModelStatSet(void* handle, int status) {
  With(handle, [&](ModelObject& model) {
    model.solution.model_status = status;
    model.See(host::CallGroup::kSolution);
  });
}

void tmoSolveStatSet(void* handle, int status) {
  Of(handle).solution.solve_status = status;
}

int tmoUnloadSolutionLegacy(void* handle) {
  return With(handle, [](ModelObject& model) {
    try {
      model.WriteOut();
      return 0;
    } catch (const host::FileError& error) {
      model.Tell(std::string("*** ") + error.what());
      return 1;
    }
  });
}
