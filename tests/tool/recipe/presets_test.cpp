#include "recipe/presets.h"

#include <gtest/gtest.h>

#include <array>
#include <fstream>
#include <sstream>

namespace orv::cli {
namespace {

TEST(Presets, AreTheFiveThatTheHelpNames) {
    constexpr std::array<std::string_view, 5> kNames{"document", "night", "old-print",
                                                     "portrait", "scan"};

    ASSERT_EQ(presets().size(), kNames.size());
    for (std::size_t i = 0; i < kNames.size(); ++i) {
        EXPECT_EQ(presets()[i].name, kNames[i]);
    }
}

TEST(Presets, AreRecipesOfTheirName) {
    for (const Preset& preset : presets()) {
        SCOPED_TRACE(preset.name);
        Recipe recipe;

        ASSERT_EQ(readPreset(preset.name, recipe), "");

        EXPECT_EQ(recipe.name, preset.name);
        EXPECT_EQ(recipe.description, preset.summary);
        // One line of the help, behind a name of nine letters.
        EXPECT_LE(preset.summary.size(), 66U);
        // Files of the project in the form that the tool writes.
        EXPECT_EQ(writeRecipe(recipe), preset.text);
        for (const RecipeStep& step : recipe.steps) {
            EXPECT_TRUE(step.second.empty());
        }
    }
}

TEST(Presets, AreTheFilesOfTheSources) {
    for (const Preset& preset : presets()) {
        const std::string path = std::string(ORV_SOURCE_DIR) + "/tools/orv/recipe/presets/" +
                                 std::string(preset.name) + ".json";
        std::ifstream file(path, std::ios::binary);
        std::stringstream text;
        text << file.rdbuf();

        EXPECT_EQ(text.str(), preset.text) << path;
    }
}

TEST(Presets, AreFoundByName) {
    Recipe recipe;

    EXPECT_EQ(readPreset("Night", recipe), "");
    EXPECT_EQ(readPreset("nihgt", recipe),
              "unknown preset 'nihgt', did you mean 'night'? (presets: document, night, "
              "old-print, portrait, scan)");
    EXPECT_EQ(readPreset("", recipe),
              "unknown preset '' (presets: document, night, old-print, portrait, scan)");
}

}  // namespace
}  // namespace orv::cli
