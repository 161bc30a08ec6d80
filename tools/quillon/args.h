// Command-line options in the GNU style: "--name value", "--name=value",
// "-x value", flags without a value, "--" ending the options.
#ifndef QUILLON_TOOL_ARGS_H_
#define QUILLON_TOOL_ARGS_H_

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace quillon {

struct OptionSpec {
  const char* name;        // long name without "--"
  char short_name;         // 0 when there is none
  const char* value_name;  // nullptr for a flag
  const char* help;
};

struct ParsedArgs {
  std::vector<std::string> positional;
  // Every value an option was given, in order (flags hold "").
  std::map<std::string, std::vector<std::string>> options;

  bool Has(const std::string& name) const { return options.count(name) != 0; }
  // The last value given, or nullopt.
  std::optional<std::string> Value(const std::string& name) const;
};

// Throws UsageError naming `command` for an unknown option or a missing
// value.
ParsedArgs ParseArgs(const std::vector<std::string>& args, const std::vector<OptionSpec>& options,
                     const std::string& command);

// The option table as help text, one aligned line per option.
std::string OptionHelp(const std::vector<OptionSpec>& options);

// "1920x1080" -> (1920, 1080); throws UsageError naming `option`.
void ParseSize(const std::string& text, const std::string& option, int& width, int& height);
// A whole decimal number in [min, max]; throws UsageError naming `option`.
long ParseInteger(const std::string& text, const std::string& option, long min, long max);

}  // namespace quillon

#endif  // QUILLON_TOOL_ARGS_H_
