// The top level of the command line: "quillon COMMAND [ARGS]", --help,
// --version, and the one-line error report with its exit status.
#ifndef QUILLON_TOOL_CLI_H_
#define QUILLON_TOOL_CLI_H_

#include <string>
#include <vector>

namespace quillon {

// Runs one command line (without the program name) and returns the exit
// status: 0 done, 1 failed (one line on standard error naming the file and
// what is wrong), 2 the command line itself is wrong.
int RunCommandLine(const std::vector<std::string>& args);

std::string MainHelp();
std::string VersionText();

}  // namespace quillon

#endif  // QUILLON_TOOL_CLI_H_
