// Text helpers of the dump printers.
#pragma once
#include <string>

#include "tools/qvx/DumpSink.h"

namespace qvx_tool {

// `text` as a double-quoted JSON string literal (which also reads well in the text dump).
std::string quotedText(std::string const& text);
// A value as printed: quoted text or the bare number or boolean.
inline std::string valueText(DumpValue const& value) { return value.quoted ? quotedText(value.text) : value.text; }

}  // namespace qvx_tool
