#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace orv::cli {

/// What an EXIF block of a test holds.
struct ExifSample {
    bool little = true;
    unsigned orientation = 6;
    bool gps = true;
    bool preview = true;
    std::string maker = "Orv Works";
    std::string note = "NOTE OF THE MAKER, AT ITS PLACE";
};

/// The letters of its preview.
inline constexpr std::string_view kPreview = "PREVIEW OF THE PICTURE AS IT WAS";

/// The seconds of its latitude, by which it is found.
inline constexpr unsigned kLatitudeMark = 0x4f525621;

/// Numbers and entries in one byte order.
class BlockWriter {
  public:
    explicit BlockWriter(bool little) : little_(little) {}

    void number(unsigned value, int count) {
        for (int i = 0; i < count; ++i) {
            const int shift = 8 * (little_ ? i : count - 1 - i);
            text_ += static_cast<char>(value >> shift & 0xff);
        }
    }
    void entry(unsigned tag, unsigned type, unsigned count, unsigned value) {
        number(tag, 2);
        number(type, 2);
        number(count, 4);
        if (type == 3) {
            number(value, 2);
            number(0, 2);
        } else {
            number(value, 4);
        }
    }
    void text(std::string_view text) { text_ += text; }
    void padTo(std::size_t size) { text_.resize(size, '\0'); }
    const std::string& bytes() const { return text_; }

  private:
    std::string text_;
    bool little_;
};

/// A block of EXIF without the mark before it: IFD0 with maker and orientation, an EXIF directory
/// with size, date and a maker's note, GPS, and a preview at the end.
inline std::string exifBlock(const ExifSample& sample) {
    constexpr unsigned kInner = 100, kGps = 200, kSecond = 300;
    constexpr unsigned kMakerAt = 400, kDateAt = 450;
    constexpr unsigned kNoteAt = 500;
    constexpr unsigned kLatitudeAt = 600;
    constexpr unsigned kPreviewAt = 700;
    const auto length = [](std::string_view text) {
        return static_cast<unsigned>(text.size());
    };
    BlockWriter block(sample.little);
    block.text(sample.little ? "II" : "MM");
    block.number(42, 2);
    block.number(8, 4);
    block.number(sample.gps ? 4 : 3, 2);
    block.entry(0x010f, 2, length(sample.maker) + 1, kMakerAt);
    block.entry(0x0112, 3, 1, sample.orientation);
    block.entry(0x8769, 4, 1, kInner);
    if (sample.gps) {
        block.entry(0x8825, 4, 1, kGps);
    }
    block.number(sample.preview ? kSecond : 0, 4);
    block.padTo(kInner);
    block.number(4, 2);
    block.entry(0x9003, 2, 20, kDateAt);
    block.entry(0x927c, 7, length(sample.note), kNoteAt);
    block.entry(0xa002, 4, 1, 4000);
    block.entry(0xa003, 3, 1, 3000);
    block.number(0, 4);
    block.padTo(kGps);
    if (sample.gps) {
        block.number(1, 2);
        block.entry(2, 5, 3, kLatitudeAt);
        block.number(0, 4);
    }
    block.padTo(kSecond);
    if (sample.preview) {
        block.number(2, 2);
        block.entry(0x0201, 4, 1, kPreviewAt);
        block.entry(0x0202, 4, 1, length(kPreview));
        block.number(0, 4);
    }
    block.padTo(kMakerAt);
    block.text(sample.maker);
    block.padTo(kDateAt);
    block.text("2019:05:04 12:00:00");
    block.padTo(kNoteAt);
    block.text(sample.note);
    block.padTo(kLatitudeAt);
    for (const unsigned part : sample.gps ? std::vector<unsigned>{48, 1, 8, 1, kLatitudeMark, 1}
                                          : std::vector<unsigned>{}) {
        block.number(part, 4);
    }
    if (sample.preview) {
        block.padTo(kPreviewAt);
        block.text(kPreview);
    }
    return block.bytes();
}

}  // namespace orv::cli
