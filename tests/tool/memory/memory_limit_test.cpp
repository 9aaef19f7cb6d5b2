#include "memory/memory_limit.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "methods/method_catalogue.h"

namespace orv::cli {
namespace {

/// A folder that stands for the root of a system.
class FakeSystem {
  public:
    FakeSystem() {
        const auto* const test = testing::UnitTest::GetInstance()->current_test_info();
        root_ =
            std::filesystem::path(testing::TempDir()) / (std::string("orv-") + test->name());
        std::filesystem::remove_all(root_);
    }
    ~FakeSystem() { std::filesystem::remove_all(root_); }

    void write(const std::string& path, const std::string& text) const {
        std::filesystem::create_directories((root_ / path).parent_path());
        std::ofstream(root_ / path) << text;
    }

    std::optional<double> available() const {
        return availableMemoryBelow(root_.string() + "/");
    }

  private:
    std::filesystem::path root_;
};

constexpr const char* kMeminfo = "MemTotal: 9000 kB\nMemFree: 1 kB\nMemAvailable:    8000 kB\n";

TEST(AvailableMemory, IsUnknownWithoutFilesOfTheSystem) {
    const FakeSystem system;

    EXPECT_FALSE(system.available().has_value());
}

TEST(AvailableMemory, IsWhatTheMachineHasFree) {
    const FakeSystem system;
    system.write("proc/meminfo", kMeminfo);

    EXPECT_EQ(system.available(), 8000.0 * 1024);
}

TEST(AvailableMemory, IsWhatTheTightestGroupAboveAllows) {
    const FakeSystem system;
    system.write("proc/meminfo", kMeminfo);
    system.write("proc/self/cgroup", "0::/outer/inner\n");
    system.write("sys/fs/cgroup/outer/inner/memory.max", "max\n");
    system.write("sys/fs/cgroup/outer/inner/memory.current", "5\n");
    system.write("sys/fs/cgroup/outer/memory.max", "5000000\n");
    system.write("sys/fs/cgroup/outer/memory.current", "3000000\n");
    system.write("sys/fs/cgroup/outer/memory.stat", "anon 7\ninactive_file 500000\n");

    EXPECT_EQ(system.available(), 2500000.0);
}

TEST(AvailableMemory, KnowsTheFirstVersionOfGroups) {
    const FakeSystem system;
    system.write("proc/meminfo", kMeminfo);
    system.write("proc/self/cgroup", "5:cpu:/x\n4:memory:/job\n");
    system.write("sys/fs/cgroup/memory/job/memory.limit_in_bytes", "4000000\n");
    system.write("sys/fs/cgroup/memory/job/memory.usage_in_bytes", "1000000\n");

    EXPECT_EQ(system.available(), 3000000.0);
}

double limitOf(const std::string& text, std::optional<double> available = 1000.0) {
    std::optional<double> limit;
    EXPECT_EQ(readMemorySize(text, available, limit), "") << text;
    return limit.value_or(-1.0);
}

TEST(MemorySize, HasUnitsOfThousandsAndOf1024) {
    EXPECT_EQ(limitOf("12345"), 12345.0);
    EXPECT_EQ(limitOf("2G"), 2e9);
    EXPECT_EQ(limitOf("1.5m"), 1.5e6);
    EXPECT_EQ(limitOf("500MB"), 5e8);
    EXPECT_EQ(limitOf("64KiB"), 65536.0);
    EXPECT_EQ(limitOf("1T"), 1e12);
}

TEST(MemorySize, IsThreeQuartersOfWhatIsFreeByDefault) {
    EXPECT_EQ(limitOf(""), 750.0);
    EXPECT_EQ(limitOf("50%"), 500.0);
    EXPECT_EQ(limitOf("", std::nullopt), -1.0);
    EXPECT_EQ(limitOf("50%", std::nullopt), -1.0);
}

TEST(MemorySize, RefusesOtherWords) {
    for (const char* const text :
         {"lots", "-1G", "0", "1X", "1GG", "1iB", "nan", "inf", " 1G", "1 G", "%"}) {
        std::optional<double> limit;
        EXPECT_EQ(readMemorySize(text, 1000.0, limit),
                  "--max-memory: '" + std::string(text) +
                      "' is not a size (expected a size such as 2G, 500M or 75%)");
        EXPECT_FALSE(limit.has_value());
    }
    std::optional<double> limit;
    EXPECT_EQ(readMemorySize("101%", 1000.0, limit),
              "--max-memory: '101%' is more than all there is");
}

std::vector<Step> stepsOf(const char* name, const std::string& scheme = {}) {
    const Method* const method = findMethod(name);
    Arguments arguments(method->parameters);
    if (!scheme.empty()) {
        EXPECT_EQ(arguments.set("scheme", scheme), "");
    }
    return {{method, std::move(arguments), {}}};
}

const JobShape kShape{{6000, 4000, 3, 3, SampleDepth::Bits8, 5e6}};

JobShape scaled(int side) {
    JobShape shape = kShape;
    shape.maxSide = side;
    return shape;
}

TEST(MemoryRefusal, IsNoneBelowTheLimitAndWhereNoneIsKnown) {
    const std::vector<Step> steps = stepsOf("blur");
    const double needed = jobBytes(steps, kShape);

    EXPECT_EQ(memoryRefusal("a", steps, kShape, needed), "");
    EXPECT_EQ(memoryRefusal("a", steps, kShape, std::nullopt), "");
    EXPECT_NE(memoryRefusal("a", steps, kShape, needed - 1.0), "");
}

TEST(MemoryRefusal, NamesTheLargestSideThatFits) {
    const std::vector<Step> steps = stepsOf("shock");
    constexpr double kLimit = 4e8;

    const int side = largestSide(steps, kShape, kLimit);
    const std::string text = memoryRefusal("a.png", steps, kShape, kLimit);

    EXPECT_GT(side, 1000);
    EXPECT_LE(jobBytes(steps, scaled(side)), kLimit);
    EXPECT_GT(jobBytes(steps, scaled(side + 1)), kLimit);
    EXPECT_NE(text.find("take --max-side " + std::to_string(side) + " or --max-memory "),
              std::string::npos)
        << text;
}

TEST(MemoryRefusal, NamesALighterSolverThatFits) {
    const std::string text = memoryRefusal("a.png", stepsOf("restore", "2DSemi"), kShape, 1e10);

    EXPECT_NE(text.find("; take --solver CG or "), std::string::npos) << text;
}

TEST(MemoryRefusal, NamesALighterSchemeWhereNoSolverFits) {
    const std::string text = memoryRefusal("a.png", stepsOf("restore", "2DSemi"), kShape, 1e9);

    EXPECT_NE(text.find("; take --scheme AOS or "), std::string::npos) << text;
}

TEST(MemoryText, HasThreeFiguresAtMostBelowAGigabyte) {
    EXPECT_EQ(memoryText(12.4e6), "12 MB");
    EXPECT_EQ(memoryText(999.4e6), "999 MB");
    EXPECT_EQ(memoryText(999.6e6), "1.0 GB");
    EXPECT_EQ(memoryText(1000.0), "1 MB");
}

}  // namespace
}  // namespace orv::cli
