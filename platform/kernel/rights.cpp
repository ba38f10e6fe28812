#include "platform/kernel/rights.h"

#include <unistd.h>

#include <algorithm>
#include <iterator>
#include <memory>

#include "platform/kernel/sync.h"
#include "platform/messages.h"

namespace juntora {

struct SecurityIdentifier {
    SID_IDENTIFIER_AUTHORITY authority;
    BYTE count;
    DWORD numbers[2];
};

namespace {

BOOL fail(DWORD error) {
    SetLastError(error);
    return 0;
}

bool isAdministrators(const SecurityIdentifier& identifier) {
    return std::equal(std::begin(identifier.authority.Value), std::end(identifier.authority.Value),
                      std::begin(SECURITY_NT_AUTHORITY.Value)) &&
           identifier.count == 2 && identifier.numbers[0] == SECURITY_BUILTIN_DOMAIN_RID &&
           identifier.numbers[1] == DOMAIN_ALIAS_RID_ADMINS;
}

}  // namespace

BOOL AllocateAndInitializeSid(const SID_IDENTIFIER_AUTHORITY* authority, BYTE count, DWORD first,
                              DWORD second, PSID* result) {
    if (authority == nullptr || result == nullptr || count < 1 || count > 2) {
        return fail(ERROR_INVALID_PARAMETER);
    }
    *result = std::make_unique<SecurityIdentifier>(
                  SecurityIdentifier{*authority, count, {first, count == 2 ? second : 0}})
                  .release();
    return 1;
}

void FreeSid(PSID identifier) { const std::unique_ptr<SecurityIdentifier> owned(identifier); }

BOOL CheckTokenMembership(HANDLE token, PSID identifier, BOOL* isMember) {
    if (token != nullptr) {
        return fail(ERROR_INVALID_HANDLE);
    }
    if (identifier == nullptr || isMember == nullptr) {
        return fail(ERROR_INVALID_PARAMETER);
    }
    *isMember = isAdministrators(*identifier) && geteuid() == 0 ? 1 : 0;
    return 1;
}

}  // namespace juntora
