#pragma once

#include <deque>
#include <string>
#include <type_traits>
#include <vector>

#include "library.h"
#include "pictures.h"

namespace golden {

/// What a case passes to its export, handed out in order.
///
/// Pictures become handles of the library as they are asked for. Word of a picture: a recipe,
/// "null" for the null handle, "first" for the handle of the first picture once more. Word of a
/// keyword: itself, "null" for a null pointer, "''" for no letters.
class CaseValues {
  public:
    CaseValues(const Library& library, const std::string& arguments,
               const std::string& pictures);
    ~CaseValues();
    CaseValues(const CaseValues&) = delete;
    CaseValues& operator=(const CaseValues&) = delete;

    /// The next argument, or the next handle for void*.
    template <class Type>
    Type next() {
        if constexpr (std::is_same_v<Type, void*>) {
            return nextHandle();
        } else if constexpr (std::is_same_v<Type, int>) {
            return nextInt();
        } else if constexpr (std::is_same_v<Type, double>) {
            return nextDecimal();
        } else if constexpr (std::is_same_v<Type, bool>) {
            return nextFlag();
        } else {
            static_assert(std::is_same_v<Type, const char*>, "no other type crosses");
            return nextKeyword();
        }
    }

    /// The next picture as a bitmap of the host, not as a handle.
    const Picture& nextBitmap();

    /// Goes back to the first argument and the first picture, whose handles stay.
    void restart();

    /// Whether every word was understood and used up.
    bool complete() const;

    /// Whether the pixels of all handles are still those that were drawn.
    bool picturesUntouched() const;

    /// Whether it is the handle of a picture.
    bool isPicture(const void* handle) const;

  private:
    struct Slot {
        Picture picture;
        void* handle = nullptr;
    };

    void* nextHandle();
    int nextInt();
    double nextDecimal();
    bool nextFlag();
    const char* nextKeyword();
    const std::string& nextWord();

    const Library& library_;
    std::string noWord_;
    std::vector<std::string> arguments_;
    std::vector<std::string> pictures_;
    std::size_t nextArgument_ = 0;
    std::size_t nextPicture_ = 0;
    std::deque<Slot> slots_;
    bool understood_ = true;
};

}  // namespace golden
