// What the window of platform_peer understands.
#pragma once

#include "platform/messages.h"

namespace juntora::test {

inline constexpr char PEER_CLASS[] = "PlatformPeer";

inline constexpr UINT PEER_ADD = WM_USER;           ///< wParam + lParam.
inline constexpr UINT PEER_COUNT = WM_USER + 1;     ///< Counts, and checks that lParam rises.
inline constexpr UINT PEER_COUNTED = WM_USER + 2;   ///< The count, -1 if lParam fell once.
inline constexpr UINT PEER_ASK_BACK = WM_USER + 3;  ///< Twice what PEER_ADD of window wParam gives.
inline constexpr UINT PEER_QUIT = WM_USER + 5;
inline constexpr UINT PEER_TELL_START = WM_USER + 6;  ///< Its title becomes "command line|state".

}  // namespace juntora::test
