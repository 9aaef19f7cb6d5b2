#ifdef _WIN32

#include <windows.h>

// Loading runs nothing: the entry point reports success and does no more.
extern "C" BOOL WINAPI DllMain(HINSTANCE /*module*/, DWORD /*reason*/, LPVOID /*reserved*/) {
    return TRUE;
}

#endif
