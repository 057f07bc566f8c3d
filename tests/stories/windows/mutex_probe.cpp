// mutex-probe NAME: prints "held" when some process of this session has a mutex of that name.

#include <cstdio>
#include <windows.h>

int wmain(int argc, wchar_t **argv)
{
    if (argc != 2)
        return 2;
    const HANDLE mutex = OpenMutexW(SYNCHRONIZE, FALSE, argv[1]);
    std::puts(mutex ? "held" : "free");
    return 0;
}
