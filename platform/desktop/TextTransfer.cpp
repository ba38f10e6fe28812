#include "platform/desktop/TextTransfer.h"

#include <algorithm>
#include <cstring>

#include "platform/desktop/Queue.h"
#include "platform/desktop/message.h"
#include "platform/desktop/view.h"

namespace juntora::desktop {
namespace {

/// LB_GETTEXT names no capacity: its caller has asked for the length before.
std::uint32_t capacityOf(const SentMessage& sent) {
    return sent.message == WM_GETTEXT
               ? static_cast<std::uint32_t>(std::min<WPARAM>(sent.wParam, MESSAGE_TEXT_BYTES))
               : MESSAGE_TEXT_BYTES;
}

bool isInArea(const SentMessage& sent) {
    return sent.textBytes <= TEXT_AREA_BYTES && sent.textOffset <= TEXT_AREA_BYTES - sent.textBytes;
}

}  // namespace

TextWay textWayOf(UINT message) {
    switch (message) {
        case WM_SETTEXT:
        case LB_ADDSTRING:
        case LB_INSERTSTRING:
        case LB_FINDSTRINGEXACT:
        case VIEW_SAVE_PICTURE:
            return TextWay::IN;
        case WM_GETTEXT:
        case LB_GETTEXT:
        case VIEW_GET_MENU:
            return TextWay::OUT;
        default:
            return TextWay::NO_TEXT;
    }
}

bool isOwnersAlone(UINT message) {
    return message == WM_CREATE || message == WM_DESTROY || message == WM_NCDESTROY ||
           message == WM_INITDIALOG;
}

OutgoingText::OutgoingText(Queue& queue, SentMessage* sent) : m_queue(queue), m_top(queue.textTop) {
    sent->textWay = sent->lParam == 0 ? TextWay::NO_TEXT : textWayOf(sent->message);
    if (sent->textWay == TextWay::NO_TEXT) {
        return;
    }
    const auto* text = reinterpret_cast<const char*>(sent->lParam);
    const std::size_t bytes =
        sent->textWay == TextWay::IN ? std::strlen(text) + 1 : capacityOf(*sent);
    m_ok = bytes <= MESSAGE_TEXT_BYTES && bytes <= TEXT_AREA_BYTES - m_top;
    if (!m_ok) {
        return;
    }
    sent->textOffset = m_top;
    sent->textBytes = static_cast<std::uint32_t>(bytes);
    if (sent->textWay == TextWay::IN) {
        std::memcpy(queue.mailbox().texts + m_top, text, bytes);
    }
    queue.textTop = m_top + sent->textBytes;
}

OutgoingText::~OutgoingText() { m_queue.textTop = m_top; }

void OutgoingText::takeBack(const SentMessage& sent, LRESULT result) {
    if (sent.textWay != TextWay::OUT || sent.textBytes == 0 || result < 0) {
        return;
    }
    auto* buffer = reinterpret_cast<char*>(sent.lParam);
    const std::size_t length =
        std::min<std::size_t>(static_cast<std::size_t>(result), sent.textBytes - 1);
    std::memcpy(buffer, m_queue.mailbox().texts + sent.textOffset, length);
    buffer[length] = '\0';
}

IncomingText::IncomingText(const SentMessage& sent, Mailbox& sender)
    : m_sent(sent),
      m_sender(sender),
      m_lParam(sent.lParam),
      m_isText(sent.textWay != TextWay::NO_TEXT && isInArea(sent)) {
    if (!m_isText) {
        m_lParam = sent.textWay == TextWay::NO_TEXT ? sent.lParam : 0;
    } else if (sent.textWay == TextWay::IN) {
        m_text.assign(sender.texts + sent.textOffset, sent.textBytes);
    } else {
        m_text.assign(sent.textBytes, '\0');
    }
}

void IncomingText::giveBack(LRESULT result) {
    if (!m_isText || m_sent.textWay != TextWay::OUT || result < 0) {
        return;
    }
    // A sender that died meanwhile has no use for it, and the area may be another thread's soon.
    if (m_sender.replies[m_sent.replySlot].word.load() == waitingWord(m_sent.turn)) {
        const std::size_t bytes =
            std::min<std::size_t>(static_cast<std::size_t>(result) + 1, m_text.size());
        std::memcpy(m_sender.texts + m_sent.textOffset, m_text.data(), bytes);
    }
}

}  // namespace juntora::desktop
