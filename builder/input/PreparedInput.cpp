#include "input/PreparedInput.hpp"

#include <array>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "PathEncoding.hpp"
#include "input/ArchiveExtraction.hpp"
#include "input/PakExtraction.hpp"
#include "input/ProjectRoots.hpp"
#include "input/TempSession.hpp"
#include "platform/FileStatus.hpp"
#include "reader/DataPaths.hpp"
#include "reader/Tokens.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

// How the two archive formats differ for the user.
struct ArchiveFormat {
    ArchiveMethod method;
    const char* name;         // in messages
    const char* folder;       // below the session
    const char* kind;         // the game lies in the archive itself
    const char* packageKind;  // it lies in PAK files inside the archive
};

constexpr ArchiveFormat kZip = {ArchiveMethod::Zip, "ZIP", "zip", "zip", "openbor-package-zip"};
constexpr ArchiveFormat kRar = {ArchiveMethod::Rar, "RAR", "rar", "rar", "openbor-package-rar"};

void openSession(PreparedInput& input) {
    input.tempDir = createTempSession();
    input.ownsTempDir = true;
}

// False when there are none.
bool chooseRoot(PreparedInput& input, ProjectSearch search) {
    if (search.roots.empty()) return false;
    input.candidates = std::move(search.roots);
    input.gameRoot = input.candidates.front();
    input.gameData = std::move(search.bestData);
    return true;
}

// Unpacks every PAK; one that is bad costs a warning and stops none of the others.
std::vector<fs::path> mergePaks(const fs::path& session, const std::vector<fs::path>& paks,
                                const char* warning) {
    std::vector<fs::path> roots;
    for (std::size_t i = 0; i < paks.size(); ++i) {
        fs::path folder = session / ("pak-" + std::to_string(i) + '-');
        folder += paks[i].stem();
        std::string error;
        if (extractPak(paks[i], folder, &error)) {
            for (fs::path& root : findProjectRoots(folder).roots) roots.push_back(std::move(root));
        } else {
            std::cerr << warning << displayPath(paks[i]) << ": " << error << '\n';
        }
    }
    sortByScore(roots);
    return roots;
}

void prepareFolder(PreparedInput& input) {
    if (chooseRoot(input, findProjectRoots(input.originalPath))) {
        const bool isRoot = input.gameRoot == input.originalPath;
        input.sourceKind = isRoot ? "folder" : "openbor-package-folder";
        return;
    }
    const std::vector<fs::path> paks = findPakFiles(input.originalPath);
    if (paks.empty()) {
        throw std::runtime_error(
            "Nenhum data/ nem arquivo .pak OpenBOR foi encontrado dentro da pasta.");
    }
    openSession(input);
    input.sourceKind = "openbor-package-folder";
    if (!chooseRoot(input, {mergePaks(input.tempDir, paks, "[WARN] PAK ignorado "), {}})) {
        throw std::runtime_error(
            "Arquivos .pak encontrados, mas nenhum projeto OpenBOR valido foi extraido.");
    }
}

void prepareArchive(PreparedInput& input, const ArchiveFormat& format, std::string_view extension) {
    const bool mislabeled = format.method == ArchiveMethod::Rar && extension == ".zip";
    input.sourceKind = mislabeled ? "rar-mislabeled-zip" : format.kind;
    const fs::path folder = input.tempDir / format.folder;
    std::string error;
    if (!extractArchive(input.originalPath, folder, format.method, error)) {
        throw std::runtime_error(std::string("Falha ao extrair ") + format.name + ": " + error);
    }
    if (chooseRoot(input, findProjectRoots(folder))) return;
    input.sourceKind = format.packageKind;
    std::vector<fs::path> roots =
        mergePaks(input.tempDir, findPakFiles(folder), "[WARN] PAK no arquivo ignorado ");
    if (!chooseRoot(input, {std::move(roots), {}})) {
        throw std::runtime_error(std::string(format.name) +
                                 " extraido, mas nenhum data/, assets/openbor-data ou .pak OpenBOR "
                                 "valido foi encontrado.");
    }
}

void preparePak(PreparedInput& input) {
    input.sourceKind = "pak";
    const fs::path folder = input.tempDir / "pak";
    std::string error;
    if (!extractPak(input.originalPath, folder, &error)) {
        throw std::runtime_error("Falha ao extrair PAK: " + error);
    }
    if (!chooseRoot(input, findProjectRoots(folder))) {
        throw std::runtime_error(
            "PAK extraido, mas data/models.txt ou estrutura OpenBOR nao foi encontrada.");
    }
}

ContentKind kindOfExtension(std::string_view extension) {
    if (extension == ".pak") return ContentKind::Pak;
    if (extension == ".zip") return ContentKind::Zip;
    if (extension == ".rar") return ContentKind::Rar;
    return ContentKind::None;
}

void prepareFile(PreparedInput& input) {
    const std::string extension = toLower(PathEncoding::utf8(input.originalPath.extension()));
    ContentKind kind = detectContentKind(input.originalPath);
    openSession(input);
    if (kind == ContentKind::None) kind = kindOfExtension(extension);
    switch (kind) {
        case ContentKind::Pak:
            return preparePak(input);
        case ContentKind::Rar:
            return prepareArchive(input, kRar, extension);
        case ContentKind::Zip:
            return prepareArchive(input, kZip, extension);
        case ContentKind::None:
            break;
    }
    throw std::runtime_error("Formato de entrada nao suportado. Use pasta, .zip, .rar ou .pak.");
}

}  // namespace

PreparedInput::PreparedInput(PreparedInput&& other) noexcept {
    *this = std::move(other);
}

PreparedInput& PreparedInput::operator=(PreparedInput&& other) noexcept {
    if (this == &other) return *this;
    if (ownsTempDir && !tempDir.empty()) removeTempSession(tempDir);
    originalPath = std::move(other.originalPath);
    gameRoot = std::move(other.gameRoot);
    tempDir = std::move(other.tempDir);
    sourceKind = std::move(other.sourceKind);
    candidates = std::move(other.candidates);
    ownsTempDir = std::exchange(other.ownsTempDir, false);
    gameData = std::move(other.gameData);
    return *this;
}

PreparedInput::~PreparedInput() {
    if (ownsTempDir && !tempDir.empty()) removeTempSession(tempDir);
}

PreparedInput prepareInput(const fs::path& input) {
    PreparedInput prepared;
    const fs::path path = canonicalOrAbsolute(tindrel::absolute(input));
    if (!tindrel::exists(path)) {
        throw std::runtime_error("Entrada nao encontrada: " + displayPath(path));
    }
    prepared.originalPath = path;
    if (isDirectory(path)) {
        prepareFolder(prepared);
    } else {
        prepareFile(prepared);
    }
    return prepared;
}

ContentKind detectContentKind(const fs::path& path) {
    std::error_code error;
    // Reading from a pipe would wait for ever.
    if (!fs::is_regular_file(path, error)) return ContentKind::None;
    std::array<char, 8> bytes{};
    std::ifstream file(path, std::ios::binary);
    file.read(bytes.data(), bytes.size());
    const std::string_view head(bytes.data(), static_cast<std::size_t>(file.gcount()));
    using namespace std::string_view_literals;
    if (head.substr(0, 4) == "PACK") return ContentKind::Pak;
    if (head.size() >= 4 && head.substr(0, 2) == "PK" &&
        "\3\5\7"sv.find(head[2]) != std::string_view::npos &&
        "\4\6\x08"sv.find(head[3]) != std::string_view::npos) {
        return ContentKind::Zip;
    }
    if (head.size() >= 7 && head.substr(0, 6) == "Rar!\x1A\x07" &&
        static_cast<unsigned char>(head[6]) < 2) {
        return ContentKind::Rar;
    }
    return ContentKind::None;
}

}  // namespace tindrel
