// Prints its arguments for whoever debugs it, each by a call of its own.
#include "setup/debugPrint.h"

int main(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        juntora::DebugPrint("%d of %d: %s\n", i, argc - 1, argv[i]);
    }
}
