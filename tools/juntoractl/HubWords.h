// The words that the hub itself understands.
#pragma once

namespace juntora {

inline constexpr char HUB_WORD_SHOW[] = "SW_SHOW";
inline constexpr char HUB_WORD_ANY_APPS[] = "JUNTORA_ANY_APPS_RUNNING";
inline constexpr char HUB_WORD_CLOSE_ALL[] = "JUNTORA_CLOSE_ALL_APPS";

}  // namespace juntora
