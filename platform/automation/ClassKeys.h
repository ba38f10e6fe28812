// What the registry says of classes: default values of keys below HKEY_CLASSES_ROOT.
#pragma once

#include <string>

#include "platform/types.h"

namespace juntora::automation {

/// As ReadRegistryText.
DWORD readClassText(const std::string& path, std::string* text);

/// Writes it, unless it is that already. False if it could not be written.
bool writeClassText(const std::string& path, const std::string& text);

}  // namespace juntora::automation
