#include "binding/tdxf9glu.h"

namespace linfit {
namespace {

constexpr LibraryInterface kInterface{
    .base_name = "tdxdclib",
    .glue_source = "tdxf9glu",
    .create_entry = "XCreate",
    .create_with_directory_entry = nullptr,
    .free_entry = "XFree",
    .check_entry = "CXCheck",
    .version_entry = "CXAPIVersion",
    .set_load_path_entry = "CtdxSetLoadPath",
    .get_load_path_entry = "CtdxGetLoadPath",
    .version = 7,
};

}  // namespace

Tdx::Tdx() : TdxFunctions(kInterface) {}

}  // namespace linfit
