#pragma once

// The system that this builder runs on. Tables that differ by system are rows for each of them, so
// that all rows are compiled and tested everywhere.

namespace tindrel {

enum class System { kWindows, kLinux };

#ifdef _WIN32
inline constexpr System kHostSystem = System::kWindows;
#else
inline constexpr System kHostSystem = System::kLinux;
#endif

}  // namespace tindrel
