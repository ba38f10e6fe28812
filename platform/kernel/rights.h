// Whether this process has the administrator's rights, which are those of user 0.
//
// A security identifier is an authority and up to two numbers below it. Calls return 0 with
// GetLastError on failure. Any thread may call them.
#pragma once

#include "platform/types.h"

namespace juntora {

/// Six bytes, the highest first.
struct SID_IDENTIFIER_AUTHORITY {
    BYTE Value[6];
};
inline constexpr SID_IDENTIFIER_AUTHORITY SECURITY_NT_AUTHORITY = {{0, 0, 0, 0, 0, 5}};
inline constexpr DWORD SECURITY_BUILTIN_DOMAIN_RID = 32;
inline constexpr DWORD DOMAIN_ALIAS_RID_ADMINS = 544;

/// Belongs to the caller, who gives it to FreeSid.
struct SecurityIdentifier;
using PSID = SecurityIdentifier*;

/// `count` is 1 or 2 (then `second` counts), anything else ERROR_INVALID_PARAMETER.
BOOL AllocateAndInitializeSid(const SID_IDENTIFIER_AUTHORITY* authority, BYTE count, DWORD first,
                              DWORD second, PSID* result);
/// Null does nothing.
void FreeSid(PSID identifier);

/// Sets whether the process, as its effective user is now, belongs to what `identifier` names. Here
/// that is only the group of administrators (authority 5, numbers 32 and 544), and user 0 is the
/// only one in it. `token` is null; another user's is ERROR_INVALID_HANDLE.
BOOL CheckTokenMembership(HANDLE token, PSID identifier, BOOL* isMember);

}  // namespace juntora
