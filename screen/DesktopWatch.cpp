#include "screen/DesktopWatch.h"

#include <QCoreApplication>
#include <QMetaObject>

#include "platform/desktop/message.h"
#include "platform/desktop/view.h"

namespace juntora::screen {
namespace {

constexpr DWORD FRAME_MILLISECONDS = 33;
constexpr DWORD LOOK_ANYWAY_MILLISECONDS = 1000;

}  // namespace

DesktopWatch::DesktopWatch(std::function<void()> changed)
    : m_changed(std::move(changed)), m_thread([this] { run(); }) {}

DesktopWatch::~DesktopWatch() {
    m_hasEnded = true;
    m_dealtWith.release();
    m_thread.join();
}

void DesktopWatch::run() {
    DWORD seen = ViewChangeCount();
    while (!m_hasEnded) {
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [this] {
                m_changed();
                m_dealtWith.release();
            },
            Qt::QueuedConnection);
        m_dealtWith.acquire();
        if (!m_hasEnded) {
            Sleep(FRAME_MILLISECONDS);
            seen = AwaitViewChange(seen, LOOK_ANYWAY_MILLISECONDS);
        }
    }
}

}  // namespace juntora::screen
