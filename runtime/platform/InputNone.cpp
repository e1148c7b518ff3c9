#include "Input.hpp"

namespace port::platform {

Input systemInput() {
    return {};
}

}  // namespace port::platform
