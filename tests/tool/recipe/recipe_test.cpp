#include "recipe/recipe.h"

#include <gtest/gtest.h>

#include <cstdio>

#include "methods/method_catalogue.h"
#include "pipeline/job_options.h"

namespace orv::cli {
namespace {

const Method& method(std::string_view name) {
    return *findMethod(name);
}

Recipe twoSteps() {
    Recipe recipe;
    recipe.program = "orv 0.1.0";
    recipe.steps.push_back(
        {"restore",
         {{"tau", "2.50"}, {"scheme", "lod"}, {"substeps", "yes"}, {"solver", "0"}},
         {},
         {}});
    recipe.steps.push_back({"recolor", {}, "my style.png", {}});
    recipe.options = {{"format", "png"}, {"quality", "92"}, {"max-side", "1000000"}};
    recipe.input =
        PictureFacts{"in.jpg", 640, 1000000, 3, 8, "xxh3-128:00112233445566778899aabbccddeeff"};
    recipe.output = PictureFacts{"out.png", 640, 427, 3, 8, {}};
    return recipe;
}

TEST(Recipe, IsWrittenInOneFixedForm) {
    EXPECT_EQ(writeRecipe(twoSteps()), R"({
  "format": "orv-recipe",
  "version": 1,
  "program": "orv 0.1.0",
  "steps": [
    {
      "verb": "restore",
      "parameters": {
        "tau": 2.5,
        "scheme": "LOD",
        "substeps": true,
        "solver": "Thomas"
      }
    },
    {
      "verb": "recolor",
      "with": {
        "file": "my style.png"
      }
    }
  ],
  "options": {
    "format": "png",
    "quality": 92,
    "max-side": 1000000
  },
  "input": {
    "file": "in.jpg",
    "width": 640,
    "height": 1000000,
    "channels": 3,
    "bits": 8,
    "pixels": "xxh3-128:00112233445566778899aabbccddeeff"
  },
  "output": {
    "file": "out.png",
    "width": 640,
    "height": 427,
    "channels": 3,
    "bits": 8
  }
}
)");
}

TEST(Recipe, ComesBackFromItsText) {
    const std::string text = writeRecipe(twoSteps());
    Recipe recipe;

    ASSERT_EQ(readRecipe(text, recipe), "");

    EXPECT_EQ(writeRecipe(recipe), text);
    EXPECT_EQ(recipe.program, "orv 0.1.0");
    ASSERT_EQ(recipe.steps.size(), 2U);
    EXPECT_EQ(recipe.steps[1].second, "my style.png");
    ASSERT_TRUE(recipe.input && recipe.output);
    EXPECT_EQ(recipe.input->height, 1000000);
    EXPECT_EQ(recipe.output->pixels, "");
}

TEST(Recipe, KeepsNamesOfFilesWithOddBytes) {
    Recipe recipe = twoSteps();
    recipe.input->file = "a\n\"b\"\\ \xC3\xA9 \xFF.png";
    Recipe back;

    ASSERT_EQ(readRecipe(writeRecipe(recipe), back), "");

    EXPECT_EQ(back.input->file, "a\n\"b\"\\ \xC3\xA9 \xEF\xBF\xBD.png");
}

TEST(Recipe, CompleteStepsHoldEveryParameter) {
    for (const Method* const each : methodCatalogue()) {
        SCOPED_TRACE(each->name);
        Arguments arguments(each->parameters);
        for (const Parameter& parameter : each->parameters) {
            // A value that is seldom the default.
            const bool named = parameter.kind == ParameterKind::Choice;
            const double value = named ? parameter.choices().back().value : parameter.to;
            ASSERT_EQ(arguments.setNumber(parameter.name, value), "");
        }

        Recipe recipe;
        recipe.steps.push_back(completeStep(*each, arguments));
        recipe.steps[0].second = each->secondPicture.empty() ? "" : "second.png";
        Recipe back;
        ASSERT_EQ(readRecipe(writeRecipe(recipe), back), "");
        std::vector<Step> steps;
        ASSERT_EQ(stepsOf(back, steps), "");
        const Arguments& read = steps[0].arguments;

        const std::size_t automation = each->choose == nullptr ? 0 : 1;
        EXPECT_EQ(back.steps[0].parameters.size(), each->parameters.size() + automation);
        for (const Parameter& parameter : each->parameters) {
            EXPECT_EQ(read.real(parameter.name), arguments.real(parameter.name))
                << parameter.name;
        }
        EXPECT_FALSE(steps[0].automatic);
    }
}

TEST(Recipe, KeepsEveryBitOfANumber) {
    Arguments arguments(method("restore").parameters);
    const double odd = 0.1 + 0.2;
    ASSERT_EQ(arguments.setNumber("tau", odd), "");

    Recipe recipe;
    recipe.steps.push_back(completeStep(method("restore"), arguments));
    Recipe back;
    ASSERT_EQ(readRecipe(writeRecipe(recipe), back), "");
    std::vector<Step> steps;
    ASSERT_EQ(stepsOf(back, steps), "");

    EXPECT_EQ(steps[0].arguments.real("tau"), odd);
}

TEST(Recipe, IsShownAsTheChainOfItsSteps) {
    EXPECT_EQ(chainText(twoSteps().steps),
              "restore --tau 2.50 --scheme lod --substeps --solver 0 , recolor 'my style.png'");
    const RecipeStep off{"restore", {{"substeps", "off"}}, {}, {}};
    EXPECT_EQ(chainText({&off, 1}), "restore");
    const RecipeStep quotes{"recolor", {}, "it's , here.png", {}};
    EXPECT_EQ(chainText({&quotes, 1}), "recolor 'it'\\''s , here.png'");
}

/// The step that a verb with these parameters makes.
Step madeStep(const std::string& verb, NamedTexts parameters) {
    Recipe recipe;
    recipe.steps.push_back({verb, std::move(parameters), {}, {}});
    std::vector<Step> steps;
    EXPECT_EQ(stepsOf(recipe, steps), "");
    return steps.at(0);
}

TEST(Recipe, LeavesToThePictureWhatItSays) {
    EXPECT_TRUE(madeStep("restore", {{"tau", "2"}}).automatic);
    EXPECT_FALSE(madeStep("restore", {{"tau", "2"}}).strength.has_value());
    EXPECT_FALSE(madeStep("restore", {{"tau", "2"}, {"auto", "off"}}).automatic);
    EXPECT_FALSE(madeStep("denoise", {{"tau", "2"}}).automatic);
    EXPECT_TRUE(madeStep("denoise", {{"auto", "on"}}).automatic);
    EXPECT_TRUE(madeStep("denoise", {{"strength", "40"}}).automatic);
    EXPECT_EQ(madeStep("denoise", {{"strength", "40"}}).strength.value_or(0.0), 40.0);
    EXPECT_FALSE(madeStep("denoise", {{"auto", "off"}, {"strength", "40"}}).automatic);
    EXPECT_FALSE(madeStep("denoise", {{"strength", "40"}, {"auto", "off"}}).automatic);
    // Another parameter of the same name.
    const Step recolor = madeStep("recolor", {{"strength", "0.5"}});
    EXPECT_FALSE(recolor.automatic);
    EXPECT_EQ(recolor.arguments.real("strength"), 0.5);
}

TEST(Recipe, ShowsAutomationAsItsOptions) {
    const RecipeStep step{"restore", {{"strength", "40"}, {"auto", "on"}}, {}, {}};
    EXPECT_EQ(chainText({&step, 1}), "restore --strength 40");
    const RecipeStep other{"denoise", {{"auto", "on"}}, {}, {}};
    EXPECT_EQ(chainText({&other, 1}), "denoise --auto");
    const RecipeStep written{"denoise", {{"tau", "2"}, {"auto", "off"}}, {}, {}};
    EXPECT_EQ(chainText({&written, 1}), "denoise --tau 2");
}

TEST(Recipe, IsComparedByPixelsAlone) {
    Recipe recipe = twoSteps();
    PictureFacts input = *recipe.input;
    PictureFacts output{"elsewhere.png", 640, 427, 3, 8, "xxh3-128:" + std::string(32, '1')};
    EXPECT_EQ(compareWithRecipe(recipe, input, output), Verdict::NothingToCompare);

    recipe.output->pixels = output.pixels;
    input.file = "another name.png";
    EXPECT_EQ(compareWithRecipe(recipe, input, output), Verdict::Same);
    output.pixels.back() = '2';
    EXPECT_EQ(compareWithRecipe(recipe, input, output), Verdict::Different);
    input.pixels.back() = '3';
    EXPECT_EQ(compareWithRecipe(recipe, input, output), Verdict::OtherPicture);
}

TEST(Recipe, SaysWhichVersionsDiffer) {
    const Recipe recipe = twoSteps();

    EXPECT_EQ(verdictText(recipe, Verdict::Different, "orv 0.2.0"),
              "not the result that the recipe names: other pixels from the same input (orv "
              "0.1.0 wrote it, this is orv 0.2.0)");
    EXPECT_EQ(verdictText(recipe, Verdict::Different, "orv 0.1.0"),
              "not the result that the recipe names: other pixels from the same input");
}

TEST(RecipeFile, IsReadWithItsPathInErrors) {
    const std::string path = ::testing::TempDir() + "recipe_file_test.json";
    const auto write = [&](const std::string& text) {
        std::FILE* const file = std::fopen(path.c_str(), "wb");
        ASSERT_NE(file, nullptr);
        std::fwrite(text.data(), 1, text.size(), file);
        std::fclose(file);
    };
    Recipe recipe;

    write(writeRecipe(twoSteps()));
    EXPECT_EQ(readRecipeFile(path, recipe), "");
    EXPECT_EQ(recipe.steps.size(), 2U);
    write("{\"steps\": 1}");
    EXPECT_EQ(
        readRecipeFile(path, recipe),
        path + ": steps: is a number (expected a list such as [{\"verb\": \"restore\"}])");
    write(std::string(kLongestRecipe + 100000, ' '));
    EXPECT_EQ(readRecipeFile(path, recipe),
              path + ": is longer than 1048576 bytes, so it is no recipe");
    std::remove(path.c_str());
    EXPECT_EQ(readRecipeFile(path, recipe), path + ": No such file or directory");
    EXPECT_EQ(readRecipeFile("/", recipe), "/: is a folder; name a recipe in it");
}

}  // namespace
}  // namespace orv::cli
