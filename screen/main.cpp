// juntora-screen: shows the windows of the desktop that JUNTORA_DESKTOP names on a display. The
// layer starts it when a first window is to be seen; it ends by itself with the last one.
#include <cstdio>
#include <string_view>

#include <QApplication>
#include <QTimer>

#include "platform/desktop/desktop.h"
#include "platform/kernel/errorOutput.h"
#include "platform/kernel/sync.h"
#include "screen/Channel.h"
#include "screen/Colours.h"
#include "screen/DesktopView.h"
#include "screen/DesktopWatch.h"
#include "screen/ScreenWindow.h"

namespace juntora::screen {
namespace {

constexpr char ONE_SCREEN_MUTEX[] = "JuntoraScreen";

/// A desktop without windows is looked at so often before the screen ends.
constexpr int LONELY_LOOKS = 2;
constexpr int LOOK_MILLISECONDS = 1000;

int show() {
    QApplication::setQuitOnLastWindowClosed(false);
    QGuiApplication::setDesktopFileName(QStringLiteral("juntora"));
    const Colours colours;
    DesktopView view;
    view.refresh();
    const DesktopWatch watch([&] { view.refresh(); });
    // Goes first at the end: who shows a window from then on starts another screen.
    const ScreenWindow window(view);
    if (!window.isOk()) {
        std::fputs("juntora-screen: the desktop has no room for another program's window.\n",
                   stderr);
        return 1;
    }
    int lonelyLooks = 0;
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, [&] {
        lonelyLooks = window.hasCompany() ? 0 : lonelyLooks + 1;
        if (lonelyLooks >= LONELY_LOOKS) {
            QApplication::quit();
        }
    });
    look.start(LOOK_MILLISECONDS);
    return QApplication::exec();
}

/// One screen a desktop. One that is about to end is waited for; two programs may have started one
/// each at the same instant.
bool takeDesktop(DWORD milliseconds) {
    HANDLE const mutex = CreateMutexA(false, ONE_SCREEN_MUTEX);
    const DWORD result = mutex == nullptr ? WAIT_FAILED : WaitForSingleObject(mutex, milliseconds);
    return result == WAIT_OBJECT_0 || result == WAIT_ABANDONED;
}

}  // namespace
}  // namespace juntora::screen

int main(int argc, char** argv) {
    using namespace juntora;
    constexpr DWORD PATIENCE_MILLISECONDS = 5000;
    const bool isQuiet = argc > 1 && std::string_view(argv[1]) == "--quiet";
    if (!OpenDesktop()) {
        return 1;
    }
    if (!screen::takeDesktop(isQuiet ? PATIENCE_MILLISECONDS : 0)) {
        if (!isQuiet) {
            std::fputs("juntora-screen: this desktop is being shown already.\n", stderr);
        }
        return isQuiet ? 0 : 1;
    }
    // The toolkit has words of its own for a display that is not there, or that ends. Started by
    // the layer, nobody has asked for them.
    if (isQuiet) {
        kernel::LeaveStandardStreams();
    }
    const QApplication application(argc, argv);
    const int result = screen::show();
    screen::Channel::endAnswers();
    return result;
}
