#pragma once

#include <string_view>

namespace tindrel {

inline constexpr std::string_view kVersion = "0.34.32";

}  // namespace tindrel
