#pragma once

namespace PageRasterLib {

/// Brings up what poppler shares between documents; the first call works, later ones cost nothing. Afterwards
/// poppler's documents are independent of each other: its own locks cover its caches. Any thread.
void startPoppler();

} // namespace PageRasterLib
