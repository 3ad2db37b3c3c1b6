/// \file
/// The entry point of the library file: loading does nothing, the host calls the entry functions itself.
#include "platform/gdi.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD, LPVOID);

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD, LPVOID) {
    return TRUE;
}
