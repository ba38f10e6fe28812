// Texts that travel with sent messages between processes, through the sender's text area.
#pragma once

#include <string>

#include "platform/desktop/Layout.h"

namespace juntora::desktop {

class Queue;

/// Which way the message's text goes; NO_TEXT for most.
TextWay textWayOf(UINT message);

/// Whether a message tells a window of its own beginning or end: true only from the thread that
/// owns it, since a window that believes another's word stands there without its objects.
bool isOwnersAlone(UINT message);

/// The sender's side: lays the text out before the send, copies it back after.
class OutgoingText {
public:
    /// Fills the message's text fields. `isOk` tells whether the text found room.
    OutgoingText(Queue& queue, SentMessage* sent);
    ~OutgoingText();
    OutgoingText(const OutgoingText&) = delete;
    OutgoingText& operator=(const OutgoingText&) = delete;

    bool isOk() const { return m_ok; }
    /// Copies a text that came back into the caller's buffer.
    void takeBack(const SentMessage& sent, LRESULT result);

private:
    Queue& m_queue;
    std::uint32_t m_top;  ///< Of the text area before this text.
    bool m_ok = true;
};

/// The receiver's side: a copy of its own, so that nothing that the sender does meanwhile matters.
class IncomingText {
public:
    IncomingText(const SentMessage& sent, Mailbox& sender);
    /// The parameter for the window procedure: the text or the buffer where one travels.
    LPARAM lParam() { return m_isText ? reinterpret_cast<LPARAM>(m_text.data()) : m_lParam; }
    /// Hands back what the procedure wrote, as `result` tells its length.
    void giveBack(LRESULT result);

private:
    const SentMessage& m_sent;
    Mailbox& m_sender;
    LPARAM m_lParam;
    bool m_isText;
    std::string m_text;
};

}  // namespace juntora::desktop
