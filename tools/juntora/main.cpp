// The hub.
#include "framework/CWinApp.h"
#include "shell/CJuntoraApp.h"

int main(int argc, char** argv) { return juntora::AfxWinMain(juntora::theApp, argc, argv); }
