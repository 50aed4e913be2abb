// vsps: the library's command-line tool (see "vsps help").
#include <cstdio>

#include "tools/commands.h"

int main(int argc, char** argv) { return vsps::tool::run_tool(argc, argv, stdout, stderr); }
