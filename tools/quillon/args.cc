#include "args.h"

#include <cstdlib>

#include "errors.h"

namespace quillon {

namespace {

const OptionSpec* FindLong(const std::vector<OptionSpec>& options, const std::string& name) {
  for (const OptionSpec& option : options) {
    if (name == option.name) return &option;
  }
  return nullptr;
}

const OptionSpec* FindShort(const std::vector<OptionSpec>& options, char name) {
  for (const OptionSpec& option : options) {
    if (option.short_name != 0 && option.short_name == name) return &option;
  }
  return nullptr;
}

}  // namespace

std::optional<std::string> ParsedArgs::Value(const std::string& name) const {
  const auto it = options.find(name);
  if (it == options.end() || it->second.empty()) return std::nullopt;
  return it->second.back();
}

ParsedArgs ParseArgs(const std::vector<std::string>& args, const std::vector<OptionSpec>& options,
                     const std::string& command) {
  ParsedArgs parsed;
  bool options_done = false;
  for (std::size_t i = 0; i < args.size(); ++i) {
    const std::string& arg = args[i];
    if (options_done || arg == "-" || arg.size() < 2 || arg[0] != '-') {
      parsed.positional.push_back(arg);
      continue;
    }
    if (arg == "--") {
      options_done = true;
      continue;
    }
    const OptionSpec* option = nullptr;
    std::optional<std::string> inline_value;
    std::string shown = arg;
    if (arg[1] == '-') {
      const std::size_t equals = arg.find('=');
      const std::string name =
          arg.substr(2, equals == std::string::npos ? std::string::npos : equals - 2);
      if (equals != std::string::npos) inline_value = arg.substr(equals + 1);
      option = FindLong(options, name);
      shown = "--" + name;
    } else {
      option = FindShort(options, arg[1]);
      shown = arg.substr(0, 2);
      if (arg.size() > 2) inline_value = arg.substr(2);
    }
    if (option == nullptr) throw UsageError(command + ": unknown option '" + shown + "'");
    if (option->value_name == nullptr) {
      if (inline_value) {
        throw UsageError(command + ": option '" + shown + "' takes no value");
      }
      parsed.options[option->name].push_back("");
      continue;
    }
    if (!inline_value) {
      if (i + 1 >= args.size()) {
        throw UsageError(command + ": option '" + shown + "' needs a value (" + option->value_name +
                         ")");
      }
      inline_value = args[++i];
    }
    parsed.options[option->name].push_back(*inline_value);
  }
  return parsed;
}

std::string OptionHelp(const std::vector<OptionSpec>& options) {
  std::vector<std::string> left;
  std::size_t widest = 0;
  for (const OptionSpec& option : options) {
    std::string text =
        option.short_name != 0 ? std::string("  -") + option.short_name + ", " : "      ";
    text += std::string("--") + option.name;
    if (option.value_name != nullptr) text += std::string(" ") + option.value_name;
    widest = std::max(widest, text.size());
    left.push_back(text);
  }
  std::string help;
  for (std::size_t i = 0; i < options.size(); ++i) {
    help += left[i] + std::string(widest + 2 - left[i].size(), ' ') + options[i].help + "\n";
  }
  return help;
}

long ParseInteger(const std::string& text, const std::string& option, long min, long max) {
  char* end = nullptr;
  const long value = std::strtol(text.c_str(), &end, 10);
  const bool starts_well = !text.empty() && (text[0] == '-' || (text[0] >= '0' && text[0] <= '9'));
  if (!starts_well || *end != '\0' || value < min || value > max) {
    throw UsageError(option + ": '" + text + "' is not a whole number from " + std::to_string(min) +
                     " to " + std::to_string(max));
  }
  return value;
}

void ParseSize(const std::string& text, const std::string& option, int& width, int& height) {
  const std::size_t x = text.find('x');
  if (x == std::string::npos) {
    throw UsageError(option + ": '" + text + "' is not a size like 1280x720");
  }
  width = static_cast<int>(ParseInteger(text.substr(0, x), option + " width", 1, 32768));
  height = static_cast<int>(ParseInteger(text.substr(x + 1), option + " height", 1, 32768));
}

}  // namespace quillon
