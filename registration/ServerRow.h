// A server of the suite, as the tables of a deployment have it.
#pragma once

#include <string>

namespace juntora {

struct ServerRow {
    std::string kind;       ///< "DLL", "OCX" or "EXE": which registrar takes it.
    std::string toolDir;    ///< The tool's folder below the tools of the install root.
    std::string fileName;   ///< Without a folder.
    std::string serverKey;  ///< The class key's subkey that names the server's path.
    std::string classId;    ///< 36 hexadecimal digits and dashes, no braces.

    /// Of a program that has no unregistration of its own and would stay up when started for one:
    /// the programmatic name of its class. Empty for all others.
    std::string residentName{};
};

}  // namespace juntora
