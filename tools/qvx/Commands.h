// The subcommands of qvx. Each takes the words after its name and returns the exit
// status; failures are thrown as ToolError.
#pragma once
#include <string>
#include <vector>

namespace qvx_tool {

using Words = std::vector<std::string>;

int runDemo(Words const& words);
int runDump(Words const& words);
int runConvert(Words const& words);
int runDiff(Words const& words);
int runPackages(Words const& words);
int runDescribe(Words const& words);

}  // namespace qvx_tool
