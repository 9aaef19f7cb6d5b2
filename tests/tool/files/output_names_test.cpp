#include "files/output_names.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "files/image_file.h"
#include "tool/files/test_folder.h"

namespace orv::cli {
namespace {

using Names = std::vector<std::string>;

/// The outputs of inputs, or the error alone.
Names planned(const std::vector<InputFile>& inputs, const OutputOrder& order) {
    Names outputs;
    const std::string error = planOutputs(inputs, order, outputs);
    return error.empty() ? outputs : Names{error};
}

OutputOrder into(const std::string& output, const std::string& pattern = {}) {
    OutputOrder order;
    order.output = output;
    order.pattern = pattern;
    order.verb = "denoise";
    return order;
}

TEST(OutputNames, StandBesideThePicture) {
    EXPECT_EQ(outputBeside("a/b.ppm"), "a/b.restored.ppm");
    EXPECT_EQ(outputBeside("b.BMP"), "b.restored.BMP");
    EXPECT_EQ(outputBeside("a.b/c.d.ppm", "denoised", ".bmp"), "a.b/c.d.denoised.bmp");
}

TEST(OutputNames, TakeAnEndingThatCanBeWritten) {
    const std::string usual = haveLibrary() ? ".png" : ".bmp";

    EXPECT_EQ(outputBeside("a/b"), "a/b.restored" + usual);
    EXPECT_EQ(outputBeside("photo.dat"), "photo.restored" + usual);
    EXPECT_EQ(outputBeside("a/.ppm"), "a/.ppm.restored" + usual);
}

TEST(OutputNames, OfOnePictureAreWhatWasNamed) {
    EXPECT_EQ(planned({{"in.ppm", "in.ppm"}}, into("out.bmp")), Names{"out.bmp"});
    EXPECT_EQ(planned({{"in.ppm", "in.ppm"}}, into("")), Names{"in.restored.ppm"});
    EXPECT_EQ(planned({{"in.ppm", "in.ppm"}}, into("-")), Names{"-"});
    EXPECT_EQ(planned({{"-", "-"}}, into("")), Names{"-"});
    EXPECT_EQ(planned({{"-", "-"}}, into("out.ppm")), Names{"out.ppm"});
}

TEST(OutputNames, InAFolderKeepNamesAndFoldersBelow) {
    const std::vector<InputFile> inputs{{"in/a.ppm", "a.ppm"}, {"in/s/b.ppm", "s/b.ppm"}};

    EXPECT_EQ(planned(inputs, into("none")), (Names{"none/a.ppm", "none/s/b.ppm"}));
    EXPECT_EQ(planned(inputs, into("none/")), (Names{"none/a.ppm", "none/s/b.ppm"}));
    EXPECT_EQ(planned({inputs[1]}, into("none/")), Names{"none/s/b.ppm"});
    const TestFolder folder;
    EXPECT_EQ(planned({inputs[0]}, into(folder.at("."))), Names{folder.at("./a.ppm")});
}

TEST(OutputNames, FollowThePattern) {
    const std::vector<InputFile> inputs{{"in/a.x.ppm", "a.x.ppm"}, {"in/s/b.ppm", "s/b.ppm"}};
    OutputOrder order = into("none", "{n}-{stem}-{verb}{ext}");

    EXPECT_EQ(planned(inputs, order),
              (Names{"none/1-a.x-denoise.ppm", "none/s/2-b-denoise.ppm"}));
    order.pattern = "{folder}{name}.bmp";
    EXPECT_EQ(planned(inputs, order), (Names{"none/a.x.ppm.bmp", "none/s/b.ppm.bmp"}));
    order.pattern = "flat-{folder}{stem}{ext}";
    order.ending = ".bmp";
    EXPECT_EQ(planned(inputs, order), (Names{"none/flat-a.x.bmp", "none/flat-s/b.bmp"}));
    EXPECT_EQ(planned({inputs[1]}, into("", "{stem}.new{ext}")), Names{"in/s/b.new.ppm"});
}

TEST(OutputNames, AreCountedWithAsManyDigitsAsTheLastOneHas) {
    std::vector<InputFile> inputs;
    for (int i = 0; i < 12; ++i) {
        const std::string name = "p" + std::to_string(i) + ".ppm";
        inputs.push_back({name, name});
    }

    const Names outputs = planned(inputs, into("none", "{n}{ext}"));

    EXPECT_EQ(outputs.front(), "none/01.ppm");
    EXPECT_EQ(outputs.back(), "none/12.ppm");
}

TEST(OutputNames, OfBadPatternsAreRefusedInWords) {
    const std::string fields = " (fields are {stem} {ext} {name} {verb} {n} {folder})";

    EXPECT_EQ(patternRefusal("{stm}{ext}"),
              "--name: unknown field '{stm}', did you mean 'stem'?" + fields);
    EXPECT_EQ(patternRefusal("{stem"), "--name: '{stem' has a '{' without its '}'" + fields);
    EXPECT_EQ(patternRefusal("stem}"), "--name: 'stem}' has a '}' without its '{'" + fields);
    EXPECT_EQ(patternRefusal("{stem}/"),
              "--name: '{stem}/' ends with a folder; a file name is missing");
    EXPECT_EQ(patternRefusal("{folder}{stem}.new{ext}"), "");
    for (const std::string pattern :
         {"../{stem}{ext}", "a/../{stem}", ".orv/{stem}", "/{stem}"}) {
        EXPECT_EQ(
            patternRefusal(pattern),
            "--name: '" + pattern +
                "' leads out of the folder of the results, or into the one of the recipes; "
                "take names and folders below it");
    }
    EXPECT_EQ(patternRefusal("..{stem}"), "");
    EXPECT_EQ(planned({{"a.ppm", "a.ppm"}}, into("", "{counter}")),
              Names{"--name: unknown field '{counter}'" + fields});
}

TEST(OutputNames, ThatWouldMeetAreRefused) {
    EXPECT_EQ(planned({{"a/x.ppm", "x.ppm"}, {"b/x.ppm", "x.ppm"}}, into("none")),
              Names{"a/x.ppm and b/x.ppm would both become none/x.ppm; "
                    "restore them into different folders"});
    EXPECT_EQ(planned({{"x.ppm", "x.ppm"}, {"x.bmp", "x.bmp"}}, into("none", "{stem}.ppm")),
              Names{"x.ppm and x.bmp would both become none/x.ppm; "
                    "--name '{n}-{stem}{ext}' tells them apart"});
}

TEST(OutputNames, OverAnotherPictureAreRefused) {
    const TestFolder folder;
    const std::string a = folder.file("a.ppm");
    const std::string b = folder.file("b.ppm");

    EXPECT_EQ(planned({{a, "a.ppm"}, {b, "b.ppm"}}, into("", "b{ext}"))[0],
              "the result of " + a + " would overwrite " + b +
                  ", a picture that is still to be read; write into another folder by -o");
}

TEST(OutputNames, OfSeveralPicturesNeedAFolder) {
    const std::vector<InputFile> inputs{{"a.ppm", "a.ppm"}, {"b.ppm", "b.ppm"}};
    const TestFolder folder;
    const std::string file = folder.file("out");

    EXPECT_EQ(planned(inputs, into("out.ppm")),
              Names{"out.ppm: names one file, and 2 pictures are to be written; name a folder "
                    "(out.ppm/ for one of this name)"});
    EXPECT_EQ(planned(inputs, into("out.ppm/")), (Names{"out.ppm/a.ppm", "out.ppm/b.ppm"}));
    EXPECT_EQ(planned(inputs, into(file)),
              Names{file + ": is a file, and -o names the folder that results go into"});
    EXPECT_EQ(planned(inputs, into("-")),
              Names{"-o -: standard output holds one picture, and 2 are to be written; name a "
                    "folder"});
}

TEST(OutputNames, WithAPatternNeedAFolder) {
    EXPECT_EQ(planned({{"a.ppm", "a.ppm"}}, into("out.ppm", "{stem}{ext}")),
              Names{"out.ppm: names one file, and --name is given; name a folder (out.ppm/ for "
                    "one of this name)"});
}

TEST(OutputNames, OfOneOfSeveralThatMightHaveBeenAreInAFolder) {
    OutputOrder order = into("none");
    EXPECT_EQ(planned({{"in/a.ppm", "a.ppm", /*found=*/true}}, order), Names{"none/a.ppm"});
    EXPECT_EQ(planned({{"a.ppm", "a.ppm"}}, order), Names{"none"});
    order.severalNamed = true;
    EXPECT_EQ(planned({{"a.ppm", "a.ppm"}}, order), Names{"none/a.ppm"});
    order.output = "out.ppm";
    EXPECT_EQ(planned({{"a.ppm", "a.ppm", /*found=*/true}}, order), Names{"out.ppm"});
}

TEST(OutputNames, OfABatchAreInAFolderWhateverItsName) {
    OutputOrder order = into("out.ppm");
    order.intoFolder = true;
    const TestFolder folder;

    EXPECT_EQ(planned({{"a.ppm", "a.ppm"}}, order), Names{"out.ppm/a.ppm"});
    order.output = folder.file("out");
    EXPECT_EQ(
        planned({{"a.ppm", "a.ppm"}}, order),
        Names{order.output + ": is a file, and -o names the folder that results go into"});
}

}  // namespace
}  // namespace orv::cli
