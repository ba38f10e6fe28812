// Catalogued messages in boxes, and the answers that users had remembered.
//
// For the user-interface thread, which is blocked while a box is shown.
#pragma once

#include "messages/CNVMDnsDialog.h"
#include "messages/NvStatus.h"

namespace juntora {

/// Shows the first message of a status in a box (AfxMessageBox), empties the status and returns the
/// button; -1 if the status holds none. `type` 0: the icon of the message's kind. The text is
/// logged (messageText.h), and told to the session log where
/// TARVEX_DUMP_MSGBOX_MESSAGES_IN_SESSION_LOG is set, to whatever value.
int showStatusBox(NvStatus* status, unsigned int type, unsigned int helpContext);

/// The same in a dialog that the user can switch off, under the message's `module` and `number`
/// (CNVMDnsDialog). Where it has been switched off, the answer given then is the result, and
/// nothing is shown; the text is logged all the same. `icon` 0: that of the message's kind.
int showStatusDialog(NvStatus* status, const char* module, unsigned long number, unsigned int style,
                     unsigned int icon, unsigned int helpContext, int showCheckBox,
                     const DnsButtonLabels* labels);
int showStatusDialog(NvStatus* status, const char* module, unsigned long number, unsigned int style,
                     unsigned int icon, unsigned int helpContext, int showCheckBox);

/// Has the texts of boxes go to the tool's session log; null (as at first): nowhere.
void setSessionLogCallback(void (*callback)(const char* text));

/// The answer remembered for a message, 0 if none is.
int getStoredAnswer(const char* module, int number);

}  // namespace juntora
