// What the registry says of classes: default values of keys below HKEY_CLASSES_ROOT.
#pragma once

#include <string>

namespace juntora::automation {

/// Empty where there is none, or no text.
std::string readClassText(const std::string& path);

/// Writes it, unless it is that already. False if it could not be written.
bool writeClassText(const std::string& path, const std::string& text);

}  // namespace juntora::automation
