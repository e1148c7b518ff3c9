#pragma once

// UTF-8 and the wide text of the Windows interfaces.

#include <string>
#include <string_view>

namespace tindrel {

[[nodiscard]] std::wstring widen(std::string_view utf8);
[[nodiscard]] std::string narrow(std::wstring_view wide);

}  // namespace tindrel
