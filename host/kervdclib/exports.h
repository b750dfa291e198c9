// The functions that the library exports, in the C types of the interface. Numbers of rows and
// columns are relative to the index base where `tmo` functions take or give them, and zero-based in
// `dct` functions. Short strings stand in buffers of 256 bytes.
#pragma once

#include "base/library_entries.h"

// Create, free, check and version entries.
HOST_EXPORT void palXCreate(void** handle);
HOST_EXPORT void palXFree(void** handle);
HOST_EXPORT int CpalXCheck(const char* name, int arguments, const int* codes, char* message);
HOST_EXPORT int CpalXAPIVersion(int version, char* message, int* compatibility);
HOST_EXPORT void tevXCreate(void** handle);
HOST_EXPORT void tevXCreateD(void** handle, const char* directory);
HOST_EXPORT void tevXFree(void** handle);
HOST_EXPORT int CtevXCheck(const char* name, int arguments, const int* codes, char* message);
HOST_EXPORT int CtevXAPIVersion(int version, char* message, int* compatibility);
HOST_EXPORT void tmoXCreate(void** handle);
HOST_EXPORT void tmoXCreateD(void** handle, const char* directory);
HOST_EXPORT void tmoXFree(void** handle);
HOST_EXPORT int CtmoXCheck(const char* name, int arguments, const int* codes, char* message);
HOST_EXPORT int CtmoXAPIVersion(int version, char* message, int* compatibility);
HOST_EXPORT void dctXCreate(void** handle);
HOST_EXPORT void dctXCreateD(void** handle, const char* directory);
HOST_EXPORT void dctXFree(void** handle);
HOST_EXPORT int CdctXCheck(const char* name, int arguments, const int* codes, char* message);
HOST_EXPORT int CdctXAPIVersion(int version, char* message, int* compatibility);

// Audit: the printed line is the template without its markers "_TAVO_" and "_OVAT_".
#define AUDIT_FUNCTIONS(ENTRY)  \
  ENTRY(palSetAuditLine, 0, 11) \
  ENTRY(palGetAuditLine, 12)

// Environment. Results are 0 on success.
#define ENVIRONMENT_FUNCTIONS(ENTRY)     \
  /* control file */                     \
  ENTRY(tevInitEnvironmentLegacy, 3, 11) \
  ENTRY(tevLog, 0, 11)                   \
  ENTRY(tevLogStat, 0, 11)               \
  ENTRY(tevStat, 0, 11)                  \
  ENTRY(tevStatC, 0, 11)                 \
  ENTRY(tevStatAudit, 0, 11)             \
  ENTRY(tevStatCon, 0)                   \
  ENTRY(tevStatCoff, 0)                  \
  ENTRY(tevStatPChar, 0, 9)              \
  /* name; gives the value */            \
  ENTRY(tevGetStrOpt, 12, 11)            \
  ENTRY(tevTimeDiff, 13)

// Model object. Int results that are no count or number are 0 on success.
#define MODEL_FUNCTIONS(ENTRY)                                                        \
  /* environment, message */                                                          \
  ENTRY(tmoRegisterEnvironment, 3, 1, 12)                                             \
  ENTRY(tmoLoadDataLegacy, 3, 12)                                                     \
  ENTRY(tmoOptFile, 3)                                                                \
  ENTRY(tmoNameOptFile, 12)                                                           \
  ENTRY(tmoDict, 1)                                                                   \
  ENTRY(tmoDictionary, 3)                                                             \
  ENTRY(tmoIndexBaseSet, 0, 3)                                                        \
  ENTRY(tmoObjStyleSet, 0, 3)                                                         \
  ENTRY(tmoPinfSet, 0, 13)                                                            \
  ENTRY(tmoMinfSet, 0, 13)                                                            \
  ENTRY(tmoM, 3)                                                                      \
  ENTRY(tmoN, 3)                                                                      \
  ENTRY(tmoObjVar, 3)                                                                 \
  ENTRY(tmoObjRow, 3)                                                                 \
  /* column; entries, quadratic, nonlinear, whether it occurs in the objective row */ \
  ENTRY(tmoGetColStat, 3, 3, 4, 4, 4, 4)                                              \
  /* column, cursor; value, row, nonlinear */                                         \
  ENTRY(tmoGetColJacInfoOne, 0, 3, 2, 14, 4, 4)                                       \
  ENTRY(tmoGetRhsOne, 13, 3)                                                          \
  ENTRY(tmoGetEquTypeOne, 3, 3)                                                       \
  ENTRY(tmoGetVarLowerOne, 13, 3)                                                     \
  ENTRY(tmoGetVarUpperOne, 13, 3)                                                     \
  /* code, value */                                                                   \
  ENTRY(tmoSetHeadnTail, 0, 3, 13)                                                    \
  /* row or column, level, marginal, basis, status */                                 \
  ENTRY(tmoSetSolutionVarRec, 3, 3, 13, 13, 3, 3)                                     \
  ENTRY(tmoSetSolutionEquRec, 3, 3, 13, 13, 3, 3)                                     \
  ENTRY(tmoModelStatSet, 0, 3)                                                        \
  ENTRY(tmoSolveStatSet, 0, 3)                                                        \
  ENTRY(tmoUnloadSolutionLegacy, 3)

// Dictionary. Results are 0 on success, 1 when there is no such row, column, symbol or label.
#define DICTIONARY_FUNCTIONS(ENTRY)              \
  /* symbol; name */                             \
  ENTRY(dctSymName, 3, 3, 17)                    \
  /* label; quote, text */                       \
  ENTRY(dctUelLabel, 3, 3, 19, 17)               \
  /* column or row; symbol, labels, dimension */ \
  ENTRY(dctColUels, 3, 3, 4, 52, 4)              \
  ENTRY(dctRowUels, 3, 3, 4, 52, 4)

AUDIT_FUNCTIONS(HOST_DECLARE)
ENVIRONMENT_FUNCTIONS(HOST_DECLARE)
MODEL_FUNCTIONS(HOST_DECLARE)
DICTIONARY_FUNCTIONS(HOST_DECLARE)
