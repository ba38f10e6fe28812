// The automation servers that stand behind the stand-ins of tool objects, and the simulator's link.
// A tool's author finds them told in docs/tool-objects.md.
#pragma once

#include "platform/automation/guid.h"

namespace juntora {

inline constexpr char VOLTARA_USER_PROGRAM_ID[] = "Tarvex.VoltaraUserInterface.16.6.0";
inline constexpr char VOLTARA_RUN_PROGRAM_ID[] = "Tarvex.VoltaraSimObject.16.6.0";
inline constexpr char VOLTARA_LINK_PROGRAM_ID[] = "Tarvex.VoltaraIpcLink.16.6.0";
inline constexpr char TUNARA_PROGRAM_ID[] = "Tarvex.Tunara.16.6.0";
inline constexpr char MODELAR_PROGRAM_ID[] = "Tarvex.SketchelModelar.16.6.0";
inline constexpr char WAVEND_PROGRAM_ID[] = "Tarvex.SketchelWavend.16.6.0";

// Members by their numbers, and so in their order.
namespace voltaraUser {
enum Member : long { START = 1, AFTER_OPEN = 2, OPEN_FILE = 3, CLOSE_FILE = 4 };
}
namespace voltaraRun {
enum Member : long { LOAD_FILE = 1, SET_NOTIFY = 2 };
}
namespace voltaraLink {
enum Member : long {
    GET_DATA_FILE = 1,
    SCOPEL_COMMAND = 2,
    ADVISE = 3,
    UNADVISE = 4,
    GET_PROFILE_FILE = 5
};
}
namespace tunara {
enum Member : long { OPEN_FILE = 1, SET_NOTIFY = 2 };
}
namespace modelar {
enum Member : long {
    START = 1,
    OPEN_LIBRARY = 2,
    GET_PART = 3,
    COPY_PART = 4,
    SAVE_LIBRARY_AS = 5,
    CREATE_PART = 6
};
}
namespace wavend {
enum Member : long { START = 1, COMMAND = 2 };
}

/// The one member of the objects that the bridge hands to tools to be called back: Notify(code) of
/// the stand-ins' own, notifyChange(code) of the link's sink.
inline constexpr long SINK_NOTIFY = 1;

/// The dispatch interface of the link's sink.
inline constexpr GUID IID_ComLink{
    0x6C1E2F52, 0x3B7A, 0x4D0C, {0x9A, 0x41, 0x52, 0x7E, 0x0B, 0xC4, 0x8D, 0x16}};

}  // namespace juntora
