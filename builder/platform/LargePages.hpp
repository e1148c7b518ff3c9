#pragma once

namespace tindrel {

// Asks the system to hold what a batch run allocates in pages of megabytes, before anything large
// is allocated. On a large game most of the system's share of a run is handing out small pages one
// by one. Does nothing where the system has no such pages.
void preferLargePages();

}  // namespace tindrel
