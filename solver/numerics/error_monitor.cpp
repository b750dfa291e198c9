#include "numerics/error_monitor.h"

#include <cstdio>
#include <cstdlib>

#include "text/trimmed.h"

namespace linfit {

namespace {

constexpr std::string_view kTable =
    "B100.1B300.1B300.2C200.0C200.1C200.2C200.3C201.0C202.0C202.1C202.2C205.1"
    "C205.2C207.0C208.0C209.0C209.1C209.2C209.3C210.1C302.1C303.1C304.1C305.1"
    "C306.1C307.1C312.1C313.1C315.1C316.1C316.2C320.1C321.1C323.1C327.1C328.1"
    "C328.2C328.3C330.1C330.2C330.3C331.1C331.2C334.1C334.2C334.3C334.4C334.5"
    "C334.6C336.1C337.1C338.1C340.1C343.1C343.2C343.3C343.4C344.1C344.2C344.3"
    "C344.4C345.1C346.1C346.2C346.3C347.1C347.2C347.3C347.4C347.5C347.6C348.1"
    "C349.1C349.2C349.3D101.1D103.1D104.1D104.2D105.1D105.2D107.1D110.0D110.1"
    "D110.2D110.3D110.4D110.5D110.6D113.1D201.1D202.1D401.1D601.1E210.1E210.2"
    "E210.3E210.4E210.5E210.6E210.7E211.0E211.1E211.2E211.3E211.4E406.0E406.1"
    "E407.0E408.0E408.1F500.0F500.1F500.2F500.3G100.1G100.2G101.1G101.2G105.1"
    "G106.1G106.2G116.1G116.2H101.0H101.1H101.2H301.1U501.1V202.1V202.2V202.3";
static_assert(kTable.size() == kErrorCodeCount * kErrorCodeLength);

constexpr std::string_view kMargin = "       ***** CERN ";
constexpr std::string_view kEnd = "ABEND ROUTINE HAS BEEN CALLED.\n";

std::string_view CodeAt(std::size_t place) {
  return kTable.substr(place * kErrorCodeLength, kErrorCodeLength);
}

std::string InSixColumns(std::string_view code) {
  std::string field(code.substr(0, kErrorCodeLength));
  field.resize(kErrorCodeLength, ' ');
  return field;
}

// Takes one occurrence from a limit; false when there is none left.
bool TakeOne(int& limit) {
  if (limit < 1) {
    return false;
  }
  if (limit < kUnlimited) {
    --limit;
  }
  return true;
}

}  // namespace

const std::string_view kErrorCodes = kTable;

std::size_t FindErrorCode(std::string_view code) {
  std::size_t place = 0;
  while (place < kErrorCodeCount && CodeAt(place) != code) {
    ++place;
  }
  return place;
}

ErrorReport CountError(ErrorMonitor& monitor, std::string_view routine, std::string_view code,
                       std::string_view text) {
  ErrorReport report;
  const std::size_t place = FindErrorCode(code);
  if (place == kErrorCodeCount) {
    report.terminate = true;
    report.lines.append(kMargin).append("N002 MTLSET ... ERROR N002: ERROR CODE ");
    report.lines.append(InSixColumns(code));
    report.lines.append(" NOT RECOGNIZED BY ERROR MONITOR. RUN ABORTED.\n").append(kEnd);
    return report;
  }
  const bool print = TakeOne(monitor.limits[place].message);
  report.terminate = !TakeOne(monitor.limits[place].abort);
  if (report.terminate) {
    // "NOO2.1", with two letters O, is the message as it has always been.
    report.lines.append(kMargin).append("N002 MTLSET ... ERROR NOO2.1: ");
    report.lines.append("RUN TERMINATED BY LIBRARY ERROR CONDITION ");
    report.lines.append(InSixColumns(code)).append("\n");
  }
  if (print) {
    report.lines.append(kMargin).append(code.substr(0, 4)).append(" ").append(routine);
    report.lines.append(" ERROR ").append(code).append(": ");
    report.lines.append(Trimmed(text)).append("\n");
  }
  if (report.terminate) {
    report.lines.append(kEnd);
  }
  return report;
}

void ReportError(ErrorMonitor& monitor, std::string_view routine, std::string_view code,
                 std::string_view text) {
  const ErrorReport report = CountError(monitor, routine, code, text);
  std::fwrite(report.lines.data(), 1, report.lines.size(), stdout);
  std::fflush(stdout);
  if (report.terminate) {
    std::exit(EXIT_SUCCESS);
  }
}

}  // namespace linfit
