#include "Input.hpp"

namespace port::platform {

Input systemInput() {
    return {[](int) { return false; }, [](int) { return PadState(); }};
}

}  // namespace port::platform
