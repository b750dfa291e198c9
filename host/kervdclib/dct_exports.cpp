// The dictionary's entries.
#include <algorithm>
#include <array>
#include <string_view>

#include "base/short_string.h"
#include "kervdclib/exports.h"
#include "kervdclib/model_object.h"

using host::DictionaryObject;
using host::ElementNames;
using host::InstanceData;

namespace {

const InstanceData* DataOf(void* handle) {
  const host::ModelObject* model = static_cast<const DictionaryObject*>(handle)->model;
  return model == nullptr ? nullptr : model->Data();
}

// By byte: whether a label with it needs no quotes.
constexpr std::array<bool, 256> kPlain = [] {
  std::array<bool, 256> plain{};
  for (const char c :
       std::string_view("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_+-.")) {
    plain[static_cast<unsigned char>(c)] = true;
  }
  return plain;
}();

// The quote to put around a label, blank when it can do without one.
char Quote(std::string_view label) {
  const bool plain =
      std::ranges::all_of(label, [](char c) { return kPlain[static_cast<unsigned char>(c)]; });
  if (plain) return ' ';
  return label.find('\'') == std::string_view::npos ? '\'' : '"';
}

int Text(const InstanceData* data, host::TextList host::Dictionary::*list, int number, char* text) {
  const auto i = static_cast<std::size_t>(number);
  if (data == nullptr || number < 0 || i >= (data->dictionary.*list).size()) {
    host::ToShortString("", text);
    return 1;
  }
  host::ToShortString((data->dictionary.*list)[i], text);
  return 0;
}

// Of the element with place `i` in `names`.
int Names(const ElementNames& names, std::size_t i, int* symbol, int* labels, int* dimension) {
  if (i >= names.symbol.size()) {
    return 1;
  }
  *symbol = names.symbol[i];
  *dimension = names.first[i + 1] - names.first[i];
  std::copy_n(names.label.begin() + names.first[i], *dimension, labels);
  return 0;
}

}  // namespace

void dctXCreate(void** handle) {
  host::CreateObject<DictionaryObject>(handle);
}

void dctXCreateD(void** handle, const char* /*directory*/) {
  dctXCreate(handle);
}

void dctXFree(void** handle) {
  // A model object's dictionary goes with the model object.
  if (*handle != nullptr && static_cast<DictionaryObject*>(*handle)->belongs_to_model) {
    *handle = nullptr;
  }
  host::FreeObject<DictionaryObject>(handle);
}

int dctSymName(void* handle, int symbol, char* name) {
  return Text(DataOf(handle), &host::Dictionary::symbols, symbol, name);
}

int dctUelLabel(void* handle, int label, char* quote, char* text) {
  const int result = Text(DataOf(handle), &host::Dictionary::labels, label, text);
  *quote = Quote(host::ShortStringText(text));
  return result;
}

int dctColUels(void* handle, int column, int* symbol, int* labels, int* dimension) {
  *symbol = *dimension = 0;
  const InstanceData* data = DataOf(handle);
  if (data == nullptr || column < 0) return 1;
  return Names(data->column_names, static_cast<std::size_t>(column), symbol, labels, dimension);
}

int dctRowUels(void* handle, int row, int* symbol, int* labels, int* dimension) {
  *symbol = *dimension = 0;
  host::ModelObject* model = static_cast<const DictionaryObject*>(handle)->model;
  const host::RowPiece* rows = model == nullptr ? nullptr : model->RowsWith(row);
  if (rows == nullptr) return 1;
  return Names(rows->names, static_cast<std::size_t>(row) - rows->begin, symbol, labels, dimension);
}
