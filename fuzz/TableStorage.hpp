#pragma once

// Nothing here may show the tables' schema: it declares the same names as constants.

#include <cstddef>

namespace tindrel::fuzz {

constexpr std::size_t kTableBytes = std::size_t{1} << 16U;

void storeModels(const void* rows, std::size_t bytes, std::size_t count);
void storeStages(const void* rows, std::size_t bytes, std::size_t count);

}  // namespace tindrel::fuzz
