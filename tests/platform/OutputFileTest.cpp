#include "platform/OutputFile.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <limits>
#include <string>
#include <system_error>

#include "TempFolder.hpp"
#include "platform/FileStatus.hpp"

namespace tindrel {
namespace {

namespace fs = std::filesystem;
using test::TempFolder;

std::string withoutReturns(std::string text) {
    std::erase(text, '\r');
    return text;
}

TEST(OutputFile, WritesTextAndNumbersInOrder) {
    const TempFolder folder;
    folder.write("out.txt", "something longer that goes away");
    const std::string large(700'000, 'x');
    {
        OutputFile out(folder.path() / "out.txt");
        out << "a" << ' ' << -5 << '\n' << std::numeric_limits<std::uint64_t>::max() << large;
        out << std::string_view("b\0c", 3);
    }
    EXPECT_EQ(withoutReturns(folder.read("out.txt")),
              "a -5\n18446744073709551615" + large + std::string("b\0c", 3));
}

TEST(OutputFile, CloseWritesEverythingAndEndsTheFile) {
    const TempFolder folder;
    OutputFile out(folder.path() / "out.txt");
    out << "kept";
    EXPECT_EQ(folder.read("out.txt"), "") << "held in the buffer until then";
    out.close();
    out.close();
    out << "lost";
    EXPECT_EQ(folder.read("out.txt"), "kept");
}

TEST(OutputFile, AFileThatHoldsTheTextAlreadyIsLeftUntouched) {
    const TempFolder folder;
    const fs::path path = folder.path() / "out.txt";
    const auto write = [&](const std::string& text) {
        OutputFile out(path);
        for (std::size_t at = 0; at < text.size(); at += 1000) {
            out << std::string_view(text).substr(at, 1000);
        }
        out.close();
    };
    const std::string text = std::string(600'000, 'x') + "\nend\n";
    write(text);
    // Not every library tells times more exactly than that.
    const auto before = std::chrono::floor<std::chrono::seconds>(fs::file_time_type::clock::now()) -
                        std::chrono::hours(1);
    fs::last_write_time(path, before);
    write(text);
    EXPECT_EQ(fs::last_write_time(path), before);

    std::string changed = text;
    changed[400'000] = 'y';
    for (const std::string& other :
         {changed, text + "more", text.substr(0, 300'000), std::string(), text}) {
        write(other);
        EXPECT_EQ(withoutReturns(folder.read("out.txt")), other) << other.size();
        EXPECT_NE(fs::last_write_time(path), before);
    }
}

TEST(OutputFile, AFileThatCannotBeOpenedSwallowsItsText) {
    const TempFolder folder;
    for (const fs::path& path : {folder.path(), folder.path() / "absent" / "out.txt"}) {
        OutputFile out(path);
        out << "text" << 5;
        EXPECT_NO_THROW(out.close());
    }
    EXPECT_FALSE(fs::exists(folder.path() / "absent"));
}

TEST(OutputFile, AFullDiskEndsTheRun) {
    if (!fs::exists("/dev/full")) GTEST_SKIP() << "no device that is always full";
    const auto message = [](const auto& action) {
        try {
            action();
        } catch (const fs::filesystem_error& error) {
            EXPECT_TRUE(isDiskFailure(error.code())) << error.what();
            return std::string(error.what());
        }
        return std::string("nothing thrown");
    };
    OutputFile out("/dev/full");
    EXPECT_NE(message([&] { out << std::string(300'000, 'x') << 'y'; }).find("write"),
              std::string::npos);
    OutputFile small("/dev/full");
    small << 'x';
    EXPECT_NE(message([&] { small.close(); }).find("write"), std::string::npos);
}

TEST(FileStatus, AbsenceIsAnAnswer) {
    const TempFolder folder;
    folder.write("file", "");
    const fs::path nowhere[] = {folder.path() / "absent", folder.path() / "file" / "below",
                                folder.path() / std::string(5000, 'n'),
                                folder.path() / std::string("file\0x", 6), fs::path()};
    for (const fs::path& path : nowhere) {
        EXPECT_FALSE(tindrel::exists(path)) << path;
        EXPECT_FALSE(isDirectory(path)) << path;
        EXPECT_FALSE(isFile(path)) << path;
    }
    EXPECT_TRUE(tindrel::exists(folder.path()));
    EXPECT_TRUE(isDirectory(folder.path()));
    EXPECT_FALSE(isFile(folder.path()));
    EXPECT_TRUE(isFile(folder.path() / "file"));
    EXPECT_FALSE(isDirectory(folder.path() / "file"));
}

TEST(FileStatus, FoldersAreMadeWithTheirParents) {
    const TempFolder folder;
    createDirectories(folder.path() / "a" / "b");
    EXPECT_NO_THROW(createDirectories(folder.path() / "a" / "b"));
    EXPECT_TRUE(isDirectory(folder.path() / "a" / "b"));
    folder.write("file", "");
    try {
        createDirectories(folder.path() / "file" / "below");
        FAIL() << "a file has no folders";
    } catch (const fs::filesystem_error& error) {
        EXPECT_NE(std::string(error.what()).find("create_directories"), std::string::npos);
    }
    EXPECT_EQ(canonicalOrAbsolute(folder.path() / "a" / ".." / "absent" / "x"),
              folder.path() / "absent" / "x");
}

TEST(FileStatus, OnlyDiskTroubleIsADiskFailure) {
    EXPECT_TRUE(isDiskFailure(std::make_error_code(std::errc::no_space_on_device)));
    EXPECT_TRUE(isDiskFailure(std::make_error_code(std::errc::read_only_file_system)));
    EXPECT_FALSE(isDiskFailure(std::make_error_code(std::errc::permission_denied)));
    EXPECT_FALSE(isDiskFailure({}));
}

#ifndef _WIN32
TEST(FileStatus, LinksToFoldersAreNeitherFoldersNorFiles) {
    const TempFolder folder;
    folder.write("real/file", "");
    fs::create_directory_symlink("real", folder.path() / "dir-link");
    fs::create_symlink("real/file", folder.path() / "file-link");
    fs::create_symlink("self", folder.path() / "self");
    EXPECT_TRUE(tindrel::exists(folder.path() / "dir-link"));
    EXPECT_FALSE(isDirectory(folder.path() / "dir-link"));
    EXPECT_FALSE(isFile(folder.path() / "dir-link"));
    EXPECT_TRUE(isFile(folder.path() / "file-link"));
    EXPECT_FALSE(tindrel::exists(folder.path() / "self"));
}

TEST(FileStatus, AFolderThatMayNotBeEnteredIsTrouble) {
    const TempFolder folder;
    folder.write("shut/file", "");
    fs::permissions(folder.path() / "shut", fs::perms::none);
    std::string message;
    try {
        static_cast<void>(tindrel::exists(folder.path() / "shut" / "file"));
    } catch (const fs::filesystem_error& error) {
        message = error.what();
    }
    std::error_code denied;
    fs::directory_iterator probe(folder.path() / "shut", denied);
    fs::permissions(folder.path() / "shut", fs::perms::owner_all);
    if (!denied) GTEST_SKIP() << "this user reads everything";
    EXPECT_NE(message.find("exists"), std::string::npos) << message;
}
#endif

}  // namespace
}  // namespace tindrel
