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

constexpr Signature kAudit[] = {AUDIT_FUNCTIONS(HOST_SIGNATURE)};
constexpr Signature kEnvironment[] = {ENVIRONMENT_FUNCTIONS(HOST_SIGNATURE)};
constexpr Signature kModel[] = {MODEL_FUNCTIONS(HOST_SIGNATURE)};
constexpr Signature kDictionary[] = {DICTIONARY_FUNCTIONS(HOST_SIGNATURE)};

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
