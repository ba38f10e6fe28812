// A second tool, for the first to talk with.
#include "tools/samples/SampleTool.h"

int main(int argc, char** argv) { return juntora::runSampleTool(argc, argv, "Sketchel"); }
