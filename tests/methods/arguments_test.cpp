#include "methods/arguments.h"

#include <gtest/gtest.h>

#include <array>

#include "methods/method_catalogue.h"
#include "methods/restore_method.h"

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

}  // namespace
}  // namespace orv
