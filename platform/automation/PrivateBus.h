// The desktop's own message bus, for sessions that have none.
#pragma once

#include <string>

namespace juntora::automation {

/// The address of the desktop's bus, which is started where it does not run. It lives as long as
/// some process that has called this does. Empty with the reason in `*why`.
std::string addressOfPrivateBus(std::string* why);

/// The address of a bus that listens at a socket, any character of whose path is allowed.
std::string addressOfSocket(const std::string& path);

/// Whether somebody listens there, be it that they have no time for more callers.
bool listensAt(const std::string& socketPath);

/// Whether an address is that of the desktop's bus, which tells it to those that it starts.
bool isPrivateBus(const std::string& address);

}  // namespace juntora::automation
