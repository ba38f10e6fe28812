#include "bridge/IVoltaraIpcLink.h"

#include "bridge/toolClasses.h"

namespace juntora {

std::string IVoltaraIpcLink::getDataFile() {
    return GetProperty<std::string>(voltaraLink::GET_DATA_FILE);
}

void IVoltaraIpcLink::scopelCommand(const char* text) {
    InvokeHelper(voltaraLink::SCOPEL_COMMAND, text);
}

void IVoltaraIpcLink::advise(IDispatch* sink, LONG mask, LONG* cookie) {
    InvokeHelper(voltaraLink::ADVISE, sink, mask, cookie);
}

void IVoltaraIpcLink::unadvise(LONG cookie) { InvokeHelper(voltaraLink::UNADVISE, cookie); }

std::string IVoltaraIpcLink::getProfileFile() {
    return InvokeHelper<std::string>(voltaraLink::GET_PROFILE_FILE);
}

}  // namespace juntora
