// Which functions the library offers, and for which interface versions.
#include "kervdclib/exports.h"

namespace {

using host::CheckSignature;
using host::CheckVersion;
using host::Signature;

constexpr int kAuditVersion = 1;
constexpr int kEnvironmentVersion = 6;
constexpr int kModelVersion = 16;
constexpr int kDictionaryVersion = 2;

constexpr Signature kAudit[] = {{"palSetAuditLine", {0, 11}}, {"palGetAuditLine", {12}}};

constexpr Signature kEnvironment[] = {
    {"tevInitEnvironmentLegacy", {3, 11}},
    {"tevLog", {0, 11}},
    {"tevLogStat", {0, 11}},
    {"tevStat", {0, 11}},
    {"tevStatC", {0, 11}},
    {"tevStatAudit", {0, 11}},
    {"tevStatCon", {0}},
    {"tevStatCoff", {0}},
    {"tevStatPChar", {0, 9}},
    {"tevGetStrOpt", {12, 11}},
    {"tevTimeDiff", {13}},
};

constexpr Signature kModel[] = {
    {"tmoRegisterEnvironment", {3, 1, 12}},
    {"tmoLoadDataLegacy", {3, 12}},
    {"tmoOptFile", {3}},
    {"tmoNameOptFile", {12}},
    {"tmoDict", {1}},
    {"tmoDictionary", {3}},
    {"tmoIndexBaseSet", {0, 3}},
    {"tmoObjStyleSet", {0, 3}},
    {"tmoPinfSet", {0, 13}},
    {"tmoMinfSet", {0, 13}},
    {"tmoM", {3}},
    {"tmoN", {3}},
    {"tmoObjVar", {3}},
    {"tmoObjRow", {3}},
    {"tmoGetColStat", {3, 3, 4, 4, 4, 4}},
    {"tmoGetColJacInfoOne", {0, 3, 2, 14, 4, 4}},
    {"tmoGetRhsOne", {13, 3}},
    {"tmoGetEquTypeOne", {3, 3}},
    {"tmoGetVarLowerOne", {13, 3}},
    {"tmoGetVarUpperOne", {13, 3}},
    {"tmoSetHeadnTail", {0, 3, 13}},
    {"tmoSetSolutionVarRec", {3, 3, 13, 13, 3, 3}},
    {"tmoSetSolutionEquRec", {3, 3, 13, 13, 3, 3}},
    {"tmoModelStatSet", {0, 3}},
    {"tmoSolveStatSet", {0, 3}},
    {"tmoUnloadSolutionLegacy", {3}},
};

constexpr Signature kDictionary[] = {
    {"dctSymName", {3, 3, 17}},
    {"dctUelLabel", {3, 3, 19, 17}},
    {"dctColUels", {3, 3, 4, 52, 4}},
    {"dctRowUels", {3, 3, 4, 52, 4}},
};

}  // namespace

int CpalXCheck(const char* name, int arguments, const int* codes, char* message) {
  return CheckSignature(kAudit, name, arguments, codes, message);
}
int CpalXAPIVersion(int version, char* message, int* compatibility) {
  return CheckVersion("audit library", kAuditVersion, version, message, compatibility);
}
int CtevXCheck(const char* name, int arguments, const int* codes, char* message) {
  return CheckSignature(kEnvironment, name, arguments, codes, message);
}
int CtevXAPIVersion(int version, char* message, int* compatibility) {
  return CheckVersion("environment library", kEnvironmentVersion, version, message, compatibility);
}
int CtmoXCheck(const char* name, int arguments, const int* codes, char* message) {
  return CheckSignature(kModel, name, arguments, codes, message);
}
int CtmoXAPIVersion(int version, char* message, int* compatibility) {
  return CheckVersion("model-object library", kModelVersion, version, message, compatibility);
}
int CdctXCheck(const char* name, int arguments, const int* codes, char* message) {
  return CheckSignature(kDictionary, name, arguments, codes, message);
}
int CdctXAPIVersion(int version, char* message, int* compatibility) {
  return CheckVersion("dictionary library", kDictionaryVersion, version, message, compatibility);
}
