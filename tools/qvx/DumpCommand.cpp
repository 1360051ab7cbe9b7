#include "tools/qvx/Commands.h"
#include "tools/qvx/ToolError.h"
namespace qvx_tool {
int runDump(Words const&) { throw ToolError(kExitUsage, "not yet"); }
}
