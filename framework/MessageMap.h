// Message maps: which member function of a class handles which message.
//
//     const AFX_MSGMAP& CMyDlg::GetMessageMap() const {
//         static const AFX_MSGMAP_ENTRY entries[] = {
//             ON_MESSAGE<&CMyDlg::OnTimer>(WM_TIMER),
//             ON_REGISTERED_MESSAGE<&CMyDlg::OnShow>(g_showMessage),
//             ON_COMMAND<&CMyDlg::OnHide>(1002),
//         };
//         static const AFX_MSGMAP map{&CDialog::GetMessageMap(), entries};
//         return map;
//     }
//
// A handler takes as much as it wants of what came: nothing, wParam, or wParam and lParam, each as
// any integer type; it returns the message's result, or nothing for 0.
#pragma once

#include <span>
#include <tuple>
#include <type_traits>
#include <utility>

#include "platform/messages.h"
#include "platform/types.h"

namespace juntora {

class CCmdTarget;

struct AFX_MSGMAP_ENTRY {
    using Handler = LRESULT (*)(CCmdTarget& target, WPARAM wParam, LPARAM lParam);

    UINT message;            ///< 0 where `registered` counts.
    const UINT* registered;  ///< Where the number of a registered message is kept; null for none.
    int id;                  ///< Command of a WM_COMMAND, else 0.
    Handler handler;
};

struct AFX_MSGMAP {
    const AFX_MSGMAP* base;  ///< Asked where no entry fits; null at the root.
    std::span<const AFX_MSGMAP_ENTRY> entries;

    /// The handler of a message, of a command for WM_COMMAND; null for none.
    AFX_MSGMAP_ENTRY::Handler find(UINT message, int id) const;
};

namespace detail {

template <class Class, class Result, class... Arguments>
LRESULT call(CCmdTarget& target, Result (Class::*handler)(Arguments...), WPARAM wParam,
             LPARAM lParam) {
    static_assert(sizeof...(Arguments) <= 2, "a message has two parameters");
    const std::tuple parameters(wParam, lParam);
    const auto run = [&]<std::size_t... Index>(std::index_sequence<Index...>)->Result {
        return (static_cast<Class&>(target).*
                handler)(static_cast<Arguments>(std::get<Index>(parameters))...);
    };
    if constexpr (std::is_void_v<Result>) {
        run(std::index_sequence_for<Arguments...>());
        return 0;
    } else {
        return static_cast<LRESULT>(run(std::index_sequence_for<Arguments...>()));
    }
}

template <auto Handler>
LRESULT handle(CCmdTarget& target, WPARAM wParam, LPARAM lParam) {
    return call(target, Handler, wParam, lParam);
}

}  // namespace detail

template <auto Handler>
constexpr AFX_MSGMAP_ENTRY ON_MESSAGE(UINT message) {
    return {message, nullptr, 0, detail::handle<Handler>};
}

/// `number` is read at each message; while it is 0 the entry fits none.
template <auto Handler>
constexpr AFX_MSGMAP_ENTRY ON_REGISTERED_MESSAGE(const UINT& number) {
    return {0, &number, 0, detail::handle<Handler>};
}

/// A button's click, or a menu's command.
template <auto Handler>
constexpr AFX_MSGMAP_ENTRY ON_COMMAND(int id) {
    return {WM_COMMAND, nullptr, id, detail::handle<Handler>};
}

}  // namespace juntora
