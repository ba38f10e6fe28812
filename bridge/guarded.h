// Calls of automation objects, whose failures are no concern of anybody but the caller.
#pragma once

#include "framework/CException.h"

namespace juntora {

/// Makes one call. False when the framework's exception came out of it, which ends here.
template <class Call>
bool guarded(Call call) {
    try {
        call();
        return true;
    } catch (CException* exception) {
        exception->Delete();
        return false;
    }
}

}  // namespace juntora
