#include "framework/CWinApp.h"

#include <cstdio>
#include <exception>

#include "platform/desktop/desktop.h"
#include "platform/kernel/process.h"

namespace juntora {
namespace {

constinit CWinApp* g_application = nullptr;

}  // namespace

CWinApp::CWinApp() { g_application = this; }
CWinApp::~CWinApp() { g_application = nullptr; }

void CWinApp::OnHelp() { AfxMessageBox("There is no help for this program."); }

CWinApp* AfxGetApp() { return g_application; }

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
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s ends: %s.\n", argc > 0 ? argv[0] : "The program", error.what());
        return 1;
    }
    return application.m_nExitCode;
}

}  // namespace juntora
