// Paths on other machines.
#include "common/PathName.h"
#include "common/PathText.h"
#include "platform/files/drives.h"
#include "platform/messages.h"

namespace juntora {
namespace {

constexpr DWORD REMOTE_CAPACITY = 260;
constexpr int REMOTE = 1;
constexpr int LOCAL = 0;
constexpr int UNKNOWN = -1;
constexpr int NO_NETWORK = -2;

/// Asks for what a drive stands for; a platform's error, 0 for none.
DWORD askForRemoteName(const PathName& path, char (&remote)[REMOTE_CAPACITY]) {
    CString drive;
    path.getDrive(drive);
    DWORD capacity = sizeof remote;
    return WNetGetConnectionA(drive, remote, &capacity);
}

}  // namespace

int PathName::networkState() const {
    if (isEmpty()) {
        return UNKNOWN;
    }
    if (isUnc()) {
        return REMOTE;
    }
    char remote[REMOTE_CAPACITY];
    switch (askForRemoteName(*this, remote)) {
        case 0:
            return REMOTE;
        case ERROR_NOT_CONNECTED:
            return LOCAL;
        case ERROR_NO_NETWORK:
            return NO_NETWORK;
        default:
            return UNKNOWN;
    }
}

PathName PathName::getUncForm() const {
    if (isEmpty() || isUnc()) {
        return *this;
    }
    char remote[REMOTE_CAPACITY];
    if (askForRemoteName(*this, remote) != 0) {
        return PathName();
    }
    const std::string_view drive = splitPath(text()).drive;
    return PathName(CString(std::string(remote).append(text().substr(drive.size()))));
}

}  // namespace juntora
