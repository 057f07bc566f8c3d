// force_session_end TITLE: tells the windows of that title that the user's session ends, whatever
// they answer, as a forced shutdown does. Wine's own log-off obeys the answers.

#include <windows.h>

int wmain(int argc, wchar_t **argv)
{
    if (argc != 2)
        return 2;
    const HWND window = FindWindowW(nullptr, argv[1]);
    if (!window)
        return 1;
    SendMessageW(window, WM_QUERYENDSESSION, 0, 0);
    SendMessageW(window, WM_ENDSESSION, TRUE, 0);
    return 0;
}
