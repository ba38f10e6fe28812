#include "screen/Channel.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include <QCoreApplication>
#include <QMetaObject>

#include "platform/desktop/message.h"

namespace juntora::screen {
namespace {

std::mutex g_answersMutex;
bool g_areAnswersWanted = true;

/// Runs `answer` on the toolkit's thread.
void deliver(std::function<void()> answer) {
    const std::lock_guard guard(g_answersMutex);
    if (g_areAnswersWanted) {
        QMetaObject::invokeMethod(QCoreApplication::instance(), std::move(answer),
                                  Qt::QueuedConnection);
    }
}

}  // namespace

/// Shared with the thread, which outlives the channel if it is stuck in a question.
struct Channel::Work {
    struct Question {
        std::weak_ptr<void> asker;
        std::function<std::function<void()>()> ask;
    };

    std::mutex mutex;
    std::condition_variable changed;
    std::deque<Question> questions;
    bool hasEnded = false;

    void run() {
        std::unique_lock guard(mutex);
        for (;;) {
            changed.wait(guard, [this] { return hasEnded || !questions.empty(); });
            if (hasEnded) {
                return;
            }
            const Question question = std::move(questions.front());
            questions.pop_front();
            guard.unlock();
            deliver([asker = question.asker, tellAnswer = question.ask()] {
                if (const auto alive = asker.lock()) {
                    tellAnswer();
                }
            });
            guard.lock();
        }
    }
};

std::shared_ptr<Channel> Channel::to(DWORD owner) {
    static std::map<DWORD, std::weak_ptr<Channel>> channels;
    std::erase_if(channels, [](const auto& entry) { return entry.second.expired(); });
    std::weak_ptr<Channel>& known = channels[owner];
    std::shared_ptr<Channel> channel = known.lock();
    if (!channel) {
        channel = std::make_shared<Channel>();
        known = channel;
    }
    return channel;
}

void Channel::endAnswers() {
    const std::lock_guard guard(g_answersMutex);
    g_areAnswersWanted = false;
}

Channel::Channel() : m_work(std::make_shared<Work>()) {
    std::thread([work = m_work] { work->run(); }).detach();
}

Channel::~Channel() {
    const std::lock_guard guard(m_work->mutex);
    m_work->hasEnded = true;
    m_work->changed.notify_one();
}

void Channel::ask(const std::weak_ptr<void>& asker,
                  std::function<std::function<void()>()> question) {
    const std::lock_guard guard(m_work->mutex);
    m_work->questions.push_back({asker, std::move(question)});
    m_work->changed.notify_one();
}

std::string askForText(HWND window, UINT message, WPARAM wParam) {
    std::vector<char> buffer(MESSAGE_TEXT_BYTES);
    const LRESULT length =
        SendMessageA(window, message, wParam, reinterpret_cast<LPARAM>(buffer.data()));
    // Any program can answer with any number.
    const auto bytes = std::clamp<LRESULT>(length, 0, LRESULT{MESSAGE_TEXT_BYTES} - 1);
    return {buffer.data(), static_cast<std::size_t>(bytes)};
}

void tell(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    PostMessageA(window, message, wParam, lParam);
}

}  // namespace juntora::screen
