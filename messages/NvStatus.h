// What came of a call of the message service: the messages that it left.
#pragma once

#include <list>
#include <string>

#include "messages/NvMessage.h"

namespace juntora {

enum nvm_error_code {
    NVM_OK = 0,
    NVM_NO_SUCH_MESSAGE = 1,
    NVM_WRONG_PARAMETERS = 2,  ///< More or fewer than the message has; it is held all the same.
};

/// A place among the messages of a status. Calls take null: the status keeps one of its own.
struct NvPosition;

class NvStatus {
public:
    /// `hasFailed`: the status begins as that of a failure, without any message.
    explicit NvStatus(bool hasFailed) : m_hasFailed(hasFailed) {}
    virtual ~NvStatus() = default;
    NvStatus(const NvStatus&) = delete;
    NvStatus& operator=(const NvStatus&) = delete;

    /// Non-zero while no failure has been entered. The argument asks for all severities, of which
    /// there is one.
    virtual short isOK(short) const { return m_hasFailed ? 0 : 1; }

    /// Enters a message by its module, as it was loaded, and number; `params` may be null and is
    /// copied. Nothing is entered for a message that no registered catalogue has.
    nvm_error_code addMessage(const char* module, unsigned long number, void* reserved,
                              const NvList* params);
    /// Enters a failure that no catalogue has a message for.
    void addFailure(std::string text);

    /// Puts the cursor before the first message.
    void initPosition(NvPosition*) const { m_next = m_messages.begin(); }
    /// The message that the cursor stands at or before, null past the last.
    NvObject* getCurrent(NvPosition*) const;
    /// The same, and the cursor goes on.
    NvObject* getNext(NvPosition*) const;

    /// Forgets all messages, and with `andResult` the failures with them.
    void flushMessages(bool andResult);

private:
    using Messages = std::list<NvMessage>;

    mutable Messages m_messages;  ///< Callers of the cursor get them as their own.
    mutable Messages::iterator m_next = m_messages.begin();
    bool m_hasFailed;
};

}  // namespace juntora
