#include "platform/LargePages.hpp"

namespace tindrel {

// The heap of this system chooses its pages by itself.
void preferLargePages() {}

}  // namespace tindrel
