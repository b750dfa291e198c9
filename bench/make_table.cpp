// Writes a regression table as CSV: a response `y` and P - 1 regressors `x1` .. (the intercept is
// the P-th coefficient), N rows, numbers with nine significant digits, always the same for the same
// arguments.
//
// usage: make_table N P FILE
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <numbers>
#include <string>

namespace {

class Random {
 public:
  // Standard normal, by the Box-Muller transform.
  double Normal() {
    const double radius = std::sqrt(-2.0 * std::log(1.0 - Uniform()));
    return radius * std::cos(2.0 * std::numbers::pi * Uniform());
  }

 private:
  double Uniform() {
    state_ ^= state_ << 13;
    state_ ^= state_ >> 7;
    state_ ^= state_ << 17;
    return static_cast<double>(state_ >> 11) * 0x1p-53;
  }

  std::uint64_t state_ = 88172645463325252U;
};

void AppendNumber(std::string& line, double value) {
  char text[32];
  const auto end =
      std::to_chars(text, text + sizeof text, value, std::chars_format::general, 9).ptr;
  line.append(text, end);
}

bool WriteTable(long n, int p, std::FILE* file) {
  std::string line = "y";
  for (int j = 1; j < p; ++j) {
    line += ",x" + std::to_string(j);
  }
  Random random;
  for (long i = 0; i < n; ++i) {
    line += '\n';
    const std::size_t start = line.size();
    double y = 1.0 + random.Normal();
    for (int j = 1; j < p; ++j) {
      const double x = 10.0 * j + random.Normal();
      y += x / j;
      line += ',';
      AppendNumber(line, x);
    }
    std::string response;
    AppendNumber(response, y);
    line.insert(start, response);
    if (line.size() > (1U << 20U)) {
      if (std::fwrite(line.data(), 1, line.size(), file) != line.size()) {
        return false;
      }
      line.clear();
    }
  }
  line += '\n';
  return std::fwrite(line.data(), 1, line.size(), file) == line.size();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4 || std::atol(argv[1]) < 1 || std::atoi(argv[2]) < 1) {
    std::fprintf(stderr, "usage: make_table N P FILE\n");
    return 2;
  }
  std::FILE* file = std::fopen(argv[3], "wb");
  if (file == nullptr) {
    std::perror(argv[3]);
    return 1;
  }
  const bool written = WriteTable(std::atol(argv[1]), std::atoi(argv[2]), file);
  if (std::fclose(file) != 0 || !written) {
    std::perror(argv[3]);
    return 1;
  }
  return 0;
}
