#include "case_values.h"

#include <algorithm>

#include "text_parts.h"

namespace golden {

namespace {

// Only three fields of a header are read, so the others hold what would mislead.
BITMAPINFOHEADER headerOf(const Picture& picture) {
    BITMAPINFOHEADER header = {};
    header.biSize = 40;
    header.biWidth = picture.width;
    header.biHeight = picture.height;
    header.biPlanes = 3;
    header.biBitCount = 24;
    header.biCompression = 1;
    header.biSizeImage = 1;
    return header;
}

}  // namespace

CaseValues::CaseValues(const Library& library, const std::string& arguments,
                       const std::string& pictures)
    : library_(library), arguments_(words(arguments)), pictures_(words(pictures)) {}

CaseValues::~CaseValues() {
    for (const Slot& slot : slots_) {
        library_.destroy(slot.handle);
    }
}

void CaseValues::restart() {
    nextArgument_ = 0;
    nextPicture_ = 0;
}

bool CaseValues::complete() const {
    return understood_ && nextArgument_ == arguments_.size() &&
           nextPicture_ == pictures_.size();
}

const std::string& CaseValues::nextWord() {
    if (nextArgument_ == arguments_.size()) {
        understood_ = false;
        return noWord_;
    }
    return arguments_[nextArgument_++];
}

int CaseValues::nextInt() {
    int value = 0;
    understood_ = readInt(nextWord(), value) && understood_;
    return value;
}

double CaseValues::nextDecimal() {
    double value = 0.0;
    understood_ = readDecimal(nextWord(), value) && understood_;
    return value;
}

bool CaseValues::nextFlag() {
    const std::string& word = nextWord();
    understood_ = (word == "true" || word == "false") && understood_;
    return word == "true";
}

const char* CaseValues::nextKeyword() {
    const std::string& word = nextWord();
    if (word == "''") {
        return "";
    }
    return word == "null" ? nullptr : word.c_str();
}

const Picture& CaseValues::nextBitmap() {
    slots_.emplace_back();
    Picture& picture = slots_.back().picture;
    understood_ = nextPicture_ < pictures_.size() &&
                  drawPicture(pictures_[nextPicture_++], picture) && understood_;
    return picture;
}

void* CaseValues::nextHandle() {
    if (nextPicture_ >= pictures_.size()) {
        understood_ = false;
        return nullptr;
    }
    const std::size_t number = nextPicture_++;
    const std::string& word = pictures_[number];
    const bool known = number < slots_.size();
    if (!known) {
        slots_.emplace_back();
    }
    if (word == "first") {
        return slots_.front().handle;
    }
    Slot& slot = slots_[number];
    if (known || word == "null") {
        return slot.handle;
    }
    understood_ = drawPicture(word, slot.picture) && understood_;
    const BITMAPINFOHEADER header = headerOf(slot.picture);
    slot.handle = understood_ ? library_.convert(&header, slot.picture.rows.data()) : nullptr;
    understood_ = understood_ && slot.handle != nullptr;
    return slot.handle;
}

bool CaseValues::picturesUntouched() const {
    for (const Slot& slot : slots_) {
        const std::vector<unsigned char> drawn = slot.picture.packed();
        if (slot.handle != nullptr &&
            !std::equal(drawn.begin(), drawn.end(), library_.data(slot.handle))) {
            return false;
        }
    }
    return true;
}

bool CaseValues::isPicture(const void* handle) const {
    return handle != nullptr &&
           std::any_of(slots_.begin(), slots_.end(),
                       [handle](const Slot& slot) { return slot.handle == handle; });
}

}  // namespace golden
