// Compiles only when the C functions and the callback have the calling conventions that hosts
// expect. On 64-bit Windows there is but one; on 32-bit Windows a wrong one breaks the stack.
#include <type_traits>

#include "orv/orv.h"

static_assert(std::is_same_v<ORVCallBack, void(__stdcall*)(int)>);
static_assert(std::is_same_v<decltype(&SetORVCallBack), void(__cdecl*)(void(__stdcall*)(int))>);
static_assert(
    std::is_same_v<decltype(&ORVRetinex), void*(__cdecl*)(void*, double, double, double, int)>);
static_assert(sizeof(void (*)()) == 8 ||
              !std::is_same_v<void(__stdcall*)(int), void(__cdecl*)(int)>);
