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
HOST_EXPORT void palSetAuditLine(void* handle, const char* line);
HOST_EXPORT void palGetAuditLine(void* handle, char* line);

// Environment. Results are 0 on success.
HOST_EXPORT int tevInitEnvironmentLegacy(void* handle, const char* control_file);
HOST_EXPORT void tevLog(void* handle, const char* line);
HOST_EXPORT void tevLogStat(void* handle, const char* line);
HOST_EXPORT void tevStat(void* handle, const char* line);
HOST_EXPORT void tevStatC(void* handle, const char* line);
HOST_EXPORT void tevStatAudit(void* handle, const char* line);
HOST_EXPORT void tevStatCon(void* handle);
HOST_EXPORT void tevStatCoff(void* handle);
HOST_EXPORT void tevStatPChar(void* handle, const char* text);
HOST_EXPORT void tevGetStrOpt(void* handle, const char* name, char* value);
HOST_EXPORT double tevTimeDiff(void* handle);

// Model object. Int results that are no count or number are 0 on success.
HOST_EXPORT int tmoRegisterEnvironment(void* handle, void* environment, char* message);
HOST_EXPORT int tmoLoadDataLegacy(void* handle, char* message);
HOST_EXPORT int tmoOptFile(void* handle);
HOST_EXPORT void tmoNameOptFile(void* handle, char* name);
HOST_EXPORT void* tmoDict(void* handle);
HOST_EXPORT int tmoDictionary(void* handle);
HOST_EXPORT void tmoIndexBaseSet(void* handle, int base);
HOST_EXPORT void tmoObjStyleSet(void* handle, int style);
HOST_EXPORT void tmoPinfSet(void* handle, double value);
HOST_EXPORT void tmoMinfSet(void* handle, double value);
HOST_EXPORT int tmoM(void* handle);
HOST_EXPORT int tmoN(void* handle);
HOST_EXPORT int tmoObjVar(void* handle);
HOST_EXPORT int tmoObjRow(void* handle);
HOST_EXPORT int tmoGetColStat(void* handle, int column, int* entries, int* quadratic,
                              int* nonlinear, int* objective);
HOST_EXPORT void tmoGetColJacInfoOne(void* handle, int column, void** cursor, double* value,
                                     int* row, int* nonlinear);
HOST_EXPORT double tmoGetRhsOne(void* handle, int row);
HOST_EXPORT int tmoGetEquTypeOne(void* handle, int row);
HOST_EXPORT double tmoGetVarLowerOne(void* handle, int column);
HOST_EXPORT double tmoGetVarUpperOne(void* handle, int column);
HOST_EXPORT void tmoSetHeadnTail(void* handle, int code, double value);
HOST_EXPORT int tmoSetSolutionVarRec(void* handle, int column, double level, double marginal,
                                     int basis, int status);
HOST_EXPORT int tmoSetSolutionEquRec(void* handle, int row, double level, double marginal,
                                     int basis, int status);
HOST_EXPORT void tmoModelStatSet(void* handle, int status);
HOST_EXPORT void tmoSolveStatSet(void* handle, int status);
HOST_EXPORT int tmoUnloadSolutionLegacy(void* handle);

// Dictionary. Results are 0 on success, 1 when there is no such row, column, symbol or label.
HOST_EXPORT int dctSymName(void* handle, int symbol, char* name);
HOST_EXPORT int dctUelLabel(void* handle, int label, char* quote, char* text);
HOST_EXPORT int dctColUels(void* handle, int column, int* symbol, int* labels, int* dimension);
HOST_EXPORT int dctRowUels(void* handle, int row, int* symbol, int* labels, int* dimension);
