// Switches of the environment: whether something is on for the life of this process. For one thread
// at a time.
#pragma once

namespace juntora {

/// Whether a switch is on. The answer is worked out at the first question for the name, and stays.
///
/// Three switches are on unless another word is set, to whatever value (their own names mean
/// nothing in the environment):
///   ENABLE_EXPRESS_CONNECT             off by DISABLE_EXPRESS_CONNECT
///   DRAFTEL_ENABLE_AUTO_TRANSACTIONS   off by DRAFTEL_DISABLE_AUTO_TRANSACTIONS
///   DRAFTEL_CORRECT_PAGE_READ          off by DRAFTEL_OLD_PAGE_READ
/// Any other is on if the environment has its name with the value TRUE or YES, in any case of
/// letters, or with one that begins with 1. A null or empty name is off.
bool isSwitchOn(const char* name);

/// Whether menus are those of today: unless TARVEX_USE_OLD_MENU_OBSOLETE is on.
bool useCurrentMenus();

}  // namespace juntora
