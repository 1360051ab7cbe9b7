// Runs the qvx tool as a separate process, as a user's shell would, and collects its
// exit status, standard output and standard error (both through pipes or files, never a
// terminal).
#pragma once
#include <sys/wait.h>

#include <cstdint>
#include <cstdio>
#include <fstream>
#include <initializer_list>
#include <sstream>
#include <string>
#include <vector>

namespace qvx_tool_test {

struct ToolResult {
  int status = -1;
  std::string out;
  std::string err;
};

inline std::string shellQuoted(std::string const& word) {
  std::string quoted = "'";
  for (char c : word) {
    if (c == '\'') {
      quoted += "'\\''";
    } else {
      quoted += c;
    }
  }
  return quoted + "'";
}

inline std::string readWholeFile(std::string const& path) {
  std::ifstream input(path, std::ios::binary);
  std::ostringstream text;
  text << input.rdbuf();
  return text.str();
}

inline void writeWholeFile(std::string const& path, std::string const& bytes) {
  std::ofstream output(path, std::ios::binary | std::ios::trunc);
  output << bytes;
}

// `arguments` follow the tool's path; `scratch` is a directory for the error file.
inline ToolResult runTool(std::vector<std::string> const& arguments, std::string const& scratch) {
  std::string errorFile = scratch + "/stderr.txt";
  std::string command = shellQuoted(QVX_TOOL_PATH);
  for (std::string const& argument : arguments) command += " " + shellQuoted(argument);
  command += " 2>" + shellQuoted(errorFile) + " </dev/null";
  ToolResult result;
  FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return result;
  char buffer[65536];
  std::size_t got = 0;
  while ((got = std::fread(buffer, 1, sizeof buffer, pipe)) > 0) result.out.append(buffer, got);
  int raw = pclose(pipe);
  result.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
  result.err = readWholeFile(errorFile);
  return result;
}

inline std::vector<std::string> linesOf(std::string const& text) {
  std::vector<std::string> lines;
  std::istringstream input(text);
  for (std::string line; std::getline(input, line);) lines.push_back(line);
  return lines;
}

// Big-endian bytes of a binary object stream, written by hand so that the tests know
// every byte and its offset.
class StreamBytes {
 public:
  StreamBytes& marker(int value) {
    bytes_ += static_cast<char>(value);
    return *this;
  }
  StreamBytes& i16(int value) { return number(static_cast<std::uint64_t>(value), 2); }
  StreamBytes& i32(std::int64_t value) { return number(static_cast<std::uint64_t>(value), 4); }
  StreamBytes& text(std::string const& value) {
    i32(static_cast<std::int64_t>(value.size()));
    bytes_ += value;
    return *this;
  }
  StreamBytes& header() { return marker(0x01).text("14.0.0"); }
  std::size_t size() const { return bytes_.size(); }
  std::string const& bytes() const { return bytes_; }

 private:
  StreamBytes& number(std::uint64_t value, int width) {
    for (int shift = (width - 1) * 8; shift >= 0; shift -= 8) bytes_ += static_cast<char>((value >> shift) & 0xFF);
    return *this;
  }
  std::string bytes_;
};

}  // namespace qvx_tool_test
