// One call for every way to present a catalogued message: as its text, the bare text, its help
// page, a box, a box that the user can switch off.
//
// Each takes the message's module and number, and behind its own arguments the message's
// parameters, typed as they are: char, int, long, unsigned long, double, const char* and CString.
// Any other type does not compile: nothing is converted on the way to the message.
//
// All are for the user-interface thread; boxes and dialogs are modal and block it. The module's
// catalogues are read at the first message of the module (tvErrorManager.h). The result is -1 where
// no catalogue has the message; nothing is shown, written or changed then.
#pragma once

#include <concepts>
#include <string>
#include <type_traits>

#include "framework/CString.h"
#include "messages/messageBox.h"
#include "messages/messageText.h"
#include "messages/tvErrorManager.h"

namespace juntora {

template <class Type>
concept PlainMessageParameter = std::is_same_v<Type, char> || std::is_same_v<Type, int> ||
    std::is_same_v<Type, long> || std::is_same_v<Type, unsigned long> ||
    std::is_same_v<Type, double> || std::is_same_v<Type, const char*>;

/// What a message may have as a parameter; a text without const is one with.
template <class Type>
concept MessageParameter =
    PlainMessageParameter<std::decay_t<Type>> || std::same_as < std::decay_t<Type>,
char* > || std::same_as<std::decay_t<Type>, CString>;

/// Enters a message with its parameters, in order, into a status, of a module that has been loaded.
/// `reserved` is null. The result is the service's.
template <MessageParameter... Parameters>
nvm_error_code addStatusMessage(NvStatus* status, const char* module, unsigned long number,
                                void* reserved, const Parameters&... parameters) {
    NvParamList list;
    const auto add = [&list]<class Parameter>(const Parameter& parameter) {
        if constexpr (PlainMessageParameter<Parameter>) {
            list.addParameterToList(parameter);
        } else {
            list.addParameterToList(static_cast<const char*>(parameter));
        }
    };
    if constexpr (sizeof...(Parameters) == 0) {
        list.addParameterToList();
    } else {
        (add(parameters), ...);
    }
    return status->addMessage(module, number, reserved, list.getParameterList());
}

/// What all of the family do: loads the module, enters the message into a status, and has `present`
/// do the rest.
template <class Present, MessageParameter... Parameters>
int presentMessage(const Present& present, const char* module, unsigned long number,
                   const Parameters&... parameters) {
    tvErrorManager::getInstance()->loadModuleCatalogs(module);
    NvStatus status(false);
    addStatusMessage(&status, module, number, nullptr, parameters...);
    return present(&status);
}

/// 0 with the text in `*out`.
template <MessageParameter... Parameters>
int getMessageText(std::string* out, const char* module, unsigned long number,
                   const Parameters&... parameters) {
    return presentMessage([out](NvStatus* status) { return getStatusText(out, status); }, module,
                          number, parameters...);
}

/// 0 with the text in `*out`, without what stands before it.
template <MessageParameter... Parameters>
int getMessageBody(std::string* out, const char* module, unsigned long number,
                   const Parameters&... parameters) {
    return presentMessage([out](NvStatus* status) { return getStatusBody(out, status); }, module,
                          number, parameters...);
}

/// 0 with the page of extended help in `*out`.
inline int getMessageHelp(std::string* out, const char* module, unsigned long number) {
    return presentMessage([out](NvStatus* status) { return getStatusHelp(out, status); }, module,
                          number);
}

/// Shows a box with the message (AfxMessageBox) and returns its button. `type` 0: an OK button, and
/// the icon of the message's kind.
template <MessageParameter... Parameters>
int showMessageBox(const char* module, unsigned long number, unsigned int type,
                   unsigned int helpContext, const Parameters&... parameters) {
    return presentMessage(
        [=](NvStatus* status) { return showStatusBox(status, type, helpContext); }, module, number,
        parameters...);
}

/// Shows the box that can be switched off (CNVMDnsDialog.h), unless it has been, and returns its
/// button: 6, 7 or 3 for the first, second and third. Where it has been switched off it returns the
/// answer given then. `icon` 0: that of the message's kind. `labels` null: those of the style.
template <MessageParameter... Parameters>
int showMessageDialog(const char* module, unsigned long number, unsigned int style,
                      unsigned int icon, unsigned int helpContext, int showCheckBox,
                      const DnsButtonLabels* labels, const Parameters&... parameters) {
    return presentMessage(
        [=](NvStatus* status) {
            return showStatusDialog(status, module, number, style, icon, helpContext, showCheckBox,
                                    labels);
        },
        module, number, parameters...);
}

/// The same without labels.
template <MessageParameter... Parameters>
int showMessageDialog(const char* module, unsigned long number, unsigned int style,
                      unsigned int icon, unsigned int helpContext, int showCheckBox,
                      const Parameters&... parameters) {
    const DnsButtonLabels* none = nullptr;
    return showMessageDialog(module, number, style, icon, helpContext, showCheckBox, none,
                             parameters...);
}

}  // namespace juntora
