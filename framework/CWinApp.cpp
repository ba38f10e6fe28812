#include "framework/CWinApp.h"

#include <cstdio>
#include <cstring>

#include "framework/CException.h"
#include "platform/desktop/desktop.h"
#include "platform/files/CaseFolding.h"
#include "platform/files/paths.h"
#include "platform/kernel/process.h"

namespace juntora {
namespace {

constinit CWinApp* g_application = nullptr;

}  // namespace

CWinApp::CWinApp() { g_application = this; }
CWinApp::~CWinApp() { g_application = nullptr; }

void CWinApp::OnHelp() { AfxMessageBox("There is no help for this program."); }

bool CWinApp::RunEmbedded() { return TakeSwitch("Embedding"); }
bool CWinApp::RunAutomated() { return TakeSwitch("Automation"); }

bool CWinApp::TakeSwitch(const char* name) {
    const std::size_t length = std::strlen(name);
    for (char* at = m_lpCmdLine; at != nullptr && *at != '\0'; ++at) {
        const bool isWord = at == m_lpCmdLine || at[-1] == ' ' || at[-1] == '\t';
        if (isWord && (*at == '-' || *at == '/') &&
            files::equalIgnoringCase({at + 1, strnlen(at + 1, length)}, name) &&
            (at[length + 1] == '\0' || at[length + 1] == ' ' || at[length + 1] == '\t')) {
            std::memmove(at, at + length + 1, std::strlen(at + length + 1) + 1);
            return true;
        }
    }
    return false;
}

CWinApp* AfxGetApp() { return g_application; }

CString AfxGetAppName() {
    char name[256] = "";
    if (const char* program = ProgramArgument(0)) {
        SplitPath(program, nullptr, nullptr, name, nullptr);
    }
    return name;
}

CWnd* AfxGetMainWnd() { return g_application ? g_application->m_pMainWnd : nullptr; }

int AfxWinMain(CWinApp& application, int argc, char** argv) {
    SetProgramArguments(argc, argv);
    if (!OpenDesktop()) {
        return 1;
    }
    application.m_lpCmdLine = CommandLineTail();
    application.m_nCmdShow = StartShowState();
    try {
        application.InitInstance();
    } catch (...) {
        std::fprintf(stderr, "%s ends: %s.\n", argc > 0 ? argv[0] : "The program",
                     WhatIsThrown().c_str());
        return 1;
    }
    return application.m_nExitCode;
}

}  // namespace juntora
