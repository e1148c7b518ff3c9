#include "Presentation.hpp"

namespace port::platform {

Presentation systemPresentation() {
    return {};
}

}  // namespace port::platform
