#include "files/exif_block.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace orv::cli {

namespace {

using std::string_view_literals::operator""sv;

constexpr unsigned kWidth = 0x0100;
constexpr unsigned kHeight = 0x0101;
constexpr unsigned kMaker = 0x010f;
constexpr unsigned kModel = 0x0110;
constexpr unsigned kOrientation = 0x0112;
constexpr unsigned kPreviewAt = 0x0201;
constexpr unsigned kPreviewBytes = 0x0202;
constexpr unsigned kExifFolder = 0x8769;
constexpr unsigned kGpsFolder = 0x8825;
constexpr unsigned kTaken = 0x9003;
constexpr unsigned kPixelWidth = 0xa002;
constexpr unsigned kPixelHeight = 0xa003;
constexpr unsigned kGpsLatitude = 2;
constexpr unsigned kGpsLongitude = 4;

constexpr std::size_t kEntryBytes = 12;
constexpr std::size_t kNowhere = SIZE_MAX;
constexpr std::size_t kMostLetters = 80;

/// Bytes of one value of each type, from type 1.
constexpr std::array<std::size_t, 12> kTypeBytes{1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8};
constexpr unsigned kShort = 3;

/// A directory: where its entries begin, and how many there are.
struct Directory {
    std::size_t at = kNowhere;
    std::size_t count = 0;

    std::size_t entry(std::size_t i) const { return at + i * kEntryBytes; }
    /// Where the offset of the next directory stands.
    std::size_t next() const { return entry(count); }
};

/// A block as TIFF lays it out; reads outside of it give 0, writes outside do nothing.
class Block {
  public:
    explicit Block(std::string_view bytes) : bytes_(bytes) {
        const std::string_view start = std::string_view(bytes_).substr(0, 4);
        little_ = start == "II*\0"sv;
        sound_ = little_ || start == "MM\0*"sv;
        sound_ = sound_ && first().at != kNowhere;
    }

    /// Whether it begins as a block must.
    bool sound() const { return sound_; }

    std::size_t number(std::size_t at, std::size_t count) const {
        if (at > bytes_.size() || bytes_.size() - at < count) {
            return 0;
        }
        std::size_t value = 0;
        for (std::size_t i = 0; i < count; ++i) {
            const std::size_t place = little_ ? at + count - 1 - i : at + i;
            value = value << 8 | static_cast<unsigned char>(bytes_[place]);
        }
        return value;
    }

    void setNumber(std::size_t at, std::size_t count, std::size_t value) {
        if (at > bytes_.size() || bytes_.size() - at < count) {
            return;
        }
        for (std::size_t i = 0; i < count; ++i, value >>= 8) {
            bytes_[little_ ? at + i : at + count - 1 - i] = static_cast<char>(value & 0xff);
        }
    }

    void clear(std::size_t at, std::size_t count) {
        if (at < bytes_.size()) {
            std::fill_n(bytes_.begin() + static_cast<std::ptrdiff_t>(at),
                        std::min(count, bytes_.size() - at), '\0');
        }
    }

    /// The directory at an offset; nowhere when it isn't whole.
    Directory directory(std::size_t offset) const {
        Directory found;
        const std::size_t count = number(offset, 2);
        const std::size_t end = offset + 2 + count * kEntryBytes + 4;
        if (offset >= 8 && count > 0 && end <= bytes_.size() + 4) {
            found.at = offset + 2;
            found.count = count;
        }
        return found;
    }

    Directory first() const { return directory(number(4, 4)); }

    /// Where the entry of a tag is; nowhere when there is none.
    std::size_t find(const Directory& directory, unsigned tag) const {
        for (std::size_t i = 0; directory.at != kNowhere && i < directory.count; ++i) {
            if (number(directory.entry(i), 2) == tag) {
                return directory.entry(i);
            }
        }
        return kNowhere;
    }

    /// The directory that an entry of another points at.
    Directory inner(const Directory& directory_, unsigned tag) const {
        const std::size_t entry = find(directory_, tag);
        return entry == kNowhere ? Directory() : directory(number(entry + 8, 4));
    }

    /// The bytes of an entry's values, and where they are.
    std::size_t valueBytes(std::size_t entry) const {
        const std::size_t type = number(entry + 2, 2);
        const bool known = type >= 1 && type <= kTypeBytes.size();
        return known ? kTypeBytes[type - 1] * number(entry + 4, 4) : 0;
    }
    std::size_t valueAt(std::size_t entry) const {
        return valueBytes(entry) <= 4 ? entry + 8 : number(entry + 8, 4);
    }

    std::size_t value(const Directory& directory_, unsigned tag) const {
        const std::size_t entry = find(directory_, tag);
        return entry == kNowhere ? 0
                                 : number(entry + 8, number(entry + 2, 2) == kShort ? 2 : 4);
    }

    void setValue(const Directory& directory_, unsigned tag, std::size_t value) {
        const std::size_t entry = find(directory_, tag);
        if (entry == kNowhere || number(entry + 4, 4) != 1) {
            return;
        }
        setNumber(entry + 8, number(entry + 2, 2) == kShort ? 2 : 4, value);
    }

    std::string text(const Directory& directory_, unsigned tag) const {
        const std::size_t entry = find(directory_, tag);
        if (entry == kNowhere || valueAt(entry) >= bytes_.size()) {
            return {};
        }
        std::string found =
            bytes_.substr(valueAt(entry), std::min(valueBytes(entry), kMostLetters));
        found.resize(std::min(found.find('\0'), found.size()));
        found.erase(found.find_last_not_of(' ') + 1);
        return found;
    }

    /// Overwrites a directory and its values with zeros.
    void clearDirectory(const Directory& directory_) {
        for (std::size_t i = 0; directory_.at != kNowhere && i < directory_.count; ++i) {
            const std::size_t entry = directory_.entry(i);
            clear(valueAt(entry), valueBytes(entry));
        }
        if (directory_.at != kNowhere) {
            clear(directory_.at - 2, 2 + directory_.count * kEntryBytes);
        }
    }

    /// Takes an entry out of a directory; what follows moves up.
    void removeEntry(Directory directory_, std::size_t entry) {
        const std::size_t end = directory_.next() + 4;
        for (std::size_t at = entry; at + kEntryBytes < end; ++at) {
            bytes_[at] = at + kEntryBytes < bytes_.size() ? bytes_[at + kEntryBytes] : '\0';
        }
        clear(end - kEntryBytes, kEntryBytes);
        setNumber(directory_.at - 2, 2, directory_.count - 1);
    }

    void cut(std::size_t size) { bytes_.resize(std::min(size, bytes_.size())); }
    std::size_t size() const { return bytes_.size(); }
    const std::string& bytes() const { return bytes_; }

  private:
    std::string bytes_;
    bool little_ = true;
    bool sound_ = false;
};

std::string_view withoutMark(std::string_view block) {
    constexpr std::string_view kMark = "Exif\0\0"sv;
    return block.substr(0, kMark.size()) == kMark ? block.substr(kMark.size()) : block;
}

void removePreview(Block& block) {
    const Directory first = block.first();
    const Directory second = block.directory(block.number(first.next(), 4));
    if (second.at == kNowhere) {
        return;
    }
    const std::size_t at = block.value(second, kPreviewAt);
    const std::size_t bytes = block.value(second, kPreviewBytes);
    block.clearDirectory(second);
    block.setNumber(first.next(), 4, 0);
    if (at < 8 || at >= block.size()) {
        return;
    }
    block.clear(at, bytes);
    // Previews stand last as a rule; nothing then points at where they were.
    if (at + bytes >= block.size() && at > first.next() + 4) {
        block.cut(at);
    }
}

void removeGps(Block& block) {
    const Directory first = block.first();
    const std::size_t entry = block.find(first, kGpsFolder);
    if (entry != kNowhere) {
        block.clearDirectory(block.inner(first, kGpsFolder));
        block.removeEntry(first, entry);
    }
}

}  // namespace

ExifFacts exifFacts(std::string_view bytes) {
    ExifFacts facts;
    const Block block(withoutMark(bytes));
    if (!block.sound()) {
        return facts;
    }
    const Directory first = block.first();
    const std::size_t orientation = block.value(first, kOrientation);
    facts.orientation =
        orientation >= 1 && orientation <= 8 ? static_cast<int>(orientation) : 1;
    const Directory gps = block.inner(first, kGpsFolder);
    facts.gps =
        block.find(gps, kGpsLatitude) != kNowhere || block.find(gps, kGpsLongitude) != kNowhere;
    facts.maker = block.text(first, kMaker);
    facts.model = block.text(first, kModel);
    facts.taken = block.text(block.inner(first, kExifFolder), kTaken);
    return facts;
}

std::string exifForResult(std::string_view bytes, int width, int height, bool withoutGps) {
    Block block(withoutMark(bytes));
    if (!block.sound()) {
        return {};
    }
    removePreview(block);
    if (withoutGps) {
        removeGps(block);
    }
    const Directory first = block.first();
    const Directory inner = block.inner(first, kExifFolder);
    block.setValue(first, kOrientation, 1);
    for (const unsigned tag : {kWidth, kPixelWidth}) {
        block.setValue(tag == kWidth ? first : inner, tag, static_cast<std::size_t>(width));
    }
    for (const unsigned tag : {kHeight, kPixelHeight}) {
        block.setValue(tag == kHeight ? first : inner, tag, static_cast<std::size_t>(height));
    }
    return block.bytes();
}

}  // namespace orv::cli
