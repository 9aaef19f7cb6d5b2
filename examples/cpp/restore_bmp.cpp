// restore_bmp IN.bmp OUT.bmp: takes noise out of a 24-bit BMP. A whole host program in C++17.
//
//     c++ -std=c++17 restore_bmp.cpp -o restore_bmp $(pkg-config --cflags --libs orv)
//
// Image owns a handle, Progress owns the callback, PartFile owns a file that is not whole yet:
// whatever goes wrong, nothing is leaked and OUT.bmp is the whole result or what it was before.
// Null handles become exceptions. Exit codes: 0 done, 1 failed, 2 usage.
#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <limits>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "orv/orv.h"
#include "orv/orv_constants.h"
#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

namespace {

// For noise of about 20 grey levels. Less noise asks for a lower contrast.
constexpr int kPasses = 3;
constexpr double kTimeStep = 2.0;      // pixels squared: how far a pass smooths
constexpr double kPresmoothing = 0.7;  // pixels: keeps a noisy sample from passing for an edge
constexpr double kContrast = 4.0;      // grey levels: slopes well above it are kept as edges

// A BMP is a file header, an information header and the rows, each padded to 4 bytes.
constexpr std::uint32_t kFileHeader = 14;
constexpr std::uint32_t kInfoHeader = 40;
constexpr std::uint32_t kHeaders = kFileHeader + kInfoHeader;

// What is wrong with a file, put together from texts and numbers.
class Failure : public std::runtime_error {
  public:
    template <typename... Parts>
    explicit Failure(const std::string& path, const Parts&... parts)
        : std::runtime_error(joined(path, ": ", parts...)) {}

  private:
    template <typename... Parts>
    static std::string joined(const Parts&... parts) {
        std::ostringstream text;
        (text << ... << parts);
        return text.str();
    }
};

std::string reason(int error) {
    return std::generic_category().message(error);
}

// A handle that destroys its image. Null stands for none, as in the library.
struct DestroyImage {
    void operator()(void* image) const noexcept { DestroyORVImage(image); }
};
using Image = std::unique_ptr<void, DestroyImage>;

struct Picture {
    std::array<unsigned char, kHeaders> head{};  // as in the file
    std::int32_t width = 0;
    std::int32_t height = 0;  // above 0, as the library wants it; top-down files have it below
    std::vector<unsigned char> rows;  // with padding, in the order of the file

    std::size_t rowBytes() const { return static_cast<std::size_t>(width) * 3; }
    std::size_t samples() const { return rowBytes() * static_cast<std::size_t>(height); }

    // Numbers in a BMP are little-endian on every machine, and may lie on odd addresses.
    std::uint32_t get16(std::size_t at) const { return head[at] | head[at + 1] << 8U; }
    std::uint32_t get32(std::size_t at) const { return get16(at) | get16(at + 2) << 16U; }
    std::int32_t getSigned32(std::size_t at) const {
        return static_cast<std::int32_t>(get32(at));
    }
};

void put32(unsigned char* at, std::size_t value) {
    for (int i = 0; i < 4; ++i) {
        at[i] = static_cast<unsigned char>(value >> 8 * i & 0xFF);
    }
}

// Checks the fields that tell what kind of BMP this is.
void checkKind(const std::string& path, Picture& picture) {
    const std::uint32_t infoSize = picture.get32(14);
    const std::int32_t height = picture.getSigned32(22);
    picture.width = picture.getSigned32(18);

    if (picture.head[0] != 'B' || picture.head[1] != 'M') {
        std::array<char, 6> bytes{};
        std::snprintf(bytes.data(), bytes.size(), "%02x %02x", picture.head[0],
                      picture.head[1]);
        throw Failure(path, "starts with bytes ", bytes.data(), ", a BMP with 42 4d");
    }
    if (infoSize < kInfoHeader || infoSize > 124) {  // longer ones add fields at the end
        throw Failure(path, "biSize is ", infoSize, ", not 40 to 124");
    }
    if (picture.width < 1) {
        throw Failure(path, "biWidth is ", picture.width, ", below 1");
    }
    if (height == 0 || height == std::numeric_limits<std::int32_t>::min()) {
        throw Failure(path, "biHeight is ", height, ", no number of rows");
    }
    if (picture.get16(26) != 1) {
        throw Failure(path, "biPlanes is ", picture.get16(26), ", not 1");
    }
    if (picture.get16(28) != 24) {
        throw Failure(path, "biBitCount is ", picture.get16(28), ", not 24");
    }
    if (picture.get32(30) != 0) {
        throw Failure(path, "biCompression is ", picture.get32(30), ", not 0");
    }
    picture.height = std::abs(height);
}

// Checks the fields that tell sizes against the length of the file, so that no memory is taken
// for pixels that are not there, and gives the bytes of the rows. 64 bits hold the product of
// any width and height.
std::uint64_t checkSizes(const std::string& path, const Picture& picture,
                         std::uint64_t length) {
    const std::uint32_t fileSize = picture.get32(2);
    const std::uint32_t offset = picture.get32(10);
    const std::uint32_t headersEnd = kFileHeader + picture.get32(14);
    const std::uint32_t imageSize = picture.get32(34);
    const std::uint64_t paddedRow = (static_cast<std::uint64_t>(picture.width) * 3 + 3) / 4 * 4;
    const std::uint64_t size = paddedRow * static_cast<std::uint64_t>(picture.height);

    if (length > std::numeric_limits<std::uint32_t>::max() - kHeaders) {
        throw Failure(path, "has ", length, " bytes, too many for a BMP");
    }
    if (fileSize > length) {
        throw Failure(path, "is cut short: bfSize is ", fileSize, ", the file has ", length,
                      " bytes");
    }
    if (offset < headersEnd || offset > length) {
        throw Failure(path, "bfOffBits is ", offset, ", but the headers end at ", headersEnd,
                      ", the file at ", length);
    }
    if (imageSize > length - offset) {
        throw Failure(path, "is cut short: biSizeImage is ", imageSize, ", the file has ",
                      length - offset, " bytes of rows");
    }
    if (size > length - offset) {
        throw Failure(path, "is cut short: ", picture.width, " x ", picture.height,
                      " pixels, but ", length - offset, " bytes of rows");
    }
    return size;
}

Picture readPicture(const std::string& path) {
    std::error_code error;
    const std::uint64_t length = std::filesystem::file_size(path, error);
    if (error) {
        throw Failure(path, error.message());
    }
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw Failure(path, reason(errno));
    }
    if (length < kHeaders) {
        throw Failure(path, "has ", length, " bytes, the headers of a BMP alone have ",
                      kHeaders);
    }
    const auto read = [&](auto& bytes) {
        if (!file.read(reinterpret_cast<char*>(bytes.data()),
                       static_cast<std::streamsize>(bytes.size()))) {
            throw Failure(path, "cannot be read to its end");
        }
    };
    Picture picture;
    read(picture.head);
    checkKind(path, picture);
    picture.rows.resize(static_cast<std::size_t>(checkSizes(path, picture, length)));
    file.seekg(picture.get32(10));
    read(picture.rows);
    return picture;
}

// A file under another name, which is removed unless it gets its own.
class PartFile {
  public:
    explicit PartFile(const std::string& path)
        : path_(path), part_(path + ".part"), file_(part_, std::ios::binary) {
        if (!file_) {
            throw Failure(path_, "cannot be written: ", reason(errno));
        }
    }
    ~PartFile() {
        if (!part_.empty()) {
            file_.close();
            std::error_code ignored;
            std::filesystem::remove(part_, ignored);
        }
    }
    PartFile(const PartFile&) = delete;
    PartFile& operator=(const PartFile&) = delete;

    void write(const unsigned char* bytes, std::size_t count) {
        file_.write(reinterpret_cast<const char*>(bytes), static_cast<std::streamsize>(count));
    }
    void keep() {
        file_.close();
        if (!file_) {  // so was a write before
            throw Failure(path_, "cannot be written: ", reason(errno));
        }
        std::error_code error;
        std::filesystem::rename(part_, path_, error);
        if (error) {
            throw Failure(path_, "cannot be written: ", error.message());
        }
        part_.clear();
    }

  private:
    std::string path_;
    std::string part_;
    std::ofstream file_;
};

// Writes the headers of the source and the pixels of a handle, whose rows have no padding. The
// height keeps its sign, since the library keeps the order of the rows.
void writePicture(const std::string& path, const Picture& source, const Image& image) {
    constexpr std::array<unsigned char, 3> zeros{};
    const std::size_t padding = source.rows.size() / source.height - source.rowBytes();
    auto head = source.head;
    put32(&head[2], kHeaders + source.rows.size());
    put32(&head[10], kHeaders);
    put32(&head[14], kInfoHeader);
    put32(&head[34], source.rows.size());
    put32(&head[46], 0);  // biClrUsed and biClrImportant: a palette is not copied
    put32(&head[50], 0);

    PartFile file(path);
    file.write(head.data(), head.size());
    const unsigned char* row = GetORVImageData(image.get());
    for (int y = 0; y < source.height; ++y, row += source.rowBytes()) {
        file.write(row, source.rowBytes());
        file.write(zeros.data(), padding);
    }
    file.keep();
}

// Shows progress while it lives: a bar on a terminal, plain lines in a log. The library knows
// one callback without data of the host's, so there is one Progress at a time.
class Progress {
  public:
    Progress() { running_ = this; }
    ~Progress() {
        SetORVCallBack(nullptr);
        running_ = nullptr;
        if (live_ && shown_ > 0) {
            std::fputc('\n', stderr);
        }
    }
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void begin(int pass) {
        pass_ = pass;
        // Operations narrow the range of their reports and leave it so: set it back each time.
        SetORVCallBack(report);
    }
    // Reports may end before 100: the return of the call is the end.
    void end() { show(100); }

  private:
    // No exception may pass through the library, which is plain C to its caller.
    static void ORV_CALLBACK report(int percent) noexcept { running_->show(percent); }

    void show(int percent) noexcept {
        // Values may repeat, fall and pass 100.
        const int total = (100 * pass_ + std::clamp(percent, 0, 100)) / kPasses;
        if (total <= shown_) {
            return;
        }
        if (live_) {
            constexpr int width = 40;
            std::array<char, width + 1> bar{};
            std::fill_n(bar.begin(), width, '-');
            std::fill_n(bar.begin(), width * total / 100, '#');
            std::fprintf(stderr, "\rrestoring [%s] %3d %%", bar.data(), total);
        } else if (total / 25 > shown_ / 25) {
            std::fprintf(stderr, "restoring: %d %%\n", total / 25 * 25);
        }
        shown_ = total;
    }

    static inline Progress* running_ = nullptr;
#ifdef _WIN32
    const bool live_ = _isatty(_fileno(stderr)) != 0;
#else
    const bool live_ = isatty(STDERR_FILENO) != 0;
#endif
    int pass_ = 0;
    int shown_ = 0;  // percent of all passes
};

Image convert(const std::string& path, const Picture& picture) {
    BITMAPINFOHEADER header{};
    header.biSize = sizeof header;
    header.biWidth = picture.width;
    header.biHeight = picture.height;
    header.biPlanes = 1;
    header.biBitCount = 24;
    Image image(ConvertORVImage(&header, picture.rows.data()));
    if (!image) {
        throw Failure(path, "the library has no memory for ", picture.width, " x ",
                      picture.height, " pixels");
    }
    return image;
}

// Each pass works on the result of the one before, whose handle goes when the next is there.
Image restore(const std::string& path, const Image& photo) {
    Progress progress;
    Image result;
    for (int pass = 0; pass < kPasses; ++pass) {
        progress.begin(pass);
        Image next(ORVFastRestoration(
            pass == 0 ? photo.get() : result.get(), ORV_SCHEME_AOS, ORV_SOLVER_THOMAS,
            /*iterations=*/1, kTimeStep, /*solverIterations=*/0, kPresmoothing, kContrast,
            ORV_FLOW_PERONA_MALIK, ORV_GRADIENT_NORM_CENTRAL, /*cflSubsteps=*/0));
        if (!next) {
            throw Failure(path, "the library has no memory for pass ", pass + 1);
        }
        progress.end();
        result = std::move(next);
    }
    return result;
}

// Prints how far the samples of the result are from those of the photo.
void compare(const std::string& path, const Image& photo, const Image& result,
             std::size_t samples) {
    const unsigned char* before = GetORVImageData(photo.get());
    const unsigned char* after = GetORVImageData(result.get());
    std::uint64_t sum = 0;
    std::size_t changed = 0;
    int largest = 0;
    for (std::size_t i = 0; i < samples; ++i) {
        const int difference = std::abs(before[i] - after[i]);
        sum += static_cast<std::uint64_t>(difference);
        changed += difference != 0;
        largest = std::max(largest, difference);
    }
    std::printf(
        "%s: %zu of %zu samples changed, mean difference %.2f grey levels, largest %d\n",
        path.c_str(), changed, samples, static_cast<double>(sum) / static_cast<double>(samples),
        largest);
}

void run(const std::string& input, const std::string& output) {
    const Picture picture = readPicture(input);
    std::printf("%s: %d x %d pixels\n", input.c_str(), picture.width, picture.height);
    std::fflush(stdout);  // before the progress, which goes to another stream
    const Image photo = convert(input, picture);
    const Image result = restore(input, photo);
    writePicture(output, picture, result);
    compare(output, photo, result, picture.samples());
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: restore_bmp IN.bmp OUT.bmp\n");
        return 2;
    }
    try {
        run(argv[1], argv[2]);
        return 0;
    } catch (const std::bad_alloc&) {
        std::fprintf(stderr, "restore_bmp: %s: no memory\n", argv[1]);
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "restore_bmp: %s\n", failure.what());
    }
    return 1;
}
