#include "binding/optf9glu.h"

namespace linfit {
namespace {

constexpr LibraryInterface kInterface{
    .base_name = "tptdclib",
    .glue_source = "optf9glu",
    .create_entry = "XCreate",
    .create_with_directory_entry = nullptr,
    .free_entry = "XFree",
    .check_entry = "CXCheck",
    .version_entry = "CXAPIVersion",
    .set_load_path_entry = "CoptSetLoadPath",
    .get_load_path_entry = "CoptGetLoadPath",
    .version = 4,
};

}  // namespace

Opt::Opt() : Library(kInterface) {}

}  // namespace linfit
