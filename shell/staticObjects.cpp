// The objects that stand before main, here together because their order counts: the message maps
// read the numbers, and the application's members may rely on them.
#include "bridge/CLibraryStatus.h"
#include "framework/COleObjectFactory.h"
#include "hub/HubMessages.h"
#include "platform/desktop/message.h"
#include "shell/CJuntoraApp.h"
#include "shell/registeredMessages.h"

namespace juntora {

const UINT g_nShowHubMessage = RegisterWindowMessageA(HUB_SHOW_MESSAGE);
const UINT g_nCloseAppsMessage = RegisterWindowMessageA(HUB_CLOSE_APPS_MESSAGE);
const UINT g_nStartPlanchetMessage = RegisterWindowMessageA(HUB_START_PLANCHET_MESSAGE);

CJuntoraApp theApp;

const COleObjectFactory g_libraryStatusFactory(CLSID_LibraryStatus, LIBRARY_STATUS_PROGRAM_ID,
                                               &CLibraryStatus::create,
                                               &CLibraryStatus::dispatchMap);

}  // namespace juntora
