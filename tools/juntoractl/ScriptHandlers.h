// What the commands of a script do. Each reads its arguments, and if they are complete does the
// work and puts "result", and what else there is, into the answer.
#pragma once

#include "tools/juntoractl/Arguments.h"
#include "tools/juntoractl/Output.h"

namespace juntora {

// Files that this tool holds, or asks for. ACCESS is 1 or "r", 2 or "w", 3 or "r/w".
void scriptOpen(Arguments& arguments, Json& answer);
void scriptQuery(Arguments& arguments, Json& answer);
void scriptClose(Arguments& arguments, Json& answer);
void scriptSetFlags(Arguments& arguments, Json& answer);
void scriptClearFlags(Arguments& arguments, Json& answer);
void scriptFindFlags(Arguments& arguments, Json& answer);

// Programs that the hub starts for this tool, and what they find in their environment.
void scriptLaunch(Arguments& arguments, Json& answer);
void scriptLaunchWait(Arguments& arguments, Json& answer);
void scriptSetEnv(Arguments& arguments, Json& answer);

}  // namespace juntora
