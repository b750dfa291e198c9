// Changes to a good SQLite file that an input describes.
#pragma once

#include <filesystem>
#include <span>

#include "tests/fuzz/fuzz_input.h"

namespace fuzz {

// Each change is a byte for the table, one for the column, one for the row, one for the type of the
// value and one for its length, then the value. The row is deleted instead when the column's number
// is odd and there is no such column. The table behind the last one stands for a change of the
// bytes of `beside`, if there is such a file.
void DamageTables(const std::filesystem::path& file, std::span<const char* const> tables,
                  Input& input, const std::filesystem::path& beside = {});

// One change: two bytes for the place and one for the length, then the bytes. The file ends
// there when it is not that long.
void DamageBytes(const std::filesystem::path& file, Input& input);

// Runs the rest of the input as SQL on the file; it can't reach other files.
void DamageBySql(const std::filesystem::path& file, Input& input);

// Ends every statement of later connections after some work, for SQL without an end, and refuses
// them more than some memory.
void LimitSql();

}  // namespace fuzz
