#include "methods/method_catalogue.h"

#include <gtest/gtest.h>

#include <set>

#include "methods/solver_listing.h"
#include "operators/diffusion/scheme_table.h"

namespace orv {
namespace {

TEST(MethodCatalogue, FindsMethodsByName) {
    ASSERT_NE(findMethod("restore"), nullptr);
    EXPECT_EQ(findMethod("restore")->name, "restore");
    ASSERT_NE(findMethod("denoise"), nullptr);
    EXPECT_EQ(findMethod("Restore"), nullptr);
    EXPECT_EQ(findMethod(""), nullptr);
}

TEST(MethodCatalogue, DescribesEveryParameterOnce) {
    for (const Method* const method : methodCatalogue()) {
        std::set<std::string_view> names;
        for (const Parameter& parameter : method->parameters) {
            SCOPED_TRACE(parameter.name);
            EXPECT_TRUE(names.insert(parameter.name).second);
            EXPECT_FALSE(parameter.help.empty());
            EXPECT_EQ(parameter.help.find('\n'), std::string_view::npos);
            EXPECT_EQ(checkValue(parameter, parameter.defaultValue), "");
            EXPECT_FALSE(defaultText(parameter).empty());
        }
        EXPECT_FALSE(method->literature.empty());
    }
}

TEST(MethodCatalogue, TellsOfEveryNumberWhatALargerOneDoes) {
    for (const Method* const method : methodCatalogue()) {
        for (const Parameter& parameter : method->parameters) {
            SCOPED_TRACE(std::string(method->name) + " " + std::string(parameter.name));
            const bool number = parameter.kind == ParameterKind::Real ||
                                parameter.kind == ParameterKind::Integer;
            EXPECT_EQ(!parameter.larger.empty(), number);
        }
    }
}

TEST(MethodCatalogue, HasNotesAndAnExampleOfEveryMethod) {
    for (const Method* const method : methodCatalogue()) {
        EXPECT_FALSE(method->notes.empty()) << method->name;
        const std::string command = "orv " + std::string(method->name) + " ";
        EXPECT_EQ(method->example.substr(0, command.size()), command);
    }
}

TEST(MethodCatalogue, WritesEveryParameterAndChoiceAsJson) {
    const std::string json = catalogueAsJson();

    for (const Method* const method : methodCatalogue()) {
        EXPECT_NE(json.find("\"name\": \"" + std::string(method->name) + "\""),
                  std::string::npos);
        for (const Parameter& parameter : method->parameters) {
            SCOPED_TRACE(parameter.name);
            EXPECT_NE(json.find("\"name\": \"" + std::string(parameter.name) + "\""),
                      std::string::npos);
            EXPECT_NE(json.find("\"help\": \"" + std::string(parameter.help) + "\""),
                      std::string::npos);
        }
    }
    EXPECT_NE(json.find("\"name\": \"ILU0-BiCGStab\""), std::string::npos);
}

TEST(SolverListing, HoldsAllSolversInTheOrderOfTheirIds) {
    const std::span<const SolverEntry> entries = solverListing();

    ASSERT_EQ(entries.size(), 42U);
    for (int id = 0; id < 42; ++id) {
        EXPECT_EQ(entries[static_cast<std::size_t>(id)].id, id);
    }
    EXPECT_EQ(entries[0].name, "Thomas");
    EXPECT_EQ(entries[0].group, "Direct Methods");
    EXPECT_EQ(suitabilityOf(entries[0]), "both");
    EXPECT_EQ(entries[41].name, "ILU0-BiCGStab");
    EXPECT_EQ(entries[41].group, "SSOR preconditioned methods");
}

TEST(SolverListing, SaysInAWordWhichSchemesASolverSuits) {
    const std::span<const SolverEntry> entries = solverListing();

    EXPECT_EQ(suitabilityOf(entries[0]), "both");
    EXPECT_EQ(suitabilityOf(entries[1]), "none");
    EXPECT_EQ(suitabilityOf(entries[41]), "planes");
}

TEST(SolverListing, NotesTheSolversThatDontSuitASchemeTheyRunOn) {
    for (const SolverEntry& entry : solverListing()) {
        const bool spoils = (!entry.suitsLines || !entry.suitsPlanes) && entry.id != 41;
        EXPECT_EQ(!entry.note.empty(), spoils) << entry.name;
    }
}

TEST(SolverListing, WarnsOnlyWhereTheNoteHolds) {
    EXPECT_EQ(solverWarning(0, 50, kSchemeAos), "");
    EXPECT_EQ(
        solverWarning(1, 1, kScheme2DSemi),
        "the solver Jacobi multiplies instead of solving: wrong pictures, for study only");
    EXPECT_EQ(solverWarning(29, 2, kSchemeAos), "");
    EXPECT_EQ(solverWarning(29, 3, kSchemeAos),
              "the solver GMRES*-CBB may break down above 2 solver iterations");
    EXPECT_EQ(solverWarning(20, 50, kSchemeAos), "the solver BiCGStab breaks down on AOS");
    EXPECT_EQ(solverWarning(20, 50, kSchemeLod), "");
    EXPECT_EQ(solverWarning(5, 50, kSchemeLod),
              "the solver BB may break down on lines, once it is as exact as it can be");
    EXPECT_EQ(solverWarning(5, 50, kScheme2DSemi), "");
    EXPECT_EQ(solverWarning(20, 50, kScheme2DSemi), "");
    EXPECT_EQ(solverWarning(99, 50, kSchemeAos), "");
}

TEST(SolverListing, WritesJson) {
    const std::string json = solversAsJson();

    EXPECT_NE(json.find("\"id\": 41"), std::string::npos);
    EXPECT_NE(json.find("\"suitsLines\": true"), std::string::npos);
    EXPECT_NE(json.find("\"suitsPlanes\": false"), std::string::npos);
    EXPECT_NE(json.find("\"note\": \"multiplies instead of solving"), std::string::npos);
}

}  // namespace
}  // namespace orv
