#include "resultsfile/results_content.h"

namespace linfit {

std::string_view QuantileFailure(int ifault) {
  switch (ifault) {
    case 1:
      return "df incorrect in call to STUDIN";
    case 2:
      return "p incorrect in call to STUDIN";
    default:
      return {};
  }
}

}  // namespace linfit
