// Registration inside the user's own hive, for those who may not write the machine's.
#pragma once

namespace juntora {

/// From here on what is registered among the classes goes to the user's hive: unless the user is an
/// administrator, or TARVEX_REGISTER_IN_HKLM is set. Returns the status of the user's own classes
/// key, 1 where nothing was redirected.
int PerUserRegistrationOn();
/// Takes that back.
int PerUserRegistrationOff();

/// Whether the user belongs to the administrators; never, where MRN_TARVEX_DISABLE_ADMIN_MODE is
/// set.
bool IsUserAdministrator();

}  // namespace juntora
