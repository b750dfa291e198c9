// What the entries of every library of the host have in common.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <initializer_list>
#include <memory>
#include <span>
#include <string_view>

#if defined(_WIN32)
#define HOST_EXPORT extern "C" __declspec(dllexport)
#else
#define HOST_EXPORT extern "C" __attribute__((visibility("default")))
#endif

namespace host {

// A function's name and its signature: the result's code, then one code per argument. 0 nothing,
// 1 handle, 2 cursor, 3 int, 4 int by reference, 9 long text in, 11 short string in, 12 and 17
// short string out, 13 double, 14 double by reference, 19 character out, 52 label numbers out.
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
