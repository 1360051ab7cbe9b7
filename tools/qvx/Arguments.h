// The command line of one qvx subcommand: positional arguments and "--name value" or
// "--flag" options. Unknown options and missing values are usage errors.
#pragma once
#include <map>
#include <set>
#include <string>
#include <vector>

namespace qvx_tool {

class Arguments {
 public:
  // `valueOptions` take a value ("--out DIR"), `flagOptions` none; "--help" is always known.
  Arguments(std::vector<std::string> const& words, std::set<std::string> const& valueOptions,
            std::set<std::string> const& flagOptions);

  // With --help: prints `usage` on standard output and returns true.
  bool answeredHelp(char const* usage) const;
  bool has(std::string const& option) const { return options_.count(option) != 0; }
  std::string value(std::string const& option, std::string const& fallback) const;
  // A non-negative whole number, or `fallback` when the option is absent.
  long number(std::string const& option, long fallback) const;
  std::vector<std::string> const& positional() const { return positional_; }
  // Exactly `count` positional arguments, else a usage error naming `usage`.
  void expectPositional(std::size_t count, std::string const& usage) const;

 private:
  std::map<std::string, std::string> options_;
  std::vector<std::string> positional_;
};

}  // namespace qvx_tool
