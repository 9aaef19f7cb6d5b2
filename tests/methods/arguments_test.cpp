#include "methods/arguments.h"

#include <gtest/gtest.h>

#include <array>

#include "methods/method_catalogue.h"
#include "methods/restore_method.h"
#include "operators/diffusion/flow_table.h"

namespace orv {
namespace {

TEST(Arguments, StartAtTheDefaults) {
    for (const Method* const method : methodCatalogue()) {
        const Arguments arguments(method->parameters);
        for (const Parameter& parameter : method->parameters) {
            SCOPED_TRACE(parameter.name);
            EXPECT_EQ(arguments.real(parameter.name), parameter.defaultValue);
        }
    }
}

TEST(Arguments, KeepTheValueWhenATextIsRefused) {
    Arguments arguments(kRestoreMethod.parameters);
    ASSERT_EQ(arguments.set("tau", "3.5"), "");

    const std::string error = arguments.set("tau", "wide");

    EXPECT_EQ(error.substr(0, 31), "--tau: 'wide' is not a number (");
    EXPECT_EQ(arguments.real("tau"), 3.5);
}

TEST(Arguments, NameTheNearestParameter) {
    Arguments arguments(kRestoreMethod.parameters);

    EXPECT_EQ(arguments.set("sigme", "1"),
              "'sigme' is no parameter of this method, did you mean 'sigma'?");
    EXPECT_NE(arguments.setNumber("nothing", 1.0), "");
}

TEST(Arguments, TakeNumbersWithinTheRange) {
    Arguments arguments(kRestoreMethod.parameters);

    EXPECT_EQ(arguments.setNumber("sigma", 0.0), "");
    EXPECT_NE(arguments.setNumber("sigma", -1.0), "");
    EXPECT_EQ(arguments.real("sigma"), 0.0);
}

TEST(Arguments, TellChoicesByNumberAndByName) {
    Arguments arguments(kRestoreMethod.parameters);
    ASSERT_EQ(arguments.set("scheme", "lod"), "");
    ASSERT_EQ(arguments.set("solver", "29"), "");

    EXPECT_EQ(arguments.integer("scheme"), 0);
    EXPECT_EQ(arguments.choiceName("scheme"), "LOD");
    EXPECT_EQ(arguments.choiceName("solver"), "GMRES*-CBB");
    EXPECT_EQ(arguments.choiceName("tau"), "");
    EXPECT_FALSE(arguments.flag("substeps"));
}

TEST(Arguments, ChooseOnlyWhatIsOpen) {
    Arguments arguments(kRestoreMethod.parameters);
    ASSERT_EQ(arguments.set("tau", "2"), "");

    arguments.choose("tau", 5.0);
    arguments.choose("sigma", 0.123456);
    arguments.choose("contrast", 1e9);
    arguments.choose("nothing", 1.0);

    EXPECT_TRUE(arguments.isGiven("tau"));
    EXPECT_FALSE(arguments.isGiven("sigma"));
    EXPECT_FALSE(arguments.isGiven("nothing"));
    EXPECT_EQ(arguments.real("tau"), 2.0);
    EXPECT_EQ(arguments.real("sigma"), 0.123);
    EXPECT_EQ(arguments.real("contrast"), 1000.0);
}

TEST(Arguments, ShowWhatWasGivenOrChosenAsACommand) {
    Arguments arguments(kRestoreMethod.parameters);
    EXPECT_EQ(arguments.commandText(), "");
    ASSERT_EQ(arguments.set("steps", "3"), "");
    ASSERT_EQ(arguments.set("substeps", "on"), "");
    ASSERT_EQ(arguments.set("solver", "7"), "");

    arguments.choose("tau", 1.0 / 3.0);
    arguments.choose("flow", kFlowVariational);

    EXPECT_EQ(arguments.commandText(),
              " --flow VAR --solver CG --tau 0.333 --substeps --steps 3");
}

}  // namespace
}  // namespace orv
