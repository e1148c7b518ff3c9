#include "input/PreparedInput.hpp"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>
#include <utility>
#include <vector>

#include "Environment.hpp"
#include "PakWriter.hpp"
#include "TempFolder.hpp"
#include "input/TempSession.hpp"
#include "platform/Process.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

using test::pakBytes;

const std::string kGamePak = pakBytes({{"data/models.txt", "load x data/x.txt\n"}});

class PreparedInputTest : public ::testing::Test {
  protected:
    // The text of what prepareInput throws.
    std::string refusal(const fs::path& path) {
        try {
            static_cast<void>(prepareInput(path));
        } catch (const std::exception& error) {
            EXPECT_EQ(sessions(), 0) << path;
            return error.what();
        }
        return "nothing was thrown";
    }

    long sessions() {
        const fs::path all = temp_.path() / "Tindrel-Builder";
        if (!fs::exists(all)) return 0;
        return std::distance(fs::directory_iterator(all), fs::directory_iterator());
    }

    // A ZIP of everything below `folder`, with bsdtar.
    bool zip(const fs::path& folder, const fs::path& file) {
        return runCommand({"bsdtar", "--format", "zip", "-cf", file.string(), "-C", folder.string(),
                           "."}) == 0;
    }

    test::TempFolder folder_;
    test::TempFolder temp_;
    test::Environment environment_{test::kTemporary, temp_.path().string()};
};

TEST_F(PreparedInputTest, Folders) {
    folder_.write("plain/data/models.txt", "");
    const PreparedInput plain = prepareInput(folder_.path() / "plain" / "." / "");
    EXPECT_EQ(plain.sourceKind, "folder");
    EXPECT_EQ(plain.originalPath, folder_.path() / "plain");
    EXPECT_EQ(plain.gameRoot, plain.originalPath);
    EXPECT_EQ(plain.candidates, std::vector<fs::path>{plain.gameRoot});
    EXPECT_TRUE(plain.tempDir.empty());
    EXPECT_FALSE(plain.ownsTempDir);

    EXPECT_EQ(prepareInput(folder_.path() / "plain/data").gameRoot, plain.gameRoot);
    folder_.write("package/Game v2/data/models.txt", "");
    folder_.write("package/other/data/video.txt", "");
    const PreparedInput package = prepareInput(folder_.path() / "package");
    EXPECT_EQ(package.sourceKind, "openbor-package-folder");
    EXPECT_EQ(package.gameRoot, folder_.path() / "package/Game v2");
    EXPECT_EQ(package.candidates.size(), 2U);

    fs::create_directory(folder_.path() / "empty");
    EXPECT_EQ(refusal(folder_.path() / "empty"),
              "Nenhum data/ nem arquivo .pak OpenBOR foi encontrado dentro da pasta.");
    EXPECT_EQ(refusal(folder_.path() / "absent"),
              "Entrada nao encontrada: " + (folder_.path() / "absent").string());
    EXPECT_EQ(sessions(), 0);
}

TEST_F(PreparedInputTest, FolderOfPaks) {
    const fs::path bad = folder_.write("paks/a/bad.pak", "no pak at all");
    folder_.write("paks/b/small.pak", pakBytes({{"video.txt", ""}}));
    folder_.write("paks/game.pak", kGamePak);
    ::testing::internal::CaptureStderr();
    {
        const PreparedInput merged = prepareInput(folder_.path() / "paks");
        EXPECT_EQ(merged.sourceKind, "openbor-package-folder");
        EXPECT_EQ(merged.gameRoot, merged.tempDir / "pak-2-game");
        EXPECT_EQ(merged.candidates,
                  (std::vector<fs::path>{merged.gameRoot, merged.tempDir / "pak-1-small"}));
        EXPECT_EQ(sessions(), 1);
    }
    EXPECT_EQ(::testing::internal::GetCapturedStderr(),
              "[WARN] PAK ignorado " + test::text(fs::path(bad).make_preferred()) +
                  ": assinatura PACK nao encontrada\n");
    EXPECT_EQ(sessions(), 0);
    fs::remove_all(folder_.path() / "paks/b");
    fs::remove(folder_.path() / "paks/game.pak");
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(refusal(folder_.path() / "paks"),
              "Arquivos .pak encontrados, mas nenhum projeto OpenBOR valido foi extraido.");
    ::testing::internal::GetCapturedStderr();
}

TEST_F(PreparedInputTest, Signatures) {
    using namespace std::string_literals;
    const auto kind = [&](const std::string& content) {
        return detectContentKind(folder_.write("probe", content));
    };
    EXPECT_EQ(kind("PACK"), ContentKind::Pak);
    EXPECT_EQ(kind("PAC"), ContentKind::None);
    EXPECT_EQ(kind("PK\3\4"), ContentKind::Zip);
    EXPECT_EQ(kind("PK\7\6"), ContentKind::Zip);
    EXPECT_EQ(kind("PK\3\5"), ContentKind::None);
    EXPECT_EQ(kind("PK\0\4"s), ContentKind::None);
    EXPECT_EQ(kind("Rar!\x1A\x07\x01"), ContentKind::Rar);
    EXPECT_EQ(kind("Rar!\x1A\x07\0"s), ContentKind::Rar);
    EXPECT_EQ(kind("Rar!\x1A\x07\x02"), ContentKind::None);
    EXPECT_EQ(kind("Rar!\x1A\x07"), ContentKind::None);
    EXPECT_EQ(detectContentKind(folder_.path()), ContentKind::None);
#ifndef _WIN32
    ::mkfifo((folder_.path() / "pipe.pak").c_str(), 0600);
    EXPECT_EQ(detectContentKind(folder_.path() / "pipe.pak"), ContentKind::None);
    EXPECT_EQ(refusal(folder_.path() / "pipe.pak"),
              "Falha ao extrair PAK: nao foi possivel abrir PAK");
#endif
}

TEST_F(PreparedInputTest, Paks) {
    const fs::path mislabeled = folder_.write("game.zip", kGamePak);
    const PreparedInput game = prepareInput(mislabeled);
    EXPECT_EQ(game.sourceKind, "pak");
    EXPECT_EQ(game.gameRoot, game.tempDir / "pak");
    EXPECT_EQ(game.candidates, std::vector<fs::path>{game.gameRoot});
    EXPECT_EQ(sessions(), 1);
    fs::remove_all(game.tempDir);

    EXPECT_EQ(refusal(folder_.write("x.PAK", "0123456789ab")),
              "Falha ao extrair PAK: assinatura PACK nao encontrada");
    EXPECT_EQ(refusal(folder_.write("game.dat", "something else")),
              "Formato de entrada nao suportado. Use pasta, .zip, .rar ou .pak.");
}

TEST_F(PreparedInputTest, Archives) {
    if (searchProgram("bsdtar").empty()) GTEST_SKIP() << "bsdtar is not here to make a ZIP";
    folder_.write("game/Game/data/models.txt", "");
    fs::create_directory(folder_.path() / "game/empty.pak");
    // A ZIP signature on a name of RAR.
    ASSERT_TRUE(zip(folder_.path() / "game", folder_.path() / "game.rar"));
    const PreparedInput game = prepareInput(folder_.path() / "game.rar");
    EXPECT_EQ(game.sourceKind, "zip");
    EXPECT_EQ(game.gameRoot, game.tempDir / "zip/Game");

    folder_.write("paks/sub/inner.pak", kGamePak);
    ASSERT_TRUE(zip(folder_.path() / "paks", folder_.path() / "paks.zip"));
    const PreparedInput paks = prepareInput(folder_.path() / "paks.zip");
    EXPECT_EQ(paks.sourceKind, "openbor-package-zip");
    EXPECT_EQ(paks.gameRoot, paks.tempDir / "pak-0-inner");
    fs::remove_all(paks.tempDir);
    fs::remove_all(game.tempDir);

    folder_.write("nothing/readme.txt", "");
    ASSERT_TRUE(zip(folder_.path() / "nothing", folder_.path() / "nothing.zip"));
    EXPECT_EQ(refusal(folder_.path() / "nothing.zip"),
              "ZIP extraido, mas nenhum data/, assets/openbor-data ou .pak OpenBOR valido foi "
              "encontrado.");
}

// A shell script under the tool's name stands in for a tool that can read RAR.
TEST_F(PreparedInputTest, Rars) {
    fs::permissions(
        folder_.write("bin/bsdtar", "#!/bin/sh\n[ \"$3\" = -xf ] && /bin/mkdir -p \"$6\"/Data\n"),
        fs::perms::owner_all);
    const fs::path rar = folder_.write("game.zip", "Rar!\x1A\x07\x01");
    const test::Environment path("PATH", (folder_.path() / "bin").string());
    {
        const PreparedInput game = prepareInput(rar);
        EXPECT_EQ(game.sourceKind, "rar-mislabeled-zip");
        EXPECT_EQ(game.gameRoot, game.tempDir / "rar");
    }
    fs::rename(rar, folder_.path() / "game.bin");
    EXPECT_EQ(prepareInput(folder_.path() / "game.bin").sourceKind, "rar");
    EXPECT_EQ(sessions(), 0);
    fs::remove(folder_.path() / "bin/bsdtar");
    EXPECT_EQ(refusal(folder_.path() / "game.bin"),
              "Falha ao extrair RAR: RAR detectado pelo conteudo, mas tar.exe/7-Zip nao "
              "conseguiram extrair (codigos -1/-1). Instale 7-Zip ou extraia o RAR e selecione a "
              "pasta do jogo.");
}

TEST_F(PreparedInputTest, MovesItsSession) {
    const fs::path pak = folder_.write("game.pak", kGamePak);
    PreparedInput first = prepareInput(pak);
    PreparedInput second = prepareInput(pak);
    const fs::path firstSession = first.tempDir;
    const fs::path secondSession = second.tempDir;
    EXPECT_NE(firstSession, secondSession);
    first = std::move(second);
    EXPECT_FALSE(fs::exists(firstSession));
    EXPECT_EQ(first.tempDir, secondSession);
    EXPECT_EQ(first.sourceKind, "pak");
    {
        const PreparedInput third(std::move(first));
        EXPECT_TRUE(fs::exists(secondSession / "pak/data/models.txt"));
    }
    EXPECT_EQ(sessions(), 0);
}

TEST_F(PreparedInputTest, SessionsArePrivateAndGoWhole) {
    const fs::path session = createTempSession();
    EXPECT_EQ(fs::status(session).permissions(), fs::perms::owner_all);
    EXPECT_EQ(session.parent_path(), temp_.path() / "Tindrel-Builder");
    // More levels than files can be open, and a longer path than the system takes.
    const std::string name(250, 'n');
    for (int level = 0; level < 40; ++level) {
        fs::create_directory(session / "new");
        if (level > 0) fs::rename(session / "tree", session / "new" / name);
        fs::rename(session / "new", session / "tree");
    }
    folder_.write("victim.txt", "untouched");
    fs::create_directory_symlink(folder_.path(), session / "link");
    fs::create_directories(session / "~0" / "taken");
    {
        const test::FewOpenFiles few;
        removeTempSession(session);
    }
    EXPECT_EQ(sessions(), 0);
    EXPECT_EQ(folder_.read("victim.txt"), "untouched");

    folder_.write("file", "");
    const test::Environment nowhere(test::kTemporary, (folder_.path() / "file").string());
    fs::current_path(temp_.path());
    const fs::path beside = createTempSession();
    EXPECT_EQ(beside.parent_path(), temp_.path() / "Tindrel-Builder");
    removeTempSession(beside);
}

}  // namespace
}  // namespace tindrel
