// high_contrast PROGRAM: runs a program of 64 bits that is told, when it asks, that the user has
// turned on a high-contrast scheme. Wine itself always answers that there is none. The program's
// import of SystemParametersInfoW is replaced before its first instruction.

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <windows.h>

namespace {

using Code = std::array<std::uint8_t, 36>;

// BOOL (UINT action, UINT size, void *data, UINT), as x64 passes them. Other sizes fail, as they do
// on Windows: Qt asks with room for a BOOL.
Code answering(std::uintptr_t original)
{
    // clang-format off
    Code code{0x83, 0xF9, SPI_GETHIGHCONTRAST,                    // cmp ecx, action
              0x75, 19,                                           // jne others
              0x83, 0xFA, sizeof(HIGHCONTRASTW),                  // cmp edx, size
              0x75, 14,                                           // jne others
              0x41, 0xC7, 0x40, offsetof(HIGHCONTRASTW, dwFlags), // mov dword [r8 + flags],
              HCF_HIGHCONTRASTON, 0, 0, 0,                        //     on
              0xB8, TRUE, 0, 0, 0,                                // mov eax, TRUE
              0xC3,                                               // ret
              0x48, 0xB8, 0, 0, 0, 0, 0, 0, 0, 0,                 // others: mov rax, original
              0xFF, 0xE0};                                        // jmp rax
    // clang-format on
    std::memcpy(code.data() + 26, &original, sizeof original);
    return code;
}

template<typename Value>
Value read(HANDLE process, std::uintptr_t at)
{
    Value value{};
    ReadProcessMemory(process, reinterpret_cast<void *>(at), &value, sizeof value, nullptr);
    return value;
}

bool replaceImport(HANDLE process, std::uintptr_t image)
{
    const HMODULE user32 = LoadLibraryW(L"user32.dll"); // at the same address in every process
    const auto original =
        reinterpret_cast<std::uintptr_t>(GetProcAddress(user32, "SystemParametersInfoW"));
    const auto dos = read<IMAGE_DOS_HEADER>(process, image);
    const auto headers = read<IMAGE_NT_HEADERS64>(process, image + dos.e_lfanew);
    const auto table = headers.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IAT];
    for (DWORD at = 0; at < table.Size; at += sizeof original) {
        const std::uintptr_t slot = image + table.VirtualAddress + at;
        if (read<std::uintptr_t>(process, slot) != original)
            continue;
        const Code code = answering(original);
        void *const place =
            VirtualAllocEx(process, nullptr, code.size(), MEM_COMMIT, PAGE_EXECUTE_READWRITE);
        DWORD before = 0;
        return place && WriteProcessMemory(process, place, code.data(), code.size(), nullptr) &&
               VirtualProtectEx(process, reinterpret_cast<void *>(slot), sizeof place,
                                PAGE_READWRITE, &before) &&
               WriteProcessMemory(process, reinterpret_cast<void *>(slot), &place, sizeof place,
                                  nullptr);
    }
    return false;
}

} // namespace

int wmain(int argc, wchar_t **argv)
{
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION made = {};
    if (argc != 2 || !CreateProcessW(argv[1], nullptr, nullptr, nullptr, FALSE,
                                     DEBUG_ONLY_THIS_PROCESS, nullptr, nullptr, &startup, &made))
        return 2;
    std::uintptr_t image = 0;
    for (bool isLoaded = false; !isLoaded;) {
        DEBUG_EVENT event;
        WaitForDebugEvent(&event, INFINITE);
        if (event.dwDebugEventCode == CREATE_PROCESS_DEBUG_EVENT)
            image = reinterpret_cast<std::uintptr_t>(event.u.CreateProcessInfo.lpBaseOfImage);
        // The loader's breakpoint: imports are there, and nothing of the program has run.
        isLoaded = event.dwDebugEventCode == EXCEPTION_DEBUG_EVENT;
        if (isLoaded && !replaceImport(made.hProcess, image))
            TerminateProcess(made.hProcess, 3);
        ContinueDebugEvent(event.dwProcessId, event.dwThreadId, DBG_CONTINUE);
    }
    DebugSetProcessKillOnExit(FALSE);
    DebugActiveProcessStop(made.dwProcessId);
    WaitForSingleObject(made.hProcess, INFINITE);
    DWORD exitCode = 0;
    GetExitCodeProcess(made.hProcess, &exitCode);
    return static_cast<int>(exitCode);
}
