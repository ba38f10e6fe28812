#include "setup/programTree.h"

#include <cstdlib>
#include <memory>

#include "common/CaseBlind.h"
#include "platform/files/FullPath.h"
#include "setup/environmentText.h"
#include "setup/mrdCommon.h"

namespace juntora {
namespace {

struct Freer {
    void operator()(char* text) const { std::free(text); }
};
using Text = std::unique_ptr<char, Freer>;

}  // namespace

std::string GetInstallRoot() {
    Text root(mrdGetInstallRoot());
    if (!root) {
        int count = 1;
        char program[] = "mrd_root.exe";
        char* arguments[] = {program, nullptr};
        mrdInit(&count, arguments);
        root.reset(mrdGetInstallRoot());
    }
    return root ? root.get() : "";
}

std::string RunningProgramFolder() {
    char program[4096];
    const DWORD length = GetModuleFileNameA(program, sizeof program);
    const std::string path = length > 0 ? files::fullPath({program, length}) : "";
    return path.substr(0, path.rfind('\\') + 1);
}

std::string ProgramTree::installedFolder(const std::string& toolDir) const {
    return root + "\\tools\\" + toolDir + "\\";
}

std::string ProgramTree::folderOf(const std::string& toolDir) const {
    return development.empty() ? installedFolder(toolDir) : development;
}

ProgramTree LocateProgramTree() {
    ProgramTree tree{GetInstallRoot(), ""};
    const std::string program = RunningProgramFolder();
    if (tree.root.empty()) {
        tree.root = program + "..\\..";
    }
    const std::string binaries = environmentText("BINROOTDIR");
    if (!binaries.empty()) {
        const std::string folder = files::fullPath(binaries + "\\wint\\");
        tree.development = equalCaseBlind(folder, program) ? folder : "";
    }
    return tree;
}

}  // namespace juntora
