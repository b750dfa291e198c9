#include "binding/palmf9glu.h"

namespace linfit {
namespace {

constexpr LibraryInterface kInterface{
    .base_name = "kervdclib",
    .glue_source = "palmf9glu",
    .create_entry = "palXCreate",
    .create_with_directory_entry = nullptr,
    .free_entry = "palXFree",
    .check_entry = "CpalXCheck",
    .version_entry = "CpalXAPIVersion",
    .set_load_path_entry = nullptr,
    .get_load_path_entry = nullptr,
    .version = 1,
};

}  // namespace

Pal::Pal() : Library(kInterface) {}

}  // namespace linfit
