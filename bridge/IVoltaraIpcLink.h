// The simulator's link, by which it reports its progress.
#pragma once

#include <string>

#include "bridge/TvxOleDispatchDriver.h"

namespace juntora {

/// Each member throws a COleException when the call fails.
class IVoltaraIpcLink : public TvxOleDispatchDriver {
public:
    std::string getDataFile();
    void scopelCommand(const char* text);
    /// Has the link call `sink` for the changes of `mask`, with a cookie to end it by.
    void advise(IDispatch* sink, LONG mask, LONG* cookie);
    void unadvise(LONG cookie);
    std::string getProfileFile();
};

}  // namespace juntora
