#include "TableStorage.hpp"

#include <cstring>

#include "Require.hpp"

// The linker knows variables by their names alone, so that these are the runtime's tables.
namespace generated {

alignas(std::max_align_t) std::byte kCharacters[tindrel::fuzz::kTableBytes];
std::size_t kCharacterCount = 0;
alignas(std::max_align_t) std::byte kStages[tindrel::fuzz::kTableBytes];
std::size_t kStageCount = 0;

}  // namespace generated

namespace tindrel::fuzz {
namespace {

void store(std::byte* table, const void* rows, std::size_t bytes) {
    require(bytes <= kTableBytes, "a game fits its tables");
    if (bytes > 0) std::memcpy(table, rows, bytes);
}

}  // namespace

void storeModels(const void* rows, std::size_t bytes, std::size_t count) {
    store(generated::kCharacters, rows, bytes);
    generated::kCharacterCount = count;
}

void storeStages(const void* rows, std::size_t bytes, std::size_t count) {
    store(generated::kStages, rows, bytes);
    generated::kStageCount = count;
}

}  // namespace tindrel::fuzz
