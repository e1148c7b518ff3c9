// Writes the tables of the sample records below the folder that is named.

#include <filesystem>

#include "generator/CharacterTables.hpp"
#include "generator/SampleRecords.hpp"
#include "generator/StageTables.hpp"

int main(int count, char** arguments) {
    if (count != 2) return 1;
    const std::filesystem::path folder = arguments[1];
    std::filesystem::create_directories(folder / "reports");
    tindrel::writeGeneratedCharacters(tindrel::test::sampleModels(), folder);
    tindrel::writeGeneratedStages(tindrel::test::sampleStages(), folder);
}
