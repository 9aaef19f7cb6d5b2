#include "files/exif_block.h"

#include <gtest/gtest.h>

#include "tool/files/sample_exif.h"

namespace orv::cli {
namespace {

/// The latitude's seconds as they stand in the block.
std::string latitude(bool little) {
    const std::string bytes = "!VRO";
    return little ? bytes : std::string(bytes.rbegin(), bytes.rend());
}

class ExifBlocks : public ::testing::TestWithParam<bool> {};

TEST_P(ExifBlocks, TellWhatTheyHold) {
    ExifSample sample;
    sample.little = GetParam();

    const ExifFacts facts = exifFacts(exifBlock(sample));

    EXPECT_EQ(facts.orientation, 6);
    EXPECT_TRUE(facts.gps);
    EXPECT_EQ(facts.maker, "Orv Works");
    EXPECT_EQ(facts.taken, "2019:05:04 12:00:00");
}

TEST_P(ExifBlocks, BecomeUprightWithTheSizeOfTheResultAndWithoutPreview) {
    ExifSample sample;
    sample.little = GetParam();
    const std::string before = exifBlock(sample);

    const std::string after = exifForResult(before, 30, 40, /*withoutGps=*/false);

    const ExifFacts facts = exifFacts(after);
    EXPECT_EQ(facts.orientation, 1);
    EXPECT_TRUE(facts.gps);
    EXPECT_NE(after.find(latitude(sample.little)), std::string::npos);
    EXPECT_EQ(after.find(kPreview), std::string::npos);
    EXPECT_EQ(after.size(), before.size() - kPreview.size());
    // The size is the third and fourth entry of the directory at 100.
    const std::size_t low = sample.little ? 0 : 3;
    EXPECT_EQ(after[100 + 2 + 2 * 12 + 8 + low], 30);
    EXPECT_EQ(after[100 + 2 + 3 * 12 + 8 + (sample.little ? 0 : 1)], 40);
    EXPECT_EQ(after.substr(400, 250), before.substr(400, 250)) << "a maker's note moved";
}

TEST_P(ExifBlocks, LoseThePlaceAlone) {
    ExifSample sample;
    sample.little = GetParam();
    const std::string before = exifBlock(sample);

    const std::string after = exifForResult(before, 30, 40, /*withoutGps=*/true);

    const ExifFacts facts = exifFacts(after);
    EXPECT_FALSE(facts.gps);
    EXPECT_EQ(after.find(latitude(sample.little)), std::string::npos);
    EXPECT_EQ(after.substr(200, 30), std::string(30, '\0')) << "the directory of GPS is there";
    EXPECT_EQ(facts.maker, "Orv Works");
    EXPECT_EQ(facts.taken, "2019:05:04 12:00:00");
    EXPECT_EQ(after.substr(400, 200), before.substr(400, 200)) << "a maker's note moved";
}

INSTANTIATE_TEST_SUITE_P(BothByteOrders, ExifBlocks, ::testing::Bool());

TEST(ExifBlock, WorksWithTheMarkOfJpegBeforeIt) {
    using std::string_view_literals::operator""sv;
    const std::string block = std::string("Exif\0\0"sv) + exifBlock({});

    EXPECT_EQ(exifFacts(block).orientation, 6);
    EXPECT_EQ(exifForResult(block, 3, 4, false), exifForResult(exifBlock({}), 3, 4, false));
}

TEST(ExifBlock, WithoutGpsAndPreviewChangesInOrientationAndSizeAlone) {
    ExifSample sample;
    sample.gps = false;
    sample.preview = false;
    sample.orientation = 1;
    const std::string before = exifBlock(sample);

    std::string after = exifForResult(before, 30, 40, /*withoutGps=*/true);

    ASSERT_EQ(after.size(), before.size());
    for (const std::size_t at : {100 + 2 + 2 * 12 + 8, 100 + 2 + 3 * 12 + 8}) {
        after.replace(at, 4, before, at, 4);
    }
    EXPECT_EQ(after, before);
}

TEST(ExifBlock, ThatIsNoneGivesNothing) {
    for (const std::string_view text : {"", "II", "Exif", "no block at all, of some length"}) {
        EXPECT_EQ(exifForResult(text, 3, 4, true), "");
        EXPECT_EQ(exifFacts(text).orientation, 1);
        EXPECT_FALSE(exifFacts(text).gps);
    }
}

TEST(ExifBlock, SurvivesAnyLossAndAnyByte) {
    const std::string whole = exifBlock({});
    for (std::size_t size = 0; size < whole.size(); ++size) {
        exifForResult(whole.substr(0, size), 3, 4, true);
        exifFacts(whole.substr(0, size));
    }
    for (std::size_t at = 0; at < whole.size(); ++at) {
        for (const char value : {'\0', '\x7f', '\xff'}) {
            std::string bad = whole;
            bad[at] = value;
            const std::string after = exifForResult(bad, 3, 4, true);
            EXPECT_LE(after.size(), bad.size());
            EXPECT_FALSE(exifFacts(after).gps && exifFacts(bad).gps) << "at " << at;
        }
    }
}

}  // namespace
}  // namespace orv::cli
