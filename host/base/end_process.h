// How a library ends the process when a function can't give what it must and has no way to say so:
// a wrong figure would be worse.
#pragma once

#include <array>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <new>
#include <string_view>

namespace host {

// Runs `body`. A failure becomes one line, the reason, which `end` takes; it ends the process.
// Nothing here allocates.
template <class Body, class End>
auto OrEnd(Body body, End end) noexcept {
  std::array<char, 512> line;
  try {
    return body();
  } catch (const std::bad_alloc&) {
    std::snprintf(line.data(), line.size(), "out of memory");
  } catch (const std::exception& error) {
    std::snprintf(line.data(), line.size(), "%s", error.what());
  }
  end(std::string_view(line.data()));
  std::exit(EXIT_FAILURE);
}

// The same for the library of that name, with the line on standard error.
template <class Body>
auto OrEnd(const char* library, Body body) noexcept {
  return OrEnd(body, [library](std::string_view line) {
    std::fprintf(stderr, "%s: %.*s\n", library, static_cast<int>(line.size()), line.data());
  });
}

}  // namespace host
