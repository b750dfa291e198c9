#include "binding/optf9glu.h"

namespace linfit {

namespace {

constexpr int kInterfaceVersion = 4;

constexpr LibraryNames kNames{
    .base_name = "tptdclib",
    .glue_source = "optf9glu",
    .create_entry = "XCreate",
    .create_with_directory_entry = nullptr,
    .free_entry = "XFree",
    .check_entry = "CXCheck",
    .version_entry = "CXAPIVersion",
    .set_load_path_entry = "CoptSetLoadPath",
    .get_load_path_entry = "CoptGetLoadPath",
};

}  // namespace

Opt::Opt() : Library(kNames, kInterfaceVersion) {}

}  // namespace linfit
