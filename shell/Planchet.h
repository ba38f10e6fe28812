// Planchet, the suite's project tool, which runs beside the hub.
#pragma once

namespace juntora {

/// 1 while Planchet runs, told by the named mutex that it holds; else 0.
int IsPlanchetRunning();

/// Starts Planchet with the hub's own command line unless it runs: first the one in the hub's
/// folder, then whichever the system finds. Waits for nothing. Returns 1 when it runs or was
/// started, else 0; with a non-zero `report` a box tells why not.
int StartPlanchet(int report);

}  // namespace juntora
