// The binary interface of one library function, from its C++ function type.
//
// An argument's type stands for a signature code, and with it for the C type that crosses the
// border and for the conversion on the way:
//
//   code  C++ argument               C argument
//    1    Handle                     void*              handle of another object
//    2    Handle&                    void**             cursor, the library updates it
//    3    int                        int
//    4    int&                       int*               the library writes it
//    9    LongText                   const char*        trimmed, cut to 511, terminated
//   11    std::string_view           const char*        trimmed, cut to 255, short string
//   12    ShortOut                   char*              as 17, copied into the caller's field
//   13    double                     double
//   14    double&                    double*            the library writes it
//   17    ShortText&                 char*              256 bytes for a short string
//   19    char&                      char*              one character
//   52    LabelNumbers&              int*               room for 20
//   53    const ValueRecord&         const double*      5 values
//   55    IndexTuple                 const char*        short strings of 256 bytes each, in a row
//
// Results: void (0), Handle (1), int (3), ShortResult (12), double (13), bool (15). A function with
// a ShortResult returns nothing in C and takes the 256-byte buffer as one more, last argument.
//
// Every conversion uses the stack; nothing is allocated.
#pragma once

#include <array>
#include <concepts>
#include <cstddef>
#include <span>
#include <string_view>

#include "binding/fixed_text.h"

namespace linfit {

using Handle = void*;
using LabelNumbers = std::array<int, 20>;
using ValueRecord = std::array<double, 5>;
using ShortResult = std::array<char, kShortStringLength>;  // blank-padded

// Long text for the library; trailing blanks do not count.
struct LongText {
  template <class T>
  requires std::convertible_to<const T&, std::string_view> LongText(const T& source)
      : text(source) {}  // NOLINT(google-explicit-constructor)
  std::string_view text;
};

// A field of the caller's that receives a text: over its whole width, cut or blank-padded.
struct ShortOut {
  template <class T>
  requires std::convertible_to<T&&, std::span<char>> ShortOut(T&& target)
      : field(target) {}  // NOLINT(google-explicit-constructor)
  std::span<char> field;
};

// A text that is read where the library has put it. For names and labels, of which there are
// millions: padding a field of theirs and trimming it again would be most of the work.
struct ShortText {
  [[nodiscard]] std::string_view View() const { return FromShortString(buffer); }
  char buffer[kShortStringBuffer];
};

// The first `dimension` labels of a record, at most 20, blank where `keys` has fewer; their
// trailing blanks count only when `trim` is off.
struct IndexTuple {
  std::span<const std::string_view> keys;
  int dimension;
  bool trim;
};

// How an argument crosses the border: get() gives what the library receives and lives until the
// call is over.
template <class T>
struct Arg;

template <int signature_code, class T>
struct ByValue {
  static constexpr int code = signature_code;
  using c_type = T;
  explicit ByValue(T v) : value(v) {}
  [[nodiscard]] T get() const { return value; }
  T value;
};
template <int signature_code, class T>
struct ByAddress {
  static constexpr int code = signature_code;
  using c_type = T*;
  explicit ByAddress(T& v) : address(&v) {}
  [[nodiscard]] T* get() const { return address; }
  T* address;
};

template <>
struct Arg<Handle> : ByValue<1, Handle> {
  using ByValue::ByValue;
};
template <>
struct Arg<Handle&> : ByAddress<2, Handle> {
  using ByAddress::ByAddress;
};
template <>
struct Arg<int> : ByValue<3, int> {
  using ByValue::ByValue;
};
template <>
struct Arg<int&> : ByAddress<4, int> {
  using ByAddress::ByAddress;
};
template <>
struct Arg<double> : ByValue<13, double> {
  using ByValue::ByValue;
};
template <>
struct Arg<double&> : ByAddress<14, double> {
  using ByAddress::ByAddress;
};
template <>
struct Arg<char&> : ByAddress<19, char> {
  using ByAddress::ByAddress;
};
template <>
struct Arg<LabelNumbers&> : ByAddress<52, int> {
  explicit Arg(LabelNumbers& numbers) : ByAddress(numbers[0]) {}
};
template <>
struct Arg<const ValueRecord&> : ByAddress<53, const double> {
  explicit Arg(const ValueRecord& values) : ByAddress(values[0]) {}
};

template <>
struct Arg<LongText> {
  static constexpr int code = 9;
  using c_type = const char*;
  explicit Arg(LongText source) { ToLongText(Trimmed(source.text), buffer); }
  [[nodiscard]] const char* get() const { return buffer; }
  char buffer[kLongTextBuffer];
};
template <>
struct Arg<std::string_view> {
  static constexpr int code = 11;
  using c_type = const char*;
  explicit Arg(std::string_view text) { ToShortString(Trimmed(text), buffer); }
  [[nodiscard]] const char* get() const { return buffer; }
  char buffer[kShortStringBuffer];
};
template <>
struct Arg<ShortText&> : ByAddress<17, char> {
  explicit Arg(ShortText& text) : ByAddress(text.buffer[0]) { text.buffer[0] = '\0'; }
};
template <>
struct Arg<ShortOut> {
  static constexpr int code = 12;
  using c_type = char*;
  explicit Arg(ShortOut target) : field(target.field) { buffer[0] = '\0'; }
  Arg(const Arg&) = delete;
  Arg& operator=(const Arg&) = delete;
  // Runs when the call's full expression ends, so the library has filled the buffer by then.
  ~Arg() { PadCopy(FromShortString(buffer), field); }
  char* get() { return buffer; }
  std::span<char> field;
  char buffer[kShortStringBuffer];
};
template <>
struct Arg<IndexTuple> {
  static constexpr int code = 55;
  using c_type = const char*;
  // Only what the dimension asks for is touched: 5 KB cleared per record would cost more than the
  // rest.
  explicit Arg(const IndexTuple& tuple) {
    buffer[0] = '\0';
    const auto count = static_cast<std::size_t>(std::clamp(tuple.dimension, 0, kLabels));
    char* slot = buffer;
    for (std::size_t k = 0; k < count; ++k, slot += kShortStringBuffer) {
      const std::string_view key = k < tuple.keys.size() ? tuple.keys[k] : std::string_view();
      ToShortString(tuple.trim ? Trimmed(key) : key, slot);
    }
  }
  [[nodiscard]] const char* get() const { return buffer; }
  static constexpr int kLabels = 20;
  char buffer[kShortStringBuffer * kLabels];
};

template <int signature_code, class T>
struct PlainResult {
  static constexpr int code = signature_code;
  using c_type = T;
};
template <class R>
struct Result;
template <>
struct Result<void> : PlainResult<0, void> {};
template <>
struct Result<Handle> : PlainResult<1, Handle> {};
template <>
struct Result<int> : PlainResult<3, int> {};
template <>
struct Result<ShortResult> : PlainResult<12, void> {};
template <>
struct Result<double> : PlainResult<13, double> {};
template <>
struct Result<bool> : PlainResult<15, int> {};

// Check list, slot type and call of a function with the C++ type `Signature`.
template <class Signature>
struct Abi;

template <class R, class... A>
struct Abi<R(A...)> {
  // The result's code, then one code per argument.
  static constexpr std::array<int, sizeof...(A) + 1> codes{Result<R>::code, Arg<A>::code...};
  using c_function = typename Result<R>::c_type (*)(Handle, typename Arg<A>::c_type...);

  static R Call(c_function function, Handle object, A... args) {
    return static_cast<R>(function(object, Arg<A>(args).get()...));
  }
  // What a function that isn't there gives: texts come back blank, the result is 0.
  static R CallMissing(A... args) {
    (static_cast<void>(Arg<A>(args)), ...);
    return R();
  }
};

template <class... A>
struct Abi<ShortResult(A...)> {
  static constexpr std::array<int, sizeof...(A) + 1> codes{Result<ShortResult>::code,
                                                           Arg<A>::code...};
  using c_function = void (*)(Handle, typename Arg<A>::c_type..., char*);

  static ShortResult Call(c_function function, Handle object, A... args) {
    ShortResult result;
    function(object, Arg<A>(args).get()..., Arg<ShortOut>(result).get());
    return result;
  }
  static ShortResult CallMissing(A... args) {
    (static_cast<void>(Arg<A>(args)), ...);
    ShortResult result;
    result.fill(' ');
    return result;
  }
};

}  // namespace linfit
