// The classes that a program offers to others, and the automation of a program as a whole.
#pragma once

#include "framework/CCmdTarget.h"

namespace juntora {

/// A static object for each class. One process serves all clients.
class COleObjectFactory {
public:
    /// `create` makes an object with automation enabled; `describe` tells what its members are.
    COleObjectFactory(const GUID& classId, const char* programId, CCmdTarget* (*create)(),
                      const AFX_DISPMAP* (*describe)());
    COleObjectFactory(const COleObjectFactory&) = delete;
    COleObjectFactory& operator=(const COleObjectFactory&) = delete;

    /// Offers all classes from now on. False if one was refused.
    static bool RegisterAll();
    /// Offers none any more. Calls that have come until then are served first.
    static void RevokeAll();
    /// Writes all classes into the registry, or (false) takes them out. What stands there already
    /// as it should is not written again. False if something could not be written.
    static bool UpdateRegistryAll(bool add);
};

/// Starts automation for the thread. False without a bus; standard error says why.
bool AfxOleInit();

/// Whether the program is a person's: with true (as at first) it does not end when its last locking
/// object goes, with false it does.
void AfxOleSetUserCtrl(bool userControl);

/// While objects live that have locked the application it does not end.
void AfxOleLockApp();
void AfxOleUnlockApp();
bool AfxOleCanExitApp();

}  // namespace juntora
