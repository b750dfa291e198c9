#include "binding/tmomf9glu.h"

namespace linfit {
namespace {

constexpr LibraryInterface kInterface{
    .base_name = "kervdclib",
    .glue_source = "tmomf9glu",
    .create_entry = "tmoXCreate",
    .create_with_directory_entry = "tmoXCreateD",
    .free_entry = "tmoXFree",
    .check_entry = "CtmoXCheck",
    .version_entry = "CtmoXAPIVersion",
    .set_load_path_entry = nullptr,
    .get_load_path_entry = nullptr,
    .version = 16,
};

}  // namespace

Tmo::Tmo() : Library(kInterface) {}

}  // namespace linfit
