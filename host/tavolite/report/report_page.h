// A fit as one HTML page that needs nothing else: numbers and tables as plain HTML, figures drawn
// by the page's own script. docs/report.md describes it.
#pragma once

#include <string>

#include "tdx/tdx_reader.h"

namespace host {

// Throws FileError where the file holds no regression.
std::string ReportPage(TdxReader& reader);

}  // namespace host
