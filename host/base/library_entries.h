// What the entries of every library of the host have in common.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <initializer_list>
#include <memory>
#include <span>
#include <string_view>
#include <type_traits>

#if defined(_WIN32)
#define HOST_EXPORT extern "C" __declspec(dllexport)
#else
#define HOST_EXPORT extern "C" __attribute__((visibility("default")))
#endif

// A library has one list of its functions, `#define NAME_FUNCTIONS(ENTRY) ENTRY(name, codes...)
// ...`, with the result's code first and then one code per argument. NAME_FUNCTIONS(HOST_DECLARE)
// declares them and NAME_FUNCTIONS(HOST_SIGNATURE) fills a table of signatures.
#define HOST_DECLARE(name, ...) HOST_EXPORT host::EntryType<__VA_ARGS__> name;
#define HOST_SIGNATURE(name, ...) {#name, {__VA_ARGS__}},

namespace host {

// The C type that stands for a signature code.
template <int code>
auto CTypeOf() {
  if constexpr (code == 1) {  // handle
    return std::type_identity<void*>();
  } else if constexpr (code == 2) {  // cursor, updated
    return std::type_identity<void**>();
  } else if constexpr (code == 3) {
    return std::type_identity<int>();
  } else if constexpr (code == 4 || code == 52) {  // int out, label numbers out
    return std::type_identity<int*>();
  } else if constexpr (code == 9 || code == 11 || code == 55) {  // long text, short string, keys
    return std::type_identity<const char*>();
  } else if constexpr (code == 12 || code == 17 || code == 19) {  // short string out, character out
    return std::type_identity<char*>();
  } else if constexpr (code == 13) {
    return std::type_identity<double>();
  } else if constexpr (code == 14) {  // double out
    return std::type_identity<double*>();
  } else if constexpr (code == 53) {  // value record
    return std::type_identity<const double*>();
  } else {
    static_assert(code == 0, "unknown signature code");
    return std::type_identity<void>();
  }
}
template <int code>
using CType = typename decltype(CTypeOf<code>())::type;

// The C type of a function with these codes: the object's handle comes before the arguments, and a
// short string as the result is one more, last argument.
template <int result, int... arguments>
struct EntryTypeOf {
  using type = CType<result>(void*, CType<arguments>...);
};
template <int... arguments>
struct EntryTypeOf<12, arguments...> {
  using type = void(void*, CType<arguments>..., char*);
};
template <int... codes>
using EntryType = typename EntryTypeOf<codes...>::type;

// A function's name and its signature.
struct Signature {
  std::string_view name;
  std::array<int, 6> codes{};
  std::size_t count;

  constexpr Signature(std::string_view function, std::initializer_list<int> list)
      : name(function), count(list.size()) {
    std::copy(list.begin(), list.end(), codes.begin());
  }
};

// 1 when one of `offered` has this name and these codes (`arguments` + 1 of them), else 0 and a
// reason in `message`.
int CheckSignature(std::span<const Signature> offered, const char* name, int arguments,
                   const int* codes, char* message);

// 1 when `asked` is the version that the library offers, else 0 and a reason in `message`.
int CheckVersion(std::string_view library, int offered, int asked, char* message,
                 int* compatibility);

// `text` as terminated text into a message buffer of 256 bytes, which may be null.
void PutMessage(std::string_view text, char* message);

// Runs a library function's body: no exception may reach the caller, which may be another language.
template <class Result, class Body>
Result Guarded(Result failure, Body body) noexcept {
  try {
    return body();
  } catch (...) {
    return failure;
  }
}
template <class Body>
void Guarded(Body body) noexcept {
  try {
    body();
  } catch (...) {  // NOLINT(bugprone-empty-catch): such a function has no way to report
  }
}

// The create and free entries: a null handle says that there is no object.
template <class Object>
void CreateObject(void** handle) noexcept {
  *handle = Guarded<void*>(nullptr,
                           [] { return static_cast<void*>(std::make_unique<Object>().release()); });
}
template <class Object>
void FreeObject(void** handle) noexcept {
  delete static_cast<Object*>(*handle);
  *handle = nullptr;
}

}  // namespace host
