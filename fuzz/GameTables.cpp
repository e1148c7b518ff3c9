#include "GameTables.hpp"

#include "TableDerived.hpp"
#include "TableStorage.hpp"

namespace tindrel::fuzz {

static_assert(kMostModels * sizeof(generated::Character) <= kTableBytes);
static_assert(kMostStages * sizeof(generated::Stage) <= kTableBytes);

void setTables(std::span<const generated::Character> models,
               std::span<const generated::Stage> stages) {
    storeModels(models.data(), models.size_bytes(), models.size());
    storeStages(stages.data(), stages.size_bytes(), stages.size());
    ++port::tablesEdition;
}

}  // namespace tindrel::fuzz
