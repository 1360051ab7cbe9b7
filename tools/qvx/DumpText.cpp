#include "tools/qvx/DumpText.h"

#include <cstdio>

namespace qvx_tool {

std::string quotedText(std::string const& text) {
  std::string quoted = "\"";
  for (char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') {
      quoted += '\\';
      quoted += c;
    } else if (byte < 0x20) {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\u%04x", byte);
      quoted += escape;
    } else {
      quoted += c;
    }
  }
  return quoted + "\"";
}

}  // namespace qvx_tool
