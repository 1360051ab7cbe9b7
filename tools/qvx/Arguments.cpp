#include "tools/qvx/Arguments.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>

#include "tools/qvx/ToolError.h"

namespace qvx_tool {

Arguments::Arguments(std::vector<std::string> const& words, std::set<std::string> const& valueOptions,
                     std::set<std::string> const& flagOptions) {
  for (std::size_t i = 0; i < words.size(); ++i) {
    std::string const& word = words[i];
    if (word.size() < 3 || word.compare(0, 2, "--") != 0) {
      positional_.push_back(word);
      continue;
    }
    std::string name = word.substr(2);
    if (name == "help" || flagOptions.count(name) != 0) {
      options_[name] = "";
    } else if (valueOptions.count(name) != 0) {
      if (i + 1 == words.size()) throw ToolError(kExitUsage, "option " + word + " needs a value");
      options_[name] = words[++i];
    } else {
      throw ToolError(kExitUsage, "unknown option " + word);
    }
  }
}

bool Arguments::answeredHelp(char const* usage) const {
  if (!has("help")) return false;
  std::fputs(usage, stdout);
  return true;
}

std::string Arguments::value(std::string const& option, std::string const& fallback) const {
  auto found = options_.find(option);
  return found == options_.end() ? fallback : found->second;
}

long Arguments::number(std::string const& option, long fallback) const {
  if (!has(option)) return fallback;
  std::string const text = value(option, "");
  char* end = nullptr;
  errno = 0;
  long parsed = std::strtol(text.c_str(), &end, 10);
  if (text.empty() || *end != '\0' || errno != 0 || parsed < 0) {
    throw ToolError(kExitUsage, "option --" + option + " needs a non-negative number, not \"" + text + "\"");
  }
  return parsed;
}

void Arguments::expectPositional(std::size_t count, std::string const& usage) const {
  if (positional_.size() == count) return;
  std::string firstLine = usage.substr(0, usage.find('\n'));
  throw ToolError(kExitUsage, "usage: " + firstLine + " (--help tells more)");
}

}  // namespace qvx_tool
