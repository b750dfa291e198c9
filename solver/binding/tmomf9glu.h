// The model-object library: dimensions, rows, columns, matrix, bounds, solution.
#pragma once

#include <span>
#include <string_view>

#include "binding/library.h"

namespace linfit {

struct Tmo : Library {
  Tmo();

  bool tmoXCreate(Handle& handle, std::span<char> message) { return Create(handle, message); }
  int tmoXFree(Handle& handle) { return Free(handle); }
  bool tmoGetReady(std::span<char> message) { return GetReady({}, message); }
  bool tmoGetReadyD(std::string_view directory, std::span<char> message) {
    return GetReady(directory, message);
  }

  LINFIT_ENTRY(tmoRegisterEnvironment, int(Handle environment, ShortOut message));
  LINFIT_ENTRY(tmoLoadDataLegacy, int(ShortOut message));
  LINFIT_ENTRY(tmoOptFile, int());
  LINFIT_ENTRY(tmoNameOptFile, ShortResult());
  LINFIT_ENTRY(tmoDict, Handle());
  LINFIT_ENTRY(tmoDictionary, int());
  LINFIT_ENTRY(tmoIndexBaseSet, void(int base));
  LINFIT_ENTRY(tmoObjStyleSet, void(int style));
  LINFIT_ENTRY(tmoPinfSet, void(double value));
  LINFIT_ENTRY(tmoMinfSet, void(double value));
  LINFIT_ENTRY(tmoM, int());
  LINFIT_ENTRY(tmoN, int());
  LINFIT_ENTRY(tmoObjVar, int());
  LINFIT_ENTRY(tmoObjRow, int());
  LINFIT_ENTRY(tmoGetColStat,
               int(int column, int& entries, int& positive, int& negative, int& nonlinear));
  LINFIT_ENTRY(tmoGetColJacInfoOne,
               void(int column, Handle& cursor, double& value, int& row, int& nonlinear));
  LINFIT_ENTRY(tmoGetRhsOne, double(int row));
  LINFIT_ENTRY(tmoGetEquTypeOne, int(int row));
  LINFIT_ENTRY(tmoGetVarLowerOne, double(int column));
  LINFIT_ENTRY(tmoGetVarUpperOne, double(int column));
  LINFIT_ENTRY(tmoSetHeadnTail, void(int field, double value));
  LINFIT_ENTRY(tmoSetSolutionVarRec, int(int column, double level, double marginal,
                                         int basis_status, int solution_status));
  LINFIT_ENTRY(tmoSetSolutionEquRec,
               int(int row, double level, double marginal, int basis_status, int solution_status));
  LINFIT_ENTRY(tmoModelStatSet, void(int status));
  LINFIT_ENTRY(tmoSolveStatSet, void(int status));
  LINFIT_ENTRY(tmoUnloadSolutionLegacy, int());
};

}  // namespace linfit
