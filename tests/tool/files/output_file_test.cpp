#include "files/output_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <csignal>
#include <filesystem>

#include "terminal/interruption.h"
#include "tool/files/test_folder.h"

namespace orv::cli {
namespace {

using Names = std::vector<std::string>;

std::vector<unsigned char> bytesOf(std::string_view text) {
    return {text.begin(), text.end()};
}

TEST(OutputFile, AppearsWhenItIsWhole) {
    const TestFolder folder;
    OutputFile file;
    ASSERT_EQ(file.open(folder.at("a.txt"), false), "");
    ASSERT_EQ(writeBytes(file.temporaryPath(), bytesOf("whole")), "");
    EXPECT_FALSE(std::filesystem::exists(folder.at("a.txt")));

    EXPECT_EQ(file.commit(), "");

    EXPECT_EQ(folder.names(), Names{"a.txt"});
    EXPECT_EQ(textOf(folder.at("a.txt")), "whole");
}

TEST(OutputFile, ThatIsNotCommittedLeavesNothing) {
    const TestFolder folder;
    {
        OutputFile picture;
        OutputFile recipe;
        ASSERT_EQ(picture.open(folder.at("new/deep/a.ppm"), false), "");
        ASSERT_EQ(recipe.open(folder.at("new/a.json"), false), "");
        ASSERT_EQ(folder.names().size(), 4U);
    }

    EXPECT_EQ(folder.names(), Names{});
}

TEST(OutputFile, KeepsTheFolderThatAnotherOneFilled) {
    const TestFolder folder;
    {
        OutputFile first;
        OutputFile second;
        ASSERT_EQ(first.open(folder.at("new/a"), false), "");
        ASSERT_EQ(second.open(folder.at("new/b"), false), "");
        ASSERT_EQ(second.commit(), "");
    }

    EXPECT_EQ(folder.names(), (Names{"new", "new/b"}));
}

TEST(OutputFile, KeepsTheModeOfTheFileItReplaces) {
    const TestFolder folder;
    const std::string path = folder.file("a.txt", "old");
    chmod(path.c_str(), 0640);
    OutputFile file;

    ASSERT_EQ(file.open(path, true), "");
    ASSERT_EQ(file.commit(), "");

    struct stat status {};
    ASSERT_EQ(stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0640U);
    EXPECT_EQ(status.st_size, 0);
}

TEST(OutputFile, RefusesInWords) {
    const TestFolder folder;
    const std::string path = folder.file("a.txt", "old");
    const std::string link = folder.at("link");
    std::filesystem::create_symlink("nowhere", link);

    EXPECT_EQ(OutputFile().open(path, false), path + ": exists already; --force overwrites it");
    EXPECT_EQ(OutputFile().open(folder.at("."), true),
              folder.at(".") + ": is a folder; name a file in it");
    EXPECT_EQ(OutputFile().open("/dev/null", true), "/dev/null: is no regular file");
    EXPECT_EQ(OutputFile().open(link, true),
              link + ": is a link that leads nowhere; remove it or name another file");
    EXPECT_EQ(OutputFile().open(path + "/b", true),
              path + "/b: can't be written: Not a directory");
    EXPECT_EQ(OutputFile().open(path + "/b/c", true),
              path + "/b/c: the folder " + path + "/b can't be made: Not a directory");
    EXPECT_EQ(textOf(path), "old");
    EXPECT_EQ(folder.names(), (Names{"a.txt", "link"}));
}

TEST(OutputFile, OnAFullDiskIsToldByTheSystemsReason) {
    EXPECT_EQ(writeBytes("/dev/full", bytesOf("text")), "No space left on device");
    EXPECT_EQ(writeBytes("/dev/full", std::vector<unsigned char>(100000)),
              "No space left on device");
}

/// Ends by a signal while two files and a folder are in the making.
void interrupt(const std::string& folder, int signal) {
    watchInterruptions();
    OutputFile done;
    done.open(folder + "/done", false);
    done.commit();
    OutputFile picture;
    OutputFile recipe;
    picture.open(folder + "/new/deep/a.ppm", false);
    recipe.open(folder + "/a.json", false);
    raise(signal);
}

TEST(OutputFileDeath, InterruptedLeavesWholeFilesAlone) {
    GTEST_FLAG_SET(death_test_style, "fast");
    const TestFolder folder;

    EXPECT_EXIT(interrupt(folder.at("."), SIGTERM), ::testing::KilledBySignal(SIGTERM), "");

    EXPECT_EQ(folder.names(), Names{"done"});
}

TEST(Unfinished, PlacesComeBackAndEnd) {
    std::vector<int> places;
    for (int place = addUnfinished("/none"); place != kNotWatched;
         place = addUnfinished("/none")) {
        places.push_back(place);
    }
    EXPECT_EQ(places.size(), 24U);
    for (const int place : places) {
        dropUnfinished(place);
    }

    const int again = addUnfinished("/none");

    EXPECT_EQ(again, 0);
    dropUnfinished(again);
    EXPECT_EQ(addUnfinished(std::string(5000, 'x')), kNotWatched);
}

}  // namespace
}  // namespace orv::cli
