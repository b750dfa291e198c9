// What a failure is called on standard error.
#pragma once

#include <exception>
#include <iosfwd>

namespace host {

// Without taking memory for it. The text lives as long as `failure`.
const char* FailureText(const std::exception& failure);

// Prints the text as one line.
void PrintFailure(const std::exception& failure, std::ostream& err);

}  // namespace host
