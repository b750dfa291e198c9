#include "binding/dctmf9glu.h"

namespace linfit {
namespace {

constexpr LibraryInterface kInterface{
    .base_name = "kervdclib",
    .glue_source = "dctmf9glu",
    .create_entry = "dctXCreate",
    .create_with_directory_entry = "dctXCreateD",
    .free_entry = "dctXFree",
    .check_entry = "CdctXCheck",
    .version_entry = "CdctXAPIVersion",
    .set_load_path_entry = nullptr,
    .get_load_path_entry = nullptr,
    .version = 2,
};

}  // namespace

Dct::Dct() : Library(kInterface) {}

}  // namespace linfit
