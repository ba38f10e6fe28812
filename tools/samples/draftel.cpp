// A schematic editor, as far as the hub can tell.
#include "tools/samples/SampleTool.h"

int main(int argc, char** argv) { return juntora::runSampleTool(argc, argv, "Draftel"); }
