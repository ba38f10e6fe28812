// A key of the registry as it is named on the command line.
#pragma once

#include <string>

#include "platform/registry/registry.h"

namespace juntora {

/// "HKCU\Software\x": a predefined key, by its short or its whole name in any case of letters, and
/// a path below it. Where there is no "\" in the text, "/" separates.
struct KeyName {
    HKEY root = nullptr;
    std::string rootName;  ///< HKCU, HKLM or HKCR.
    std::string path;      ///< With "\", empty for the predefined key.

    std::string text() const { return path.empty() ? rootName : rootName + "\\" + path; }
};

/// False when the text does not begin with a predefined key.
bool parseKeyName(const std::string& text, KeyName* name);

/// An open key that is closed with its owner.
class OpenRegistryKey {
public:
    OpenRegistryKey() = default;
    ~OpenRegistryKey();
    OpenRegistryKey(const OpenRegistryKey&) = delete;
    OpenRegistryKey& operator=(const OpenRegistryKey&) = delete;

    HKEY* out() { return &m_key; }
    operator HKEY() const { return m_key; }

private:
    HKEY m_key = nullptr;
};

/// The error of a registry call, for a person.
std::string registryErrorText(DWORD error);

}  // namespace juntora
