// Prints where it finds the suite's programs: the tools' folder, the root, a tool's folder, and
// the file of settings.
#include <cstdio>
#include <string>

#include "setup/configFile.h"
#include "setup/programTree.h"
#include "setup/setupSearch.h"

int main() {
    std::string tools;
    juntora::GetToolsDir(&tools);
    const juntora::ProgramTree tree = juntora::LocateProgramTree();
    std::printf("%s\n%s\n%s\n%s\n", tools.c_str(), tree.root.c_str(), tree.folderOf("any").c_str(),
                juntora::GetConfigFilePath().c_str());
}
