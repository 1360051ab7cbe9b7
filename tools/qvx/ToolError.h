// The failure of a qvx command: the one line printed on standard error and the exit
// status (2 for usage and input errors, 1 for a failed check).
#pragma once
#include <stdexcept>
#include <string>

namespace qvx_tool {

inline constexpr int kExitSuccess = 0;
inline constexpr int kExitDifferent = 1;
inline constexpr int kExitUsage = 2;

class ToolError : public std::runtime_error {
 public:
  ToolError(int status, std::string const& message) : std::runtime_error(message), status_(status) {}
  int status() const { return status_; }

 private:
  int status_;
};

}  // namespace qvx_tool
