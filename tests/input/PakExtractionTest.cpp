#include "input/PakExtraction.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "PakWriter.hpp"
#include "PathEncoding.hpp"
#include "TempFolder.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

using test::pakBytes;
using test::PakEntry;

class PakExtractionTest : public ::testing::Test {
  protected:
    // The message, without the line that says where; empty for success.
    std::string extract(const std::string& bytes, const ExtractionLimits& limits = {}) {
        const fs::path pak = folder_.write("game.pak", bytes);
        std::string error;
        const bool done = extractPak(pak, output(), &error, limits);
        EXPECT_EQ(done, error.empty()) << error;
        const std::size_t end = error.find('\n');
        place_ = end == std::string::npos ? "" : error.substr(end + 1);
        return error.substr(0, end);
    }

    // What lies below the output, one line a file: its path, "=" and its content.
    std::vector<std::string> files() {
        std::vector<std::string> found;
        for (const auto& entry : fs::recursive_directory_iterator(output())) {
            if (!entry.is_regular_file()) continue;
            const std::string name = PathEncoding::utf8(entry.path().lexically_relative(output()));
            found.push_back(name + '=' + folder_.read("out/" + name));
        }
        std::sort(found.begin(), found.end());
        return found;
    }

    fs::path output() { return folder_.path() / "out"; }

    test::TempFolder folder_;
    std::string place_;
};

TEST_F(PakExtractionTest, PutsEveryNameBelowData) {
    EXPECT_EQ(extract(pakBytes({
                  {"DaTa/Chars/A.TXT", "a"},
                  {"other\\b.txt", "b"},
                  {".//c.txt", "c"},
                  {"data", "file called data"},

                  {"data/./f/./empty.txt", ""},
                  {std::string("cut.txt\0tail", 12), "cut"},
                  {std::string("\0skipped", 8), "never", {}, 0xFFFFFFFF, 0xFFFFFFFF},
                  {"./", "never"},
                  {"m\xFA"
                   "sica.txt",
                   "legacy name"},
                  {"version.txt", "", {}, 0, 4},
              })),
              "");
    EXPECT_EQ(files(),
              (std::vector<std::string>{"data/Chars/A.TXT=a", "data/c.txt=c", "data/cut.txt=cut",
                                        "data/data=file called data",
                                        "data/f/empty.txt=", "data/m\xC3\xBAsica.txt=legacy name",
                                        "data/other/b.txt=b", "data/version.txt=PACK"}));
}

TEST_F(PakExtractionTest, CopiesMoreThanOneBuffer) {
    std::string big;
    for (int i = 0; big.size() < 200'001; ++i) big += std::to_string(i);
    EXPECT_EQ(extract(pakBytes({{"a", "before"}, {"big", big}, {"z", "after"}})), "");
    EXPECT_EQ(folder_.read("out/data/big"), big);
    EXPECT_EQ(folder_.read("out/data/z"), "after");
}

TEST_F(PakExtractionTest, RefusesBrokenFrames) {
    EXPECT_EQ(extract("PACK1234567"), "PAK pequeno/invalido");
    EXPECT_EQ(extract("PACJ12345678"), "assinatura PACK nao encontrada");
    EXPECT_EQ(extract(pakBytes({}, 0)), "offset do indice PAK invalido");
    EXPECT_EQ(extract(pakBytes({{"a", "1"}}, 7)), "offset do indice PAK invalido");
    const std::string empty = std::string("PACK\0\0\0\0????", 12);
    const auto footer = [&](std::uint32_t offset) {
        std::string pak = empty;
        test::appendNumber(pak, offset);
        return pak;  // 16 bytes
    };
    EXPECT_EQ(extract(footer(12)), "offset do indice PAK invalido");
    EXPECT_EQ(place_, "  byte 12: indexOffset=12");
    EXPECT_EQ(extract(footer(11)), "nenhum arquivo valido encontrado no PAK");
    std::string error;
    EXPECT_FALSE(extractPak(folder_.path() / "absent.pak", output(), &error));
    EXPECT_EQ(error, "nao foi possivel abrir PAK");
    EXPECT_FALSE(extractPak(folder_.path(), output(), &error));
    EXPECT_EQ(error, "nao foi possivel abrir PAK");
    EXPECT_FALSE(extractPak(folder_.path(), output(), nullptr));
    folder_.write("file", "");
    const fs::path good = folder_.write("good.pak", pakBytes({{"a", ""}}));
    EXPECT_FALSE(extractPak(good, folder_.path() / "file" / "out", &error));
    EXPECT_EQ(error.find("falha criando pasta para PAK: "), 0U) << error;
}

TEST_F(PakExtractionTest, RefusesLyingRecords) {
    EXPECT_EQ(extract(pakBytes({{"a", "", 12}, {"b", ""}})),
              "nenhum arquivo valido encontrado no PAK");
    EXPECT_EQ(extract(pakBytes({{"a", "", 15}})), "registro PAK ultrapassa o indice");
    EXPECT_EQ(extract(pakBytes({{"a", "", 0xFFFFFFFF}})), "registro PAK ultrapassa o indice");
    // "PACK", version, one byte of data: the index begins at 9.
    EXPECT_EQ(extract(pakBytes({{"touching", "x", {}, 8, 1}})), "");
    EXPECT_EQ(extract(pakBytes({{"beyond", "x", {}, 8, 2}})),
              "arquivo PAK aponta para fora da area de dados: beyond");
    EXPECT_EQ(extract(pakBytes({{"wrap", "x", {}, 0xFFFFFFFF, 2}})),
              "arquivo PAK aponta para fora da area de dados: wrap");
    EXPECT_EQ(place_,
              "  registro 0 \"wrap\" no byte 9: recordLength=17 fileOffset=4294967295 fileSize=2; "
              "indice do byte 9 ao byte 26");
    // The name of a record that is too long is not read.
    EXPECT_EQ(extract(pakBytes({{"a", "x"}, {"b", "", 99}})), "registro PAK ultrapassa o indice");
    EXPECT_EQ(place_,
              "  registro 1 \"\" no byte 23: recordLength=99 fileOffset=9 fileSize=0; "
              "indice do byte 9 ao byte 37");
    // 65,536 bytes of name field are read; most of it is padding behind a NUL.
    const std::string padded = "p.txt" + std::string(65'536 - 6, '\0');
    EXPECT_EQ(extract(pakBytes({{padded, "padded"}})), "");
    EXPECT_EQ(extract(pakBytes({{padded + '\0', "padded"}})), "nome PAK excessivamente grande");
    EXPECT_EQ(
        extract(pakBytes({{std::string(300, 'n'), ""}})).find("falha criando arquivo extraido: "),
        0U);
    EXPECT_EQ(extract(pakBytes({{"p.txt/below", ""}})).find("falha criando pasta do PAK: "), 0U);
    EXPECT_EQ(extract(pakBytes({{"folder/", ""}})).find("falha criando arquivo extraido: "), 0U);
}

TEST_F(PakExtractionTest, WritesNothingOutside) {
    for (const auto& [name, message] : std::vector<std::pair<std::string, std::string>>{
             {"..\\..\\evil.txt", "caminho inseguro dentro do PAK: ../../evil.txt"},
             {"data/../../evil.txt", "caminho inseguro dentro do PAK: data/../../evil.txt"},
             {"C:/evil.txt", "caminho inseguro dentro do PAK: C:/evil.txt"},
             {"data/C:\\evil.txt", "caminho inseguro dentro do PAK: data/C:/evil.txt"},
             {"data//evil.txt", "tentativa de traversal no PAK: data//evil.txt"},
         }) {
        EXPECT_EQ(extract(pakBytes({{name, "evil"}})), message);
    }
    EXPECT_EQ(extract(pakBytes({{"//evil.txt", "below data"}})), "");
    EXPECT_EQ(files(), std::vector<std::string>{"data/evil.txt=below data"});
}

#ifndef _WIN32
TEST_F(PakExtractionTest, WritesThroughNoLink) {
    folder_.write("outside/victim.txt", "untouched");
    folder_.write("out/data/real/x.txt", "");
    fs::create_directory_symlink(folder_.path() / "outside", output() / "data" / "away");
    fs::create_directory_symlink(output() / "data" / "real", output() / "data" / "inside");
    fs::create_symlink(folder_.path() / "outside/victim.txt", output() / "data" / "file.txt");
    for (const std::string name :
         {"away/victim.txt", "away/sub/new.txt", "inside/new.txt", "file.txt"}) {
        EXPECT_EQ(extract(pakBytes({{name, "evil"}})), "tentativa de traversal no PAK: " + name);
    }
    EXPECT_EQ(folder_.read("outside/victim.txt"), "untouched");
    EXPECT_FALSE(fs::exists(folder_.path() / "outside/sub"));
    EXPECT_FALSE(fs::exists(output() / "data/real/new.txt"));
}
#endif

TEST_F(PakExtractionTest, KeepsToItsLimits) {
    const std::vector<PakEntry> three = {{"a", "12"}, {"", "x"}, {"b", "34"}, {"c", "5"}};
    EXPECT_EQ(extract(pakBytes(three), {3, 5}), "");
    EXPECT_EQ(extract(pakBytes(three), {2, 5}), "PAK excede limite defensivo de arquivos");
    EXPECT_EQ(extract(pakBytes(three), {3, 4}), "PAK excede limite defensivo de extracao");
    // One short name, four folders of which "data" is there already.
    EXPECT_EQ(extract(pakBytes({{"1/2/3/4/f", ""}}), {3, 5}),
              "PAK excede limite defensivo de arquivos");
    EXPECT_EQ(ExtractionLimits().files, 200'000U);
    EXPECT_EQ(ExtractionLimits().bytes, 17'179'869'184U);
}

}  // namespace
}  // namespace tindrel
