#include "binding/tevmf9glu.h"

namespace linfit {
namespace {

constexpr LibraryInterface kInterface{
    .base_name = "kervdclib",
    .glue_source = "tevmf9glu",
    .create_entry = "tevXCreate",
    .create_with_directory_entry = "tevXCreateD",
    .free_entry = "tevXFree",
    .check_entry = "CtevXCheck",
    .version_entry = "CtevXAPIVersion",
    .set_load_path_entry = nullptr,
    .get_load_path_entry = nullptr,
    .version = 6,
};

}  // namespace

Tev::Tev() : Library(kInterface) {}

}  // namespace linfit
