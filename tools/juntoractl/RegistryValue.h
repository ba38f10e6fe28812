// A value of the registry as juntoractl shows it.
#pragma once

#include <string>
#include <vector>

#include "platform/registry/registry.h"
#include "tools/juntoractl/Output.h"

namespace juntora {

struct RegistryValue {
    std::string name;  ///< Empty for the key's default value.
    DWORD type = 0;
    std::string data;

    /// "string", "number" and so on; "type 9" for one without a word.
    std::string typeName() const;
    /// A string without its closing zero, a number, an array of strings; anything else, and what
    /// has not the size of its type, as a string of hexadecimal digits.
    Json json() const;
    /// The same on one line for each part.
    std::vector<std::string> lines() const;
};

/// Reads a value of any size.
DWORD readRegistryValue(HKEY key, const std::string& name, RegistryValue* value);

/// A key's values and the names of its subkeys, as they are at the moment.
DWORD readRegistryValues(HKEY key, std::vector<RegistryValue>* values);
DWORD readSubkeyNames(HKEY key, std::vector<std::string>* names);

}  // namespace juntora
