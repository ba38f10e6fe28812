#include "bench/Automation.h"

#include <cstdio>
#include <stdexcept>

#include "bench/Statistics.h"
#include "bridge/CLibraryStatus.h"
#include "bridge/TvxOleDispatchDriver.h"
#include "framework/COleObjectFactory.h"

namespace juntora::bench {

void benchAutomation(Bus& bus) {
    constexpr int CALLS = 4'000;
    TvxOleDispatchDriver driver;
    COleException error;
    if (!AfxOleInit() ||
        !driver.createObjectDispatch(LIBRARY_STATUS_PROGRAM_ID, IID_LibraryStatus, &error)) {
        throw std::runtime_error("the hub's object cannot be made");
    }
    Samples object;
    Samples plain;
    for (int i = 0; i < CALLS; ++i) {
        auto start = Clock::now();
        driver.InvokeHelper<LONG>(LIBRARY_LIST_CHANGED_MEMBER);
        object.add(microsecondsSince(start));
        start = Clock::now();
        bus.call();
        plain.add(microsecondsSince(start));
    }
    std::printf("A call of the hub's automation object\n");
    printRow("through the driver", object.median(), "us");
    printRow("of a service that is nothing else, on the same bus", plain.median(), "us");
    printRatio("of the plain call", object.median() / plain.median(), 1.5, true);
}

}  // namespace juntora::bench
