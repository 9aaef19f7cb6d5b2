#include "files/input_files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "tool/files/test_folder.h"

namespace orv::cli {
namespace {

/// What came of words, with paths below the folder.
struct Expansion {
    std::vector<std::string> paths;
    std::vector<std::string> relatives;
    std::vector<std::string> notes;
    std::string error;
};

Expansion expand(const TestFolder& folder, const std::vector<std::string>& words,
                 const InputSettings& settings = {}) {
    std::vector<std::string> full;
    for (const std::string& word : words) {
        full.push_back(folder.at(word));
    }
    Expansion expansion;
    std::vector<InputFile> files;
    expansion.error = expandInputs(full, settings, files, expansion.notes);
    for (const InputFile& file : files) {
        expansion.paths.push_back(folder.below(file.path));
        expansion.relatives.push_back(file.relative);
    }
    return expansion;
}

using Names = std::vector<std::string>;

TEST(NaturalOrder, CountsNumbersAsPeopleDo) {
    // Zeros before a number count last.
    const Names sorted{"a", "a02.png", "a2.png", "a10.png", "a10b.png", "b"};
    for (std::size_t i = 0; i < sorted.size(); ++i) {
        for (std::size_t k = 0; k < sorted.size(); ++k) {
            EXPECT_EQ(naturallyBefore(sorted[i], sorted[k]), i < k)
                << sorted[i] << " " << sorted[k];
        }
    }
}

TEST(InputFiles, OfAFolderAreItsPicturesInNaturalOrder) {
    const TestFolder folder;
    for (const char* const name :
         {"p10.ppm", "p2.PPM", "notes.txt", ".hidden.ppm", "sub/q.ppm"}) {
        folder.file("in/" + std::string(name));
    }

    EXPECT_EQ(expand(folder, {"in"}).paths, (Names{"in/p2.PPM", "in/p10.ppm"}));
    EXPECT_EQ(expand(folder, {"in/"}).relatives, (Names{"p2.PPM", "p10.ppm"}));
}

TEST(InputFiles, OfFoldersBelowComeWhenTheyAreAskedFor) {
    const TestFolder folder;
    for (const char* const name : {"a.ppm", "sub/b.ppm", "sub/deep/c.ppm", ".git/d.ppm"}) {
        folder.file("in/" + std::string(name));
    }
    InputSettings settings;
    settings.recursive = true;

    const Expansion found = expand(folder, {"in"}, settings);

    EXPECT_EQ(found.paths, (Names{"in/a.ppm", "in/sub/b.ppm", "in/sub/deep/c.ppm"}));
    EXPECT_EQ(found.relatives, (Names{"a.ppm", "sub/b.ppm", "sub/deep/c.ppm"}));
}

TEST(InputFiles, LinksInACircleEnd) {
    const TestFolder folder;
    folder.file("in/a.ppm");
    std::filesystem::create_directory_symlink(folder.at("in"), folder.at("in/again"));
    InputSettings settings;
    settings.recursive = true;

    EXPECT_EQ(expand(folder, {"in"}, settings).paths, Names{"in/a.ppm"});
    EXPECT_EQ(expand(folder, {"**/*.ppm"}).paths, Names{"in/a.ppm"});
}

TEST(InputFiles, OfALinkThatIsNamedAreFound) {
    const TestFolder folder;
    folder.file("in/a.ppm");
    std::filesystem::create_directory_symlink(folder.at("in"), folder.at("link"));

    EXPECT_EQ(expand(folder, {"link"}).paths, Names{"link/a.ppm"});
}

TEST(InputFiles, FollowIncludeByNameOrByPath) {
    const TestFolder folder;
    for (const char* const name : {"a.ppm", "b.dat", "sub/c.dat", "sub/d.ppm"}) {
        folder.file("in/" + std::string(name));
    }
    InputSettings settings;
    settings.recursive = true;

    settings.include = {"*.DAT"};
    EXPECT_EQ(expand(folder, {"in"}, settings).paths, (Names{"in/b.dat", "in/sub/c.dat"}));
    settings.include = {"sub/*", "a*"};
    EXPECT_EQ(expand(folder, {"in"}, settings).paths,
              (Names{"in/a.ppm", "in/sub/c.dat", "in/sub/d.ppm"}));
}

TEST(InputFiles, OfPatternsAreWhatTheShellWouldHaveFound) {
    const TestFolder folder;
    for (const char* const name :
         {"a1.ppm", "a2.ppm", "b.ppm", ".a3.ppm", "sub/a4.ppm", "sub/deep/a5.ppm"}) {
        folder.file(name);
    }

    EXPECT_EQ(expand(folder, {"a*.ppm"}).paths, (Names{"a1.ppm", "a2.ppm"}));
    EXPECT_EQ(expand(folder, {"a[2-9].ppm"}).paths, Names{"a2.ppm"});
    EXPECT_EQ(expand(folder, {"*/a?.ppm"}).paths, Names{"sub/a4.ppm"});
    EXPECT_EQ(expand(folder, {"**/a*.ppm"}).relatives,
              (Names{"a1.ppm", "a2.ppm", "sub/a4.ppm", "sub/deep/a5.ppm"}));
    EXPECT_EQ(expand(folder, {"sub/**/*.ppm"}).relatives, (Names{"a4.ppm", "deep/a5.ppm"}));
    EXPECT_EQ(expand(folder, {"z*.ppm"}).error,
              folder.at("z*.ppm") + ": no file matches this pattern");
}

TEST(InputFiles, WithTheSignsOfAPatternInTheirNamesAreFiles) {
    const TestFolder folder;
    folder.file("a[1].ppm");
    folder.file("a1.ppm");

    EXPECT_EQ(expand(folder, {"a[1].ppm"}).paths, Names{"a[1].ppm"});
}

TEST(InputFiles, ThatComeTwiceAreTakenOnce) {
    const TestFolder folder;
    folder.file("in/a.ppm");
    folder.file("in/b.ppm");
    std::filesystem::create_symlink(folder.at("in/a.ppm"), folder.at("in/c.ppm"));

    EXPECT_EQ(expand(folder, {"in/b.ppm", "in", "in/../in/b.ppm"}).paths,
              (Names{"in/b.ppm", "in/a.ppm"}));
}

TEST(InputFiles, ThatAreResultsAreLeftOutBesideTheirSource) {
    const TestFolder folder;
    for (const char* const name : {"a.ppm", "a.restored.ppm", "b.restored.ppm", "c.ppm"}) {
        folder.file(name);
    }

    const Expansion found = expand(folder, {"."});

    EXPECT_EQ(found.paths, (Names{"./a.ppm", "./b.restored.ppm", "./c.ppm"}));
    EXPECT_EQ(found.notes,
              Names{folder.at("./a.restored.ppm") + ": is left out, being a result of orv"});
    EXPECT_EQ(expand(folder, {"a.restored.ppm"}).paths, Names{"a.restored.ppm"});
}

TEST(InputFiles, ThatAreMissingStaySoThatReadingSaysSo) {
    const TestFolder folder;

    EXPECT_EQ(expand(folder, {"none.ppm"}).paths, Names{"none.ppm"});
}

TEST(InputFiles, OfAnEmptyFolderAreAnErrorThatSaysHowToGoOn) {
    const TestFolder folder;
    folder.file("in/sub/a.ppm");

    const std::string error = expand(folder, {"in"}).error;

    EXPECT_EQ(error.find(folder.at("in") + ": holds no picture ("), 0U) << error;
    EXPECT_NE(error.find("; --recursive looks into its folder too"), std::string::npos)
        << error;
    InputSettings settings;
    settings.include = {"*.dat"};
    EXPECT_NE(expand(folder, {"in"}, settings).error.find("(nothing matches --include)"),
              std::string::npos);
}

TEST(InputFiles, FromStandardInputStandAlone) {
    std::vector<InputFile> files;
    std::vector<std::string> notes;

    EXPECT_EQ(expandInputs({"-"}, {}, files, notes), "");
    ASSERT_EQ(files.size(), 1U);
    EXPECT_EQ(files[0].path, "-");
    EXPECT_EQ(
        expandInputs({"a.ppm", "-"}, {}, files, notes),
        "-: standard input holds one picture and stands alone; ./- is a file of this name");
}

}  // namespace
}  // namespace orv::cli
