// A tool that prints what it gets: all that there is to the small samples.
#pragma once

namespace juntora {

/// Signs on under `baseName`, prints each record that arrives as a line, and leaves when it is
/// closed or told to terminate. Returns main's exit code: 0, or 1 when the hub could not be reached
/// or refused.
int runSampleTool(int argc, char** argv, const char* baseName);

}  // namespace juntora
