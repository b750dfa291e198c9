// Names and numbers of the TDX file format that the writer and the reader share. The format itself
// is described in docs/tdx-file.md.
#pragma once

#include <cstdint>

namespace host {

inline constexpr std::int32_t kTdxApplicationId = 0x54445846;  // "TDXF"
inline constexpr int kTdxSchemaVersion = 1;                    // also the pragma user_version

}  // namespace host
