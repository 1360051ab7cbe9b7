// The text of whatever the library threw, for a one-line error message: its exception
// classes do not share a base, so each is caught by name.
#pragma once
#include <string>

namespace qvx_tool {

// Call only inside a catch block; returns the message of the exception being handled.
std::string currentExceptionText();

}  // namespace qvx_tool
