#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "files/file_format.h"
#include "files/picture_source.h"
#include "methods/interleaved_planes.h"

namespace orv::cli {

/// A picture as a file holds it.
struct Picture {
    InterleavedSamples samples;
    int colours = 3;     ///< 1 or 3 channels of colour; a further one is alpha
    bool alpha = false;  ///< whether the last channel is alpha, which stays untouched
    std::shared_ptr<void> metadata;     ///< colour profile, EXIF and the like; null when none
    std::vector<std::string> warnings;  ///< what got lost on the way, a line each
};

/// What the head of a file tells about its picture.
struct PictureHeader {
    Format format = Format::Unknown;
    int width = 0;  ///< of the upright picture, as is the height
    int height = 0;
    int channels = 0;  ///< as readPicture() would give them: CMYK comes as RGB
    int colours = 0;
    bool alpha = false;
    SampleDepth depth = SampleDepth::Bits8;
    int orientation = 1;  ///< of EXIF, 1 to 8; 1 is upright
    int pages = 1;
    double fileBytes = 0.0;
    double dotsPerInch = 0.0;  ///< 0 when the file tells none
    std::string profile;       ///< what the colour profile calls itself; empty: there is none
    std::string camera;        ///< maker and model
    std::string taken;         ///< date and time as EXIF writes them
    bool exif = false;
    bool gps = false;  ///< whether EXIF or XMP tells a place
    bool xmp = false;
    bool iptc = false;
    bool cmyk = false;
    bool palette = false;
    std::string refusal;  ///< why readPicture() won't take it, without the name; empty: it will
};

/// Which metadata stay out of the result.
///
/// The colour profile always stays: without it the colours would be others. Orientation is
/// applied to the samples whatever is left out.
enum class Strip {
    None,
    Gps,   ///< the place in EXIF, and packets of XMP, IPTC or text that tell one
    Exif,  ///< EXIF, XMP, IPTC
    All    ///< all but colour profile and resolution
};

/// How to write a picture.
struct WriteSettings {
    const FormatEntry* format = nullptr;  ///< not null where a picture is written
    std::string ending;                   ///< with its dot; ".pgm" and ".ppm" differ
    int quality = kUsualQuality;  ///< 1 to 100, of JPEG and WebP; a WebP of 100 is lossless
    Strip strip = Strip::None;

    static constexpr int kUsualQuality = 92;
};

/// The most pixels of a picture; work memory is about 36 bytes a pixel.
inline constexpr double kMostPixels = 268435456.0;

/// Whether a library reads and writes PNG, JPEG and TIFF for this build: libvips, or the Windows
/// Imaging Component. Without either there are BMP, PPM and PGM.
bool haveLibrary();

/// The name of that library, with its version where it tells one, or an empty text.
std::string libraryVersion();

/// Whether this build reads and writes a format. WebP is for libvips alone.
bool isCoded(const FormatEntry& format);

/// What --strip takes: "none", "gps", "exif" or "all".
///
/// Fails:   false for any other word.
bool stripOfWord(std::string_view word, Strip& strip);

/// "451 x 300 pixels, 8-bit colour with alpha"
std::string pictureKind(const Picture& picture);

/// Reads what the head of a file tells; no samples are decoded.
///
/// Fails:   with one line that begins with the name: can't be read, no known format, damaged.
///          A sound file that readPicture() would refuse is a success with a refusal in the
///          header. An empty text means success.
std::string readHeader(const PictureSource& source, PictureHeader& header);

/// openSource() and readHeader() in one.
///
/// Fails:   as these do, and with the refusal of the header.
std::string openPicture(const std::string& word, PictureSource& source, PictureHeader& header);

/// Reads a picture.
///
/// A picture that is stored turned, by its EXIF orientation, comes upright.
///
/// Fails:   with one line that begins with the name: no such file, no known format, damaged,
///          cut short, too large, channels that are no grey or RGB. An empty text means success.
std::string readPicture(const PictureSource& source, Picture& picture);

/// openSource() and readPicture() in one.
std::string readPicture(const std::string& path, Picture& picture);

/// What forbids writing this picture with these settings, as one line that begins with `name`;
/// empty when nothing does.
std::string writeRefusal(const std::string& name, const WriteSettings& settings,
                         const Picture& picture);

/// Encodes a picture. The same picture and settings give the same bytes.
///
/// A colour profile that the picture or the format can't hold is left out, with a warning in the
/// picture.
///
/// Fails:   with a reason without a name; an empty text means success.
std::string encodePicture(const WriteSettings& settings, Picture& picture,
                          std::vector<unsigned char>& bytes);

/// Encodes a picture and writes it to `path`, which may have any ending.
///
/// Fails:   with a reason without the path; an empty text means success.
std::string writePicture(const std::string& path, const WriteSettings& settings,
                         Picture& picture);

/// Scales a picture down so that its longer side has `maxSide` pixels; a smaller one stays.
///
/// Averages are taken over sample values as stored, weighted by alpha, as is usual for photos:
/// no profile is needed and dark print on white keeps its weight.
///
/// Fails:   with a reason without a name, so where there is no library. An empty text means
///          success.
/// Cost:    a Lanczos filter of three lobes along both sides.
std::string scaleDown(Picture& picture, int maxSide);

/// Leaves alpha out. Colours stay as they are stored, those of clear pixels too.
void dropAlpha(Picture& picture);

}  // namespace orv::cli
