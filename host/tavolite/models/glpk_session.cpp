#include "tavolite/models/glpk_session.h"

#include <charconv>
#include <new>
#include <string_view>
#include <utility>

#include "base/input_error.h"

namespace host {
namespace {

// Length of "file:12: " at the start of `line`, 0 when it does not start so.
std::size_t PlaceLength(std::string_view line, std::string_view file) {
  if (!line.starts_with(file)) return 0;
  std::size_t at = file.size();
  if (at == line.size() || line[at] != ':') return 0;
  const std::size_t digits = ++at;
  while (at < line.size() && line[at] >= '0' && line[at] <= '9') ++at;
  if (at == digits || line.substr(at, 2) != ": ") return 0;
  return at + 2;
}

}  // namespace

GlpkSession::GlpkSession() {
  // The first call that finds no environment makes one, and ends the process where it can't.
  if (glp_init_env() > 1) throw std::bad_alloc();
  glp_term_hook(&GlpkSession::TakeMessage, this);
  glp_error_hook(&GlpkSession::Abort, this);
}

GlpkSession::~GlpkSession() {
  if (aborted_) return;
  glp_term_hook(nullptr, nullptr);
  glp_error_hook(nullptr, nullptr);
  glp_free_env();
}

int GlpkSession::TakeMessage(void* session, const char* text) {
  try {
    static_cast<GlpkSession*>(session)->messages_ += text;
  } catch (...) {  // GLPK's own functions lie in between
  }
  return 1;
}

void GlpkSession::Abort(void* session) {
  std::longjmp(static_cast<GlpkSession*>(session)->abort_point_, 1);
}

void GlpkSession::Run(const std::function<void()>& body) {
  // The manual of GLPK leaves the hook by a jump; the environment must be freed before any other
  // call.
  if (setjmp(abort_point_) != 0) {
    glp_free_env();
    aborted_ = true;
    if (messages_.find("no memory available") != std::string::npos) throw std::bad_alloc();
    throw InputError("GLPK gave up: " + FailureLine(messages_, "", "the model"));
  }
  body();
}

std::string FailureLine(const std::string& messages, const std::string& name,
                        const std::string& shown) {
  std::string found;
  std::string last;
  std::string reason;  // the line before the one found, when it names a place in another file
  std::string_view rest = messages;
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find('\n'), rest.size());
    const std::string_view line = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    if (line.empty() || line.starts_with("Context: ")) continue;
    const std::string before = std::exchange(last, std::string(line));
    const std::size_t place = PlaceLength(line, name);
    if (place == 0 || line.substr(place).starts_with("warning: ")) continue;
    found = shown + std::string(line.substr(name.size()));
    const std::string_view other = std::string_view(before).substr(0, before.find(':'));
    reason = other != name && PlaceLength(before, std::string(other)) > 0 ? before : "";
  }
  if (!found.empty()) return reason.empty() ? found : found + " (" + reason + ")";
  return shown + ": " + (last.empty() ? "GLPK can't read it and does not say why" : last);
}

int FailureLineNumber(const std::string& line, const std::string& shown) {
  if (PlaceLength(line, shown) == 0) return 0;
  int number = 0;
  std::from_chars(line.data() + shown.size() + 1, line.data() + line.size(), number);
  return number;
}

}  // namespace host
