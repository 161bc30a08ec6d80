// One failure type for the whole tool: every message names the file (or the
// option) it is about and says what is wrong, and main() prints it as one
// line and exits non-zero.
#ifndef QUILLON_TOOL_ERRORS_H_
#define QUILLON_TOOL_ERRORS_H_

#include <stdexcept>
#include <string>

namespace quillon {

class ToolError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// A command line that cannot be understood; main() adds a hint to --help
// and exits with status 2, as Unix tools do for usage errors.
class UsageError : public ToolError {
 public:
  using ToolError::ToolError;
};

[[noreturn]] inline void Fail(const std::string& subject, const std::string& what) {
  throw ToolError(subject + ": " + what);
}

}  // namespace quillon

#endif  // QUILLON_TOOL_ERRORS_H_
