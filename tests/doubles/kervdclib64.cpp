// Audit, environment, model-object and dictionary library.
#include "binding/dctmf9glu.h"
#include "binding/palmf9glu.h"
#include "binding/tevmf9glu.h"
#include "binding/tmomf9glu.h"
#include "tests/doubles/exports.h"

namespace {

using doubles::Call;
using doubles::FromShort;

doubles::ObjectKind audit{"audit object"};
doubles::ObjectKind environment{"environment object"};
doubles::ObjectKind model_object{"model object"};
doubles::ObjectKind dictionary{"dictionary"};

std::string audit_line;
int index_base = 0;
double plus_infinity = 1e299;
double minus_infinity = -1e299;

const doubles::Model& Model() {
  return doubles::CurrentScript().model;
}

// A script may tell the solver of more than there is; what is not there is empty.
template <class T>
const T& At(const std::vector<T>& elements, int number, int base) {
  static const T none{};
  const auto place = static_cast<std::size_t>(number) - static_cast<std::size_t>(base);
  return place < elements.size() ? elements[place] : none;
}

const std::vector<doubles::Entry>& Column(int column) {
  return At(Model().columns, column, index_base);
}

// `size`: the script's name for the number of labels.
void Uels(const doubles::ElementName& name, const char* size, int number, int* symbol, int* labels,
          int* dimension) {
  *symbol = name.symbol;
  *dimension = doubles::Scripted(size, number + 1, static_cast<int>(name.labels.size()));
  std::copy(name.labels.begin(), name.labels.end(), labels);
}

}  // namespace

DOUBLES_ENTRIES(audit, pal, pal)
DOUBLES_ENTRIES(environment, tev, tev)
DOUBLES_ENTRIES(model_object, tmo, tmo)
DOUBLES_ENTRIES(dictionary, dct, dct)

DOUBLES_EXPORT void tevXCreateD(void** handle, const char*) {
  tevXCreate(handle);
}
DOUBLES_EXPORT void tmoXCreateD(void** handle, const char*) {
  tmoXCreate(handle);
}
DOUBLES_EXPORT void dctXCreateD(void** handle, const char*) {
  dctXCreate(handle);
}

DOUBLES_EXPORT void palSetAuditLine(void* h, const char* line) {
  const Call call(audit, h, "palSetAuditLine", FromShort(line));
  audit_line = FromShort(line);
}
DOUBLES_EXPORT void palGetAuditLine(void* h, char* line) {
  Call(audit, h, "palGetAuditLine").Give(line, audit_line);
}

DOUBLES_EXPORT int tevInitEnvironmentLegacy(void* h, const char* control_file) {
  return Call(environment, h, "tevInitEnvironmentLegacy", FromShort(control_file)).Int(0);
}
DOUBLES_EXPORT void tevLog(void* h, const char* line) {
  const Call call(environment, h, "tevLog", FromShort(line));
}
DOUBLES_EXPORT void tevLogStat(void* h, const char* line) {
  const Call call(environment, h, "tevLogStat", FromShort(line));
}
DOUBLES_EXPORT void tevStat(void* h, const char* line) {
  const Call call(environment, h, "tevStat", FromShort(line));
}
DOUBLES_EXPORT void tevStatC(void* h, const char* line) {
  const Call call(environment, h, "tevStatC", FromShort(line));
}
DOUBLES_EXPORT void tevStatAudit(void* h, const char* line) {
  const Call call(environment, h, "tevStatAudit", FromShort(line));
}
DOUBLES_EXPORT void tevStatCon(void* h) {
  const Call call(environment, h, "tevStatCon");
}
DOUBLES_EXPORT void tevStatCoff(void* h) {
  const Call call(environment, h, "tevStatCoff");
}
DOUBLES_EXPORT void tevStatPChar(void* h, const char* text) {
  const Call call(environment, h, "tevStatPChar", std::string(text));
}
DOUBLES_EXPORT void tevGetStrOpt(void* h, const char* option, char* value) {
  const std::string name = FromShort(option);
  Call(environment, h, "tevGetStrOpt", name).Give(value, name == "NameSysDir" ? "system/" : "");
}
DOUBLES_EXPORT double tevTimeDiff(void* h) {
  return Call(environment, h, "tevTimeDiff").Real(0.25);
}

DOUBLES_EXPORT int tmoRegisterEnvironment(void* h, void* registered, char* message) {
  doubles::RequireLive(environment, registered, "tmoRegisterEnvironment");
  return Call(model_object, h, "tmoRegisterEnvironment").Give(message).Int(0);
}
DOUBLES_EXPORT int tmoLoadDataLegacy(void* h, char* message) {
  return Call(model_object, h, "tmoLoadDataLegacy").Give(message).Int(0);
}
DOUBLES_EXPORT int tmoOptFile(void* h) {
  return Call(model_object, h, "tmoOptFile").Int(0);
}
DOUBLES_EXPORT void tmoNameOptFile(void* h, char* name) {
  Call(model_object, h, "tmoNameOptFile").Give(name, "linfit.opt");
}
DOUBLES_EXPORT void* tmoDict(void* h) {
  const Call call(model_object, h, "tmoDict");
  dictionary.live = 1;
  return call.Null() ? nullptr : &dictionary;
}
DOUBLES_EXPORT int tmoDictionary(void* h) {
  return Call(model_object, h, "tmoDictionary").Int(1);
}
DOUBLES_EXPORT void tmoIndexBaseSet(void* h, int base) {
  const Call call(model_object, h, "tmoIndexBaseSet", base);
  index_base = base;
}
DOUBLES_EXPORT void tmoObjStyleSet(void* h, int style) {
  const Call call(model_object, h, "tmoObjStyleSet", style);
}
DOUBLES_EXPORT void tmoPinfSet(void* h, double value) {
  const Call call(model_object, h, "tmoPinfSet", value);
  plus_infinity = value;
}
DOUBLES_EXPORT void tmoMinfSet(void* h, double value) {
  const Call call(model_object, h, "tmoMinfSet", value);
  minus_infinity = value;
}
DOUBLES_EXPORT int tmoM(void* h) {
  return Call(model_object, h, "tmoM").Int(static_cast<int>(Model().rhs.size()));
}
DOUBLES_EXPORT int tmoN(void* h) {
  return Call(model_object, h, "tmoN").Int(static_cast<int>(Model().columns.size()));
}
DOUBLES_EXPORT int tmoObjVar(void* h) {
  return Call(model_object, h, "tmoObjVar").Int(Model().objective_column + index_base);
}
DOUBLES_EXPORT int tmoObjRow(void* h) {
  return Call(model_object, h, "tmoObjRow").Int(Model().objective_row + index_base);
}
DOUBLES_EXPORT int tmoGetColStat(void* h, int column, int* entries, int* positive, int* negative,
                                 int* nonlinear) {
  const Call call(model_object, h, "tmoGetColStat", column);
  *entries = doubles::Scripted("entryCount", column, static_cast<int>(Column(column).size()));
  *positive = *negative = *nonlinear = 0;
  return call.Int(0);
}
DOUBLES_EXPORT void tmoGetColJacInfoOne(void* h, int column, void** cursor, double* value, int* row,
                                        int* nonlinear) {
  const Call call(model_object, h, "tmoGetColJacInfoOne", column);
  const std::vector<doubles::Entry>& entries = Column(column);
  if (entries.empty()) {
    *value = 0.0;
    *row = *nonlinear = 0;
    return;
  }
  const doubles::Entry* entry =
      *cursor == nullptr ? entries.data() : static_cast<const doubles::Entry*>(*cursor);
  *value = entry->value;
  *row = entry->row + index_base;
  *nonlinear = 0;
  const doubles::Entry* next = entry + 1;
  *cursor = next == entries.data() + entries.size() ? nullptr : const_cast<doubles::Entry*>(next);
}
DOUBLES_EXPORT double tmoGetRhsOne(void* h, int row) {
  const Call call(model_object, h, "tmoGetRhsOne", row);
  return call.Real(At(Model().rhs, row, index_base));
}
DOUBLES_EXPORT int tmoGetEquTypeOne(void* h, int row) {
  const Call call(model_object, h, "tmoGetEquTypeOne", row);
  return call.Int(row - index_base == Model().objective_row ? 3 : 0);
}
DOUBLES_EXPORT double tmoGetVarLowerOne(void* h, int column) {
  return Call(model_object, h, "tmoGetVarLowerOne", column).Real(minus_infinity);
}
DOUBLES_EXPORT double tmoGetVarUpperOne(void* h, int column) {
  return Call(model_object, h, "tmoGetVarUpperOne", column).Real(plus_infinity);
}
DOUBLES_EXPORT void tmoSetHeadnTail(void* h, int field, double value) {
  const Call call(model_object, h, "tmoSetHeadnTail", field, value);
}
DOUBLES_EXPORT int tmoSetSolutionVarRec(void* h, int column, double level, double marginal,
                                        int basis, int status) {
  return Call(model_object, h, "tmoSetSolutionVarRec", column, level, marginal, basis, status)
      .Int(0);
}
DOUBLES_EXPORT int tmoSetSolutionEquRec(void* h, int row, double level, double marginal, int basis,
                                        int status) {
  return Call(model_object, h, "tmoSetSolutionEquRec", row, level, marginal, basis, status).Int(0);
}
DOUBLES_EXPORT void tmoModelStatSet(void* h, int status) {
  const Call call(model_object, h, "tmoModelStatSet", status);
}
DOUBLES_EXPORT void tmoSolveStatSet(void* h, int status) {
  const Call call(model_object, h, "tmoSolveStatSet", status);
}
DOUBLES_EXPORT int tmoUnloadSolutionLegacy(void* h) {
  return Call(model_object, h, "tmoUnloadSolutionLegacy").Int(0);
}

DOUBLES_EXPORT int dctSymName(void* h, int symbol, char* name) {
  const Call call(dictionary, h, "dctSymName", symbol);
  return call.Give(name, At(Model().symbols, symbol, 1)).Int(0);
}
DOUBLES_EXPORT int dctUelLabel(void* h, int number, char* quote, char* text) {
  const Call call(dictionary, h, "dctUelLabel", number);
  const doubles::Label& label = At(Model().labels, number, 1);
  *quote = label.quote;
  return call.Give(text, label.text).Int(0);
}
DOUBLES_EXPORT int dctColUels(void* h, int column, int* symbol, int* labels, int* dimension) {
  const Call call(dictionary, h, "dctColUels", column);
  Uels(At(Model().column_names, column, 0), "columnDimension", column, symbol, labels, dimension);
  return call.Int(0);
}
DOUBLES_EXPORT int dctRowUels(void* h, int row, int* symbol, int* labels, int* dimension) {
  const Call call(dictionary, h, "dctRowUels", row);
  Uels(At(Model().row_names, row, 0), "rowDimension", row, symbol, labels, dimension);
  return call.Int(0);
}

namespace linfit {
LINFIT_PAL_FUNCTIONS(DOUBLES_SAME_TYPE);
LINFIT_TEV_FUNCTIONS(DOUBLES_SAME_TYPE);
LINFIT_TMO_FUNCTIONS(DOUBLES_SAME_TYPE);
LINFIT_DCT_FUNCTIONS(DOUBLES_SAME_TYPE);
}  // namespace linfit
