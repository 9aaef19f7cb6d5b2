#include <gtest/gtest.h>

#include "recipe/recipe.h"

namespace orv::cli {
namespace {

std::string errorOf(std::string_view text) {
    Recipe recipe;
    recipe.program = "as before";
    const std::string error = readRecipe(text, recipe);
    if (!error.empty()) {
        EXPECT_EQ(recipe.program, "as before");
        EXPECT_EQ(error.find('\n'), std::string::npos);
    }
    return error;
}

/// The error of a recipe with one step of these fields.
std::string stepError(const std::string& fields) {
    return errorOf("{\"steps\": [{" + fields + "}]}");
}

TEST(RecipeReader, TakesTheShortestRecipe) {
    Recipe recipe;

    ASSERT_EQ(readRecipe(R"({"steps": [{"verb": "restore"}]})", recipe), "");

    ASSERT_EQ(recipe.steps.size(), 1U);
    EXPECT_EQ(recipe.steps[0].verb, "restore");
    EXPECT_TRUE(recipe.steps[0].parameters.empty());
    EXPECT_FALSE(recipe.input.has_value());
}

TEST(RecipeReader, TakesValuesAsNumbersTextsOrFlags) {
    Recipe recipe;

    ASSERT_EQ(readRecipe(R"({"steps": [{"verb": "restore", "parameters": {
        "tau": 2.50, "sigma": "1.5", "steps": 3, "scheme": "lod", "solver": 6,
        "substeps": true}}]})",
                         recipe),
              "");

    const NamedTexts expected{{"tau", "2.50"},   {"sigma", "1.5"}, {"steps", "3"},
                              {"scheme", "lod"}, {"solver", "6"},  {"substeps", "true"}};
    EXPECT_EQ(recipe.steps[0].parameters, expected);
}

TEST(RecipeReader, TakesAutomationWhereTheMethodHasIt) {
    Recipe recipe;

    ASSERT_EQ(readRecipe(R"({"steps": [
        {"verb": "restore", "parameters": {"strength": 40}},
        {"verb": "wavelet", "parameters": {"auto": true}}]})",
                         recipe),
              "");

    EXPECT_EQ(recipe.steps[0].parameters, (NamedTexts{{"strength", "40"}}));
    EXPECT_EQ(recipe.steps[1].parameters, (NamedTexts{{"auto", "true"}}));
    EXPECT_EQ(stepError(R"("verb": "restore", "parameters": {"strength": 140})"),
              "steps[0].parameters.strength: 140 is out of range (expected N from 0 to 100, "
              "default 0.0)");
    EXPECT_EQ(stepError(R"("verb": "shock", "parameters": {"auto": true})"),
              "steps[0].parameters.auto: is no parameter of shock (orv shock --help lists "
              "them)");
}

TEST(RecipeReader, TakesSecondPictures) {
    Recipe recipe;

    ASSERT_EQ(readRecipe(R"({"steps": [
        {"verb": "recolor", "with": "a.png"},
        {"verb": "colorize", "with": {"file": "b.png",
         "pixels": "xxh3-128:00112233445566778899aabbccddeeff"}}]})",
                         recipe),
              "");

    EXPECT_EQ(recipe.steps[0].second, "a.png");
    EXPECT_EQ(recipe.steps[0].secondPixels, "");
    EXPECT_EQ(recipe.steps[1].second, "b.png");
    EXPECT_EQ(recipe.steps[1].secondPixels, "xxh3-128:00112233445566778899aabbccddeeff");
}

TEST(RecipeReader, NamesThePlaceOfAWrongValue) {
    EXPECT_EQ(errorOf(R"({"steps": [{"verb": "restore"},
                          {"verb": "shock", "parameters": {"step": "wide"}}]})"),
              "steps[1].parameters.step: 'wide' is not a number (expected PIXELS from 0 to 1, "
              "default 0.2)");
    EXPECT_EQ(stepError(R"("verb": "shock", "parameters": {"step": 7})"),
              "steps[0].parameters.step: 7 is out of range (expected PIXELS from 0 to 1, "
              "default 0.2)");
    EXPECT_EQ(stepError(R"("verb": "shock", "parameters": {"step": null})"),
              "steps[0].parameters.step: is null; leave the name out to get the default");
    EXPECT_EQ(stepError(R"("verb": "shock", "parameters": {"step": [1]})"),
              "steps[0].parameters.step: is an array (expected a number, a text, true or "
              "false)");
    EXPECT_EQ(stepError(R"("verb": "shock", "parameters": {"method": "sgn"})"),
              "steps[0].parameters.method: 'sgn' is not known, did you mean 'sign'? (expected "
              "sign, diffusive-sign, arctan, diffusive-arctan, default diffusive-arctan)");
    EXPECT_EQ(stepError(R"("verb": "shock", "parameters": {"step": ")" + std::string(500, '7') +
                        "\"}"),
              "steps[0].parameters.step: is too long (expected PIXELS from 0 to 1, default "
              "0.2)");
}

TEST(RecipeReader, NamesTheNearestKnownWord) {
    EXPECT_EQ(stepError(R"("verb": "shok")"),
              "steps[0].verb: 'shok' is no method, did you mean 'shock'? (orv methods lists "
              "them)");
    EXPECT_EQ(stepError(R"("verb": "shock", "parameters": {"iteration": 3})"),
              "steps[0].parameters.iteration: is no parameter of shock, did you mean "
              "'iterations'? (orv shock --help lists them)");
    EXPECT_EQ(
        stepError(R"("verb": "shock", "parmeters": {})"),
        "steps[0].parmeters: is no field of a step, did you mean 'parameters'? (there are "
        "verb, parameters, with)");
    EXPECT_EQ(
        errorOf(R"({"step": []})"),
        "step: is no field of a recipe, did you mean 'steps'? (there are format, version, "
        "program, name, description, request, steps, options, input, output)");
    EXPECT_EQ(errorOf(R"({"steps": [{"verb": "shock"}], "options": {"qualty": 90}})"),
              "options.qualty: is no option of files, did you mean 'quality'? (there are "
              "format, quality, strip, alpha, max-side)");
}

TEST(RecipeReader, SaysHowAStepIsWritten) {
    EXPECT_EQ(stepError(R"("verb": "shock", "step": 0.1)"),
              "steps[0].step: stands beside \"verb\"; write it within \"parameters\": "
              "{\"step\": ...}");
    EXPECT_EQ(stepError(""),
              "steps[0]: has no \"verb\" (expected an object such as {\"verb\": \"restore\"})");
    EXPECT_EQ(errorOf(R"({"steps": ["shock"]})"),
              "steps[0]: is a text (expected an object such as {\"verb\": \"restore\"})");
    EXPECT_EQ(errorOf(R"({"steps": []})"),
              "steps: is empty (expected a list such as [{\"verb\": \"restore\"}])");
    EXPECT_EQ(errorOf("{}"),
              "\"steps\" is missing (expected a list such as [{\"verb\": \"restore\"}])");
    EXPECT_EQ(errorOf("[]"),
              "holds an array (expected {\"steps\": [{\"verb\": \"restore\"}]})");
    EXPECT_EQ(errorOf(" \n"), "is empty (expected {\"steps\": [{\"verb\": \"restore\"}]})");
    EXPECT_EQ(stepError(R"("verb": "shock", "parameters": 3)"),
              "steps[0].parameters: is a number (expected an object such as {\"tau\": 2})");
}

TEST(RecipeReader, AsksForASecondPictureWhereOneIsNeeded) {
    EXPECT_EQ(stepError(R"("verb": "recolor")"),
              "steps[0]: recolor takes a second picture, STYLE, as \"with\": \"FILE\"");
    EXPECT_EQ(stepError(R"("verb": "recolor", "with": {})"),
              "steps[0].with: names no file; recolor takes a second picture, STYLE, as "
              "\"with\": \"FILE\"");
    EXPECT_EQ(stepError(R"("verb": "shock", "with": "a.png")"),
              "steps[0].with: shock takes no second picture");
}

TEST(RecipeReader, RefusesOtherFilesAndNewerVersions) {
    EXPECT_EQ(errorOf(R"({"version": 2, "steps": [{"verb": "new", "mask": 1}], "later": {}})"),
              "version: this recipe has version 2 and this orv reads up to 1; take the orv "
              "that wrote it or a newer one");
    EXPECT_EQ(errorOf(R"({"format": "other", "steps": []})"),
              "format: 'other' is no recipe (expected \"orv-recipe\")");
    EXPECT_EQ(errorOf(R"({"version": "1", "steps": []})"),
              "version: is a text (expected a whole number from 1 on)");
    EXPECT_EQ(errorOf(R"({"version": 0, "steps": []})"),
              "version: 0 is out of range (expected a whole number from 1 on)");
    EXPECT_EQ(errorOf(std::string(kLongestRecipe + 1, ' ')),
              "is longer than 1048576 bytes, so it is no recipe");
    EXPECT_EQ(errorOf("\x89PNG\r\n").substr(0, 18), "line 1, column 1: ");
}

TEST(RecipeReader, ChecksWhatIsKnownOfPictures) {
    const std::string steps = R"({"steps": [{"verb": "shock"}], )";

    EXPECT_EQ(errorOf(steps + R"("input": {"width": 0}})"),
              "input.width: 0 is out of range (expected a whole number from 1 on)");
    EXPECT_EQ(errorOf(steps + R"("output": {"pixels": "md5:1"}})"),
              "output.pixels: 'md5:1' is no hash (expected xxh3-128: and 32 digits from 0 to "
              "f)");
    EXPECT_EQ(errorOf(steps + R"("output": {"pixel": "md5:1"}})").substr(0, 65),
              "output.pixel: is no field of a picture, did you mean 'pixels'? (t");
    EXPECT_EQ(errorOf(steps + R"("input": {"file": "a\u0000b"}})"),
              "input.file: holds a control character");
    EXPECT_EQ(errorOf(steps + R"("input": {"file": "a\nb"}})"), "");
    EXPECT_EQ(errorOf(steps + R"("description": "\u001b[2J"})"),
              "description: holds a control character");
}

TEST(RecipeReader, SurvivesEveryCutAndEveryWrongByte) {
    Recipe recipe;
    recipe.program = "orv 0.1.0";
    recipe.steps.push_back({"recolor", {{"swatch", "16"}}, "style.png", {}});
    recipe.options.emplace_back("quality", "92");
    recipe.input = PictureFacts{"a.png", 4, 3, 3, 8, "xxh3-128:" + std::string(32, '0')};
    recipe.steps[0].parameters.clear();
    const std::string text = writeRecipe(recipe);
    ASSERT_EQ(errorOf(text), "");

    for (std::size_t length = 0; length + 2 < text.size(); ++length) {
        EXPECT_NE(errorOf(text.substr(0, length)), "") << length;
    }
    for (std::size_t i = 0; i < text.size(); ++i) {
        for (const char wrong : {'\0', '\xFF', '"', '{', ']', ',', '9'}) {
            std::string broken = text;
            broken[i] = wrong;
            errorOf(broken);  // either way, without a crash and with one line
        }
    }
}

}  // namespace
}  // namespace orv::cli
