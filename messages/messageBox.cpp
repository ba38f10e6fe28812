#include "messages/messageBox.h"

#include <cstdlib>
#include <string>

#include "framework/CWinApp.h"
#include "messages/messageText.h"
#include "messages/storedAnswers.h"
#include "platform/kernel/process.h"
#include "platform/messages.h"

namespace juntora {
namespace {

constexpr char SESSION_LOG_VARIABLE[] = "TARVEX_DUMP_MSGBOX_MESSAGES_IN_SESSION_LOG";

using SessionLog = void (*)(const char* text);
constinit SessionLog g_sessionLog = nullptr;

/// 0 in what is no number.
int answerIn(const std::string& stored) {
    return static_cast<int>(std::strtol(stored.c_str(), nullptr, 10));
}

unsigned int iconOf(nvm_msg_type type) {
    switch (type) {
        case NVM_ERROR:
            return MB_ICONSTOP;
        case NVM_WARNING:
            return MB_ICONEXCLAMATION;
        case NVM_INFORMATION:
            return MB_ICONINFORMATION;
        case NVM_QUESTION:
            return MB_ICONQUESTION;
        default:
            return 0;
    }
}

/// Takes the first message's text out of a status and logs it. An `icon` of 0 becomes that of the
/// message's kind. False if there is none.
bool takeText(NvStatus* status, NvString* text, unsigned int* icon) {
    const int result = takeFirstMessage(status, [=](const NvMessage& message) {
        message.getSubstitutedDesc(text, true);
        *icon = *icon == 0 ? iconOf(message.getType()) : *icon;
    });
    if (result != 0) {
        return false;
    }
    if (GetEnvironment(SESSION_LOG_VARIABLE) && g_sessionLog) {
        g_sessionLog(text->getChar());
    }
    logMessageText(text);
    return true;
}

}  // namespace

int showStatusBox(NvStatus* status, unsigned int type, unsigned int helpContext) {
    NvString text;
    return takeText(status, &text, &type) ? AfxMessageBox(text, type, helpContext) : -1;
}

int showStatusDialog(NvStatus* status, const char* module, unsigned long number, unsigned int style,
                     unsigned int icon, unsigned int helpContext, int showCheckBox,
                     const DnsButtonLabels* labels) {
    NvString text;
    if (!takeText(status, &text, &icon)) {
        return -1;
    }
    const std::string stored = storedAnswer(module, number);
    if (!stored.empty() && stored != NO_ANSWER) {
        return answerIn(stored);
    }
    CNVMDnsDialog dialog(text, module, static_cast<unsigned int>(number), style, icon, helpContext,
                         showCheckBox, labels);
    return dialog.DoModal();
}

int showStatusDialog(NvStatus* status, const char* module, unsigned long number, unsigned int style,
                     unsigned int icon, unsigned int helpContext, int showCheckBox) {
    return showStatusDialog(status, module, number, style, icon, helpContext, showCheckBox,
                            nullptr);
}

void setSessionLogCallback(void (*callback)(const char* text)) { g_sessionLog = callback; }

int getStoredAnswer(const char* module, int number) {
    return answerIn(storedAnswer(module, static_cast<unsigned long>(number)));
}

}  // namespace juntora
