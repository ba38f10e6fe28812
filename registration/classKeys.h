// The keys of classes, in the registry of the machine for an administrator and in the user's own
// for everybody else. Any thread may call these. Texts are not null.
#pragma once

#include <string>

#include "platform/registry/registry.h"

namespace juntora {

/// Where the classes of this process's user are looked for.
struct ClassScope {
    HKEY root;
    const char* word;  ///< "admin" or "user".
};
ClassScope classScope();

/// Below the root of the scope.
std::string classKeyOf(const std::string& classId);

/// 1 if the class is registered in the scope with `path` as its server; quotes around the value,
/// links, and the names that the platform has for programs and libraries do not matter. Else 0, and
/// a class that was there all the same, with another server or none, is deleted, so that the
/// registration that follows starts clean.
int isRegisteredAt(const char* classId, const char* serverKey, const char* path);

enum class ClassPlace {
    NOWHERE,     ///< There is no such class.
    HERE,        ///< Its server is at the path.
    ELSEWHERE,   ///< It has another server, or none.
    UNREADABLE,  ///< The registry does not tell.
};
/// Where a server that has just been asked has its class, compared in the same way. Looks where
/// servers write, and changes nothing of the class. No other thread may register classes meanwhile.
ClassPlace findClass(const char* classId, const char* serverKey, const char* path);

}  // namespace juntora
