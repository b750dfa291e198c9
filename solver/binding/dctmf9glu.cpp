#include "binding/dctmf9glu.h"

namespace linfit {

namespace {

constexpr int kInterfaceVersion = 2;

constexpr LibraryNames kNames{
    .base_name = "kervdclib",
    .glue_source = "dctmf9glu",
    .create_entry = "dctXCreate",
    .create_with_directory_entry = "dctXCreateD",
    .free_entry = "dctXFree",
    .check_entry = "CdctXCheck",
    .version_entry = "CdctXAPIVersion",
    .set_load_path_entry = nullptr,
    .get_load_path_entry = nullptr,
};

}  // namespace

Dct::Dct() : Library(kNames, kInterfaceVersion) {}

}  // namespace linfit
