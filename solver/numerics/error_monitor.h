// The monitor of numerical errors: looks a code up, counts it and prints the library's message.
//
// Each code has two limits. Its message is printed for the first `message` reports; from the report
// after the first `abort` ones on the process is ended. kUnlimited or more is never counted down:
// with the initial limits every report is printed and none ends the process. A run has one monitor.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace linfit {

inline constexpr std::size_t kErrorCodeLength = 6;
inline constexpr std::size_t kErrorCodeCount = 132;
inline constexpr int kUnlimited = 255;

// All codes in ascending order, kErrorCodeLength characters each, without separators.
extern const std::string_view kErrorCodes;

struct ErrorLimits {
  int message = kUnlimited;
  int abort = kUnlimited;
};

struct ErrorMonitor {
  std::array<ErrorLimits, kErrorCodeCount> limits{};  // in the order of kErrorCodes
};

// Place of a code in the table (all its characters are compared), or kErrorCodeCount.
[[nodiscard]] std::size_t FindErrorCode(std::string_view code);

struct ErrorReport {
  std::string lines;       // each ended by "\n"; empty when the message limit is used up
  bool terminate = false;  // the process has to be ended
};

// Counts one occurrence of `code` in `routine` and forms what is to be printed. An unknown code
// ends the process.
[[nodiscard]] ErrorReport CountError(ErrorMonitor& monitor, std::string_view routine,
                                     std::string_view code, std::string_view text);

// CountError, its lines to standard output, and the end of the process (exit status 0) if due.
void ReportError(ErrorMonitor& monitor, std::string_view routine, std::string_view code,
                 std::string_view text);

}  // namespace linfit
