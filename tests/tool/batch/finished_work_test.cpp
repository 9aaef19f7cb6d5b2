#include "batch/finished_work.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "recipe/recipe.h"

namespace orv::cli {
namespace {

/// A folder with a picture that a worker has just done.
class FinishedWork : public testing::Test {
  protected:
    void SetUp() override {
        std::string name = testing::TempDir() + "orv-XXXXXX";
        ASSERT_NE(mkdtemp(name.data()), nullptr);
        folder_ = name + "/";
        write("in.ppm", "before");
        write("out.ppm", "after");
        file_.input = folder_ + "in.ppm";
        file_.output = folder_ + "out.ppm";
        file_.recipe = folder_ + "out.json";
        ASSERT_TRUE(readStamp(file_.input, file_.stamp));
        Recipe recipe;
        recipe.steps.push_back({"blur", {{"sigma", "1"}}, {}, {}});
        recipe.input.emplace();
        recipe.output.emplace();
        write("out.json", writeRecipe(recipe));
        ASSERT_EQ(completeRecipe(file_.recipe, "blur --sigma 1", file_, file_.output), "");
    }
    void TearDown() override { std::filesystem::remove_all(folder_); }

    void write(const std::string& name, const std::string& text) const {
        std::ofstream(folder_ + name) << text;
    }
    Finished judged(const std::string& request = "blur --sigma 1") {
        return finishedWork(file_, request, reason_);
    }

    std::string folder_;
    BatchFile file_;
    std::string reason_;
};

TEST_F(FinishedWork, IsWholeWhenNothingChanged) {
    EXPECT_EQ(judged(), Finished::Whole);
}

TEST_F(FinishedWork, IsNothingWithoutAFile) {
    unlink(file_.output.c_str());

    EXPECT_EQ(judged(), Finished::Nothing);
}

TEST_F(FinishedWork, TellsAnotherRequest) {
    EXPECT_EQ(judged("blur --sigma 2"), Finished::Other);
    EXPECT_NE(reason_.find("was made by 'blur --sigma 1'"), std::string::npos);
}

TEST_F(FinishedWork, TellsAnotherInputOfTheSameTime) {
    file_.stamp.bytes += 1.0;

    EXPECT_EQ(judged(), Finished::Other);
    EXPECT_EQ(reason_,
              "has changed since " + file_.output + " was made; --force makes it again");
}

TEST_F(FinishedWork, TellsAnOutputOfTheSameSizeAndAnotherTime) {
    const struct timespec times[2] = {{1, 0}, {1, 0}};
    ASSERT_EQ(utimensat(AT_FDCWD, file_.output.c_str(), times, 0), 0);

    EXPECT_EQ(judged(), Finished::Other);
    EXPECT_EQ(reason_, file_.output + " was changed after it was made; --force overwrites it");
}

TEST_F(FinishedWork, TellsADamagedRecipe) {
    write("out.json", "{\"steps\": [");

    EXPECT_EQ(judged(), Finished::Other);
    EXPECT_EQ(reason_, file_.output + " stands there without a recipe; --force overwrites it");
}

TEST_F(FinishedWork, TellsALinkToNowhere) {
    unlink(file_.output.c_str());
    ASSERT_EQ(symlink("nowhere", file_.output.c_str()), 0);

    EXPECT_EQ(judged(), Finished::Other);
}

TEST(FileStamp, HasNanoseconds) {
    std::string name = testing::TempDir() + "orv-XXXXXX";
    const int descriptor = mkstemp(name.data());
    ASSERT_GE(descriptor, 0);
    const struct timespec times[2] = {{0, 0}, {951782400, 5}};
    futimens(descriptor, times);
    close(descriptor);

    FileStamp stamp;
    const bool read = readStamp(name, stamp);
    unlink(name.c_str());

    EXPECT_TRUE(read);
    EXPECT_EQ(stamp.modified, "2000-02-29T00:00:00.000000005Z");
    EXPECT_EQ(stamp.bytes, 0.0);
    EXPECT_FALSE(readStamp(name, stamp));
}

}  // namespace
}  // namespace orv::cli
