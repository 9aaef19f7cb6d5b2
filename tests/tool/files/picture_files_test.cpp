#include <gtest/gtest.h>

#include <cstring>

#include "files/image_file.h"
#include "tool/files/sample_pictures.h"
#include "tool/files/test_folder.h"

namespace orv::cli {
namespace {

/// The formats that this build writes, by the words for them.
std::vector<std::string> words() {
    return haveLibrary() ? std::vector<std::string>{"bmp", "ppm", "png", "jpg", "tif", "webp"}
                         : std::vector<std::string>{"bmp", "ppm"};
}

PictureSource inMemory(const Picture& picture, const WriteSettings& settings) {
    PictureSource source{"memory", {}, true};
    Picture copy = picture;
    EXPECT_EQ(encodePicture(settings, copy, source.bytes), "");
    return source;
}

TEST(FileFormats, ComeByNameWordAndBytes) {
    EXPECT_EQ(formatOfName("a.b/c.JPEG"), formatOfWord("jpg"));
    EXPECT_EQ(formatOfWord(".Tiff"), formatOfWord("tif"));
    EXPECT_EQ(formatOfWord("gif"), nullptr);
    EXPECT_EQ(formatOfWord(""), nullptr);
    EXPECT_EQ(formatOfName("png"), nullptr);
    EXPECT_EQ(formatOfName(".png"), nullptr);
    EXPECT_EQ(endingOfName("a.b/c"), "");
    EXPECT_EQ(formatOfBytes({0xff, 0xd8, 0xff, 0xe0}), Format::Jpeg);
    EXPECT_EQ(foreignFormat({'G', 'I', 'F', '8', '9', 'a'}), "a GIF");
}

TEST(PictureFiles, AreTheSameFromMemoryAndFromADisk) {
    const TestFolder folder;
    const Picture picture = noisePicture(21, 13, 3);
    for (const std::string& word : words()) {
        SCOPED_TRACE(word);
        const WriteSettings settings = settingsOf(word);
        const PictureSource source = inMemory(picture, settings);
        Picture copy = picture;
        ASSERT_EQ(writePicture(folder.at("file"), settings, copy), "");
        EXPECT_EQ(textOf(folder.at("file")),
                  std::string(source.bytes.begin(), source.bytes.end()));

        Picture fromMemory;
        Picture fromDisk;
        ASSERT_EQ(readPicture(source, fromMemory), "");
        ASSERT_EQ(readPicture(folder.at("file"), fromDisk), "");

        EXPECT_EQ(fromMemory.samples.bytes, fromDisk.samples.bytes);
        if (word != "jpg" && word != "webp") {
            EXPECT_EQ(fromMemory.samples.bytes, picture.samples.bytes);
        }
    }
}

TEST(PictureFiles, TellInTheirHeadWhatReadingGives) {
    for (const std::string& word : words()) {
        for (const int colours : {1, 3}) {
            for (const bool alpha : {false, true}) {
                for (const SampleDepth depth : {SampleDepth::Bits8, SampleDepth::Bits16}) {
                    const Picture picture = noisePicture(9, 4, colours, alpha, depth);
                    const WriteSettings settings = settingsOf(word);
                    if (!writeRefusal("x", settings, picture).empty() ||
                        settings.format->deepest < depth) {
                        continue;
                    }
                    SCOPED_TRACE(word + " " + std::to_string(picture.samples.channels));
                    const PictureSource source = inMemory(picture, settings);
                    PictureHeader header;
                    Picture read;

                    ASSERT_EQ(readHeader(source, header), "");
                    ASSERT_EQ(readPicture(source, read), "");

                    EXPECT_EQ(header.refusal, "");
                    EXPECT_EQ(header.format, settings.format->format);
                    EXPECT_EQ(header.width, read.samples.width);
                    EXPECT_EQ(header.height, read.samples.height);
                    EXPECT_EQ(header.channels, read.samples.channels);
                    EXPECT_EQ(header.colours, read.colours);
                    EXPECT_EQ(header.alpha, read.alpha);
                    EXPECT_EQ(header.depth, read.samples.depth);
                    EXPECT_EQ(header.fileBytes, static_cast<double>(source.bytes.size()));
                }
            }
        }
    }
}

TEST(PictureFiles, AreTheSameBytesTurnAfterTurn) {
    for (const std::string& word : words()) {
        const Picture picture = noisePicture(150, 70, 3);

        EXPECT_EQ(inMemory(picture, settingsOf(word)).bytes,
                  inMemory(picture, settingsOf(word)).bytes)
            << word;
    }
}

TEST(PictureFiles, FollowTheQuality) {
    if (!haveLibrary()) {
        GTEST_SKIP() << "without libvips";
    }
    const Picture picture = noisePicture(64, 64, 3);
    for (const char* const word : {"jpg", "webp"}) {
        const auto size = [&](int quality) {
            return inMemory(picture, settingsOf(word, Strip::None, quality)).bytes.size();
        };
        EXPECT_LT(size(1), size(50)) << word;
        EXPECT_LT(size(50), size(92)) << word;
        EXPECT_LT(size(92), size(100)) << word;
    }
    Picture read;
    ASSERT_EQ(readPicture(inMemory(picture, settingsOf("webp", Strip::None, 100)), read), "");
    EXPECT_EQ(read.samples.bytes, picture.samples.bytes) << "a WebP of 100 has losses";
}

TEST(PictureFiles, CutShortAreRefusedByTheirHead) {
    for (const char* const word : {"bmp", "ppm"}) {
        PictureSource source = inMemory(noisePicture(9, 9, 3), settingsOf(word));
        source.bytes.pop_back();
        PictureHeader header;

        EXPECT_EQ(readHeader(source, header), "memory: is cut short") << word;
    }
}

TEST(PictureFiles, BeyondTheLimitAreRefusedFromTheirHead) {
    const TestFolder folder;
    const std::string path = folder.file("bomb.ppm", "P6\n60000 60000\n255\n");
    PictureSource source;
    ASSERT_EQ(openSource(path, source), "");
    PictureHeader header;
    EXPECT_EQ(readHeader(source, header), path + ": is cut short");

    // With all its bytes it would be sound; a file with a hole takes no room.
    std::filesystem::resize_file(path, 19 + 60000ull * 60000 * 3);
    Picture picture;

    EXPECT_EQ(readHeader(source, header), "");
    EXPECT_EQ(header.refusal,
              "60000 x 60000 pixels are more than the 268 million that orv takes");
    EXPECT_EQ(readPicture(path, picture), path + ": " + header.refusal);
}

TEST(PictureAlpha, IsDroppedWithoutChangeOfColours) {
    for (const SampleDepth depth :
         {SampleDepth::Bits8, SampleDepth::Bits16, SampleDepth::Float}) {
        for (const int colours : {1, 3}) {
            Picture picture = noisePicture(5, 3, colours, /*alpha=*/true, depth);
            const Planes before = planesOf(picture.samples, colours);

            dropAlpha(picture);

            EXPECT_FALSE(picture.alpha);
            EXPECT_EQ(picture.samples.channels, colours);
            const Planes after = planesOf(picture.samples, colours);
            for (std::size_t i = 0; i < before.size(); ++i) {
                for (int x = 0; x < 5; ++x) {
                    EXPECT_EQ(
                        std::memcmp(before[i]->row(x), after[i]->row(x), 3 * sizeof(float)), 0);
                }
            }
            const auto bytes = picture.samples.bytes;
            dropAlpha(picture);
            EXPECT_EQ(picture.samples.bytes, bytes);
        }
    }
}

TEST(ScaleDown, LeavesASmallPictureAlone) {
    Picture picture = noisePicture(40, 30, 3);
    const std::vector<unsigned char> before = picture.samples.bytes;

    EXPECT_EQ(scaleDown(picture, 40), "");

    EXPECT_EQ(picture.samples.bytes, before);
}

TEST(ScaleDown, WithoutTheLibrarySaysSo) {
    if (haveLibrary()) {
        GTEST_SKIP() << "with libvips";
    }
    Picture picture = noisePicture(40, 30, 3);

    EXPECT_EQ(scaleDown(picture, 20),
              "this build of orv is without libvips and can't scale pictures down");
}

class ScalesDown : public ::testing::Test {
  protected:
    void SetUp() override {
        if (!haveLibrary()) {
            GTEST_SKIP() << "without libvips";
        }
    }
};

TEST_F(ScalesDown, KeepsShapeAndKindOfEveryPicture) {
    for (const SampleDepth depth :
         {SampleDepth::Bits8, SampleDepth::Bits16, SampleDepth::Float}) {
        for (const bool alpha : {false, true}) {
            Picture picture = noisePicture(90, 41, 3, alpha, depth);

            ASSERT_EQ(scaleDown(picture, 30), "");

            EXPECT_EQ(picture.samples.width, 30);
            EXPECT_EQ(picture.samples.height, 14);
            EXPECT_EQ(picture.samples.channels, alpha ? 4 : 3);
            EXPECT_EQ(picture.samples.bytes.size(), 30 * 14 * (alpha ? 4 : 3) * bytesOf(depth));
        }
    }
    Picture line = noisePicture(1000, 1, 1);
    ASSERT_EQ(scaleDown(line, 10), "");
    EXPECT_EQ(line.samples.width, 10);
    EXPECT_EQ(line.samples.height, 1);
}

TEST_F(ScalesDown, KeepsAnEvenColour) {
    for (const bool alpha : {false, true}) {
        Picture picture = noisePicture(64, 64, 3, alpha);
        for (std::size_t i = 0; i < picture.samples.bytes.size(); ++i) {
            picture.samples.bytes[i] =
                static_cast<unsigned char>(alpha && i % 4 == 3 ? 128 : 77);
        }

        ASSERT_EQ(scaleDown(picture, 16), "");

        for (std::size_t i = 0; i < picture.samples.bytes.size(); ++i) {
            EXPECT_EQ(picture.samples.bytes[i], alpha && i % 4 == 3 ? 128 : 77) << i;
        }
    }
}

TEST_F(ScalesDown, LetsNoColourOfClearPixelsShine) {
    Picture picture = noisePicture(64, 64, 3, /*alpha=*/true);
    for (std::size_t i = 0; i < 64 * 64; ++i) {
        const bool clear = i % 64 < 32;
        const unsigned char pixel[] = {static_cast<unsigned char>(clear ? 255 : 20), 20, 20,
                                       static_cast<unsigned char>(clear ? 0 : 255)};
        std::memcpy(&picture.samples.bytes[4 * i], pixel, 4);
    }

    ASSERT_EQ(scaleDown(picture, 15), "");

    for (std::size_t i = 0; i < picture.samples.bytes.size(); i += 4) {
        if (picture.samples.bytes[i + 3] > 8) {
            EXPECT_NEAR(picture.samples.bytes[i], 20, 2) << "pixel " << i / 4;
        }
    }
}

TEST_F(ScalesDown, LeavesNoMoire) {
    // Stripes of one pixel are grey from far away; taking every third would keep them.
    Picture picture = noisePicture(90, 90, 1);
    for (std::size_t i = 0; i < picture.samples.bytes.size(); ++i) {
        picture.samples.bytes[i] = i % 2 == 0 ? 0 : 255;
    }

    ASSERT_EQ(scaleDown(picture, 30), "");

    for (std::size_t y = 3; y < 27; ++y) {
        for (std::size_t x = 3; x < 27; ++x) {
            EXPECT_NEAR(picture.samples.bytes[y * 30 + x], 127.5, 8);
        }
    }
}

}  // namespace
}  // namespace orv::cli
