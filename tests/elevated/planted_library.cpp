// A library under a name that the program may look for: says in the file that the environment
// variable PLANTED_RECORD names where it was loaded from.

#include <cstdio>
#include <cstdlib>
#include <windows.h>

BOOL WINAPI DllMain(HINSTANCE library, DWORD reason, LPVOID /*reserved*/)
{
    const char *record = std::getenv("PLANTED_RECORD");
    if (reason != DLL_PROCESS_ATTACH || !record)
        return TRUE;
    char path[MAX_PATH] = {};
    GetModuleFileNameA(library, path, MAX_PATH);
    if (std::FILE *file = std::fopen(record, "a")) {
        std::fprintf(file, "%s\n", path);
        std::fclose(file);
    }
    return TRUE;
}
