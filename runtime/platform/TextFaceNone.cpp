#include "TextFace.hpp"

namespace port::platform {

TextFace systemTextFace() {
    return {};
}

}  // namespace port::platform
