// GLPK's process-wide environment, with its messages collected and its aborts turned into a result.
#pragma once

#include <glpk.h>

#include <csetjmp>
#include <functional>
#include <memory>
#include <string>

namespace host {

// One session at a time: the environment behind it is the thread's own. Its end frees every GLPK
// object.
class GlpkSession {
 public:
  // Throws std::bad_alloc.
  GlpkSession();
  GlpkSession(const GlpkSession&) = delete;
  GlpkSession& operator=(const GlpkSession&) = delete;
  ~GlpkSession();

  // Runs `body`, which calls GLPK; whatever needs memory of GLPK is called so. Throws
  // std::bad_alloc or InputError when GLPK aborted: its environment is gone then, and with it every
  // object made. The body is left by a jump: it must own nothing that needs a destructor.
  void Run(const std::function<void()>& body);

  // GLPK has aborted: nothing of it is left.
  [[nodiscard]] bool IsAborted() const { return aborted_; }

  // All that GLPK has printed so far.
  [[nodiscard]] const std::string& Messages() const { return messages_; }
  void ForgetMessages() { messages_.clear(); }

 private:
  static int TakeMessage(void* session, const char* text);
  static void Abort(void* session);

  std::string messages_;
  std::jmp_buf abort_point_{};
  bool aborted_ = false;
};

struct GlpkProblemDeleter {
  const GlpkSession* session = nullptr;
  void operator()(glp_prob* problem) const {
    if (!session->IsAborted()) glp_delete_prob(problem);
  }
};
// Must go before the session does.
using GlpkProblem = std::unique_ptr<glp_prob, GlpkProblemDeleter>;

// The line of GLPK's messages that tells why reading failed ("model.mod:7: syntax error in ..."),
// with `name`, the file as GLPK was given it, replaced by `shown`. When no line has a file and a
// line number, the last line.
std::string FailureLine(const std::string& messages, const std::string& name,
                        const std::string& shown);

// The line number in such a line, 0 when there is none.
int FailureLineNumber(const std::string& line, const std::string& shown);

}  // namespace host
