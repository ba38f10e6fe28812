// The command lines of tools that are started by automation, and so cannot be given any: the bridge
// writes them into the registry, the tools read them there.
#pragma once

#include <string>

#include "platform/registry/registry.h"

namespace juntora {

/// The suite's own key below HKEY_CURRENT_USER, and below HKEY_LOCAL_MACHINE.
inline constexpr char SUITE_KEY[] = "Software\\Tarvex\\Voltara Juntora\\16.6.0";

// What the tools' keys in it are called.
inline constexpr char VOLTARA_KEY[] = "Voltara";
inline constexpr char MODELAR_KEY[] = "Modelar Editor";
inline constexpr char WAVEND_KEY[] = "Wavend Editor";
inline constexpr char TUNARA_KEY[] = "Tunara";

/// The value "CmdLine" of HKEY_CURRENT_USER\software\Tarvex\Voltara Juntora\16.6.0\<tool>. What the
/// registry refuses is not told.
class CAppReg {
public:
    virtual ~CAppReg() = default;

    /// A null text deletes the value.
    void setCmdLine(const char* toolKey, const char* text);
    void clearCmdLine(const char* toolKey);
    /// Empty when there is none.
    std::string getCmdLine(const char* toolKey);

private:
    static HKEY openToolKey(const char* toolKey);
};

}  // namespace juntora
