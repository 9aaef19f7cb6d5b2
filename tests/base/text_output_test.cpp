#include "base/text_output.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

namespace orv {
namespace {

// What the engine writes to the standard output while `print` runs.
template <class Print>
std::string standardOutputOf(Print print) {
    testing::internal::CaptureStdout();
    print();
    std::fflush(stdout);
    return testing::internal::GetCapturedStdout();
}

TEST(TextOutput, IsSilencedWhileAnySilenceStands) {
    EXPECT_FALSE(isTextSilenced());
    {
        const SilencedOutput outer;
        EXPECT_TRUE(isTextSilenced());
        {
            const SilencedOutput inner;
            EXPECT_TRUE(isTextSilenced());
        }
        EXPECT_TRUE(isTextSilenced());
    }
    EXPECT_FALSE(isTextSilenced());
}

TEST(TextOutput, ASilenceDropsWhatIsPrinted) {
    const std::string text = standardOutputOf([] {
        printText("%d ", 1);
        {
            const SilencedOutput silence;
            printText("%d ", 2);
        }
        printText("%d", 3);
    });

    EXPECT_EQ(text, "1 3");
}

TEST(TextOutput, AFileIsWrittenToWhileTheStandardOutputIsSilenced) {
    std::FILE* const file = std::tmpfile();
    ASSERT_NE(file, nullptr);
    const SilencedOutput silence;

    printTextTo(file, "%d", 7);

    std::rewind(file);
    EXPECT_EQ(std::fgetc(file), '7');
    std::fclose(file);
}

}  // namespace
}  // namespace orv
