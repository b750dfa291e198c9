// The texts that every report page holds, embedded by the build as their files stand.
#pragma once

#include <string_view>

namespace host {

struct PageAsset {
  std::string_view text;
  std::string_view sha256;  // of the text, in base64
};

extern const PageAsset kD3Script;
extern const PageAsset kD3Licence;
extern const PageAsset kPlotScript;
extern const PageAsset kPlotLicence;
extern const PageAsset kReportScript;
extern const PageAsset kReportStyle;

}  // namespace host
