// The model-object library: dimensions, rows, columns, matrix, bounds, solution.
#pragma once

#include <span>
#include <string_view>

#include "binding/library.h"

namespace linfit {

// The library's functions in the order in which they are checked, each with its C++ type.
#define LINFIT_TMO_FUNCTIONS(entry)                                                             \
  entry(tmoRegisterEnvironment, int(Handle environment, ShortOut message));                     \
  entry(tmoLoadDataLegacy, int(ShortOut message));                                              \
  entry(tmoOptFile, int());                                                                     \
  entry(tmoNameOptFile, ShortResult());                                                         \
  entry(tmoDict, Handle());                                                                     \
  entry(tmoDictionary, int());                                                                  \
  entry(tmoIndexBaseSet, void(int base));                                                       \
  entry(tmoObjStyleSet, void(int style));                                                       \
  entry(tmoPinfSet, void(double value));                                                        \
  entry(tmoMinfSet, void(double value));                                                        \
  entry(tmoM, int());                                                                           \
  entry(tmoN, int());                                                                           \
  entry(tmoObjVar, int());                                                                      \
  entry(tmoObjRow, int());                                                                      \
  entry(tmoGetColStat,                                                                          \
        int(int column, int& entries, int& positive, int& negative, int& nonlinear));           \
  entry(tmoGetColJacInfoOne,                                                                    \
        void(int column, Handle& cursor, double& value, int& row, int& nonlinear));             \
  entry(tmoGetRhsOne, double(int row));                                                         \
  entry(tmoGetEquTypeOne, int(int row));                                                        \
  entry(tmoGetVarLowerOne, double(int column));                                                 \
  entry(tmoGetVarUpperOne, double(int column));                                                 \
  entry(tmoSetHeadnTail, void(int field, double value));                                        \
  entry(tmoSetSolutionVarRec,                                                                   \
        int(int column, double level, double marginal, int basis_status, int solution_status)); \
  entry(tmoSetSolutionEquRec,                                                                   \
        int(int row, double level, double marginal, int basis_status, int solution_status));    \
  entry(tmoModelStatSet, void(int status));                                                     \
  entry(tmoSolveStatSet, void(int status));                                                     \
  entry(tmoUnloadSolutionLegacy, int())

struct Tmo : Library {
  Tmo();

  bool tmoXCreate(Handle& handle, std::span<char> message) { return Create(handle, message); }
  int tmoXFree(Handle& handle) { return Free(handle); }
  bool tmoGetReady(std::span<char> message) { return GetReady({}, message); }
  bool tmoGetReadyD(std::string_view directory, std::span<char> message) {
    return GetReady(directory, message);
  }

  LINFIT_TMO_FUNCTIONS(LINFIT_ENTRY);
};

}  // namespace linfit
