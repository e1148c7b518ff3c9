#include <windows.h>

#include <array>
#include <cstdio>
#include <string>

#include "CrashHandler.hpp"

namespace port::platform {

bool gAutomatedRun = false;

namespace {

// The handler may not allocate, and a stack that has overflowed has no room for long names.
std::array<wchar_t, 32768> gCrashLogPath;
std::array<wchar_t, 32768> gModuleName;
std::array<char, 32768> gModuleUtf8;

struct Fault {
    const char* module = "?";
    unsigned long long offset = 0;
};

Fault locate(const void* address) {
    Fault fault;
    MEMORY_BASIC_INFORMATION memory;
    if (!VirtualQuery(address, &memory, sizeof(memory)) || !memory.AllocationBase) return fault;
    fault.offset =
        reinterpret_cast<ULONG_PTR>(address) - reinterpret_cast<ULONG_PTR>(memory.AllocationBase);
    const DWORD length =
        GetModuleFileNameW(static_cast<HMODULE>(memory.AllocationBase), gModuleName.data(),
                           static_cast<DWORD>(gModuleName.size()));
    if (length == 0 || length >= gModuleName.size()) return fault;
    if (WideCharToMultiByte(CP_UTF8, 0, gModuleName.data(), -1, gModuleUtf8.data(),
                            static_cast<int>(gModuleUtf8.size()), nullptr, nullptr) > 0) {
        fault.module = gModuleUtf8.data();
    }
    return fault;
}

LONG WINAPI portUnhandledException(EXCEPTION_POINTERS* exception) {
    const HANDLE file =
        CreateFileW(gCrashLogPath.data(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE,
                    nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file != INVALID_HANDLE_VALUE) {
        const EXCEPTION_RECORD& record = *exception->ExceptionRecord;
        const Fault fault = locate(record.ExceptionAddress);
        std::array<char, 512> line;
        // Two bytes stay free for the line's end, which a long module name must not push out.
        constexpr std::size_t kRoom = line.size() - 2;
        int length = std::snprintf(
            line.data(), kRoom, "UNHANDLED SEH code=0x%08lX address=%p module=%s offset=0x%llX",
            record.ExceptionCode, record.ExceptionAddress, fault.module, fault.offset);
        if (length < 0) length = 0;
        std::size_t size = static_cast<std::size_t>(length);
        if (size > kRoom - 1) size = kRoom - 1;
        line[size++] = '\r';
        line[size++] = '\n';
        DWORD written = 0;
        WriteFile(file, line.data(), static_cast<DWORD>(size), &written, nullptr);
        FlushFileBuffers(file);
        CloseHandle(file);
    }
    if (!gAutomatedRun) {
        MessageBoxW(nullptr,
                    L"O port encontrou uma falha fatal de baixo nivel.\n\n"
                    L"Veja runtime-crash.log na pasta do jogo.",
                    L"Tindrel Port - crash", MB_OK | MB_ICONERROR | MB_SETFOREGROUND);
    }
    return EXCEPTION_EXECUTE_HANDLER;
}

}  // namespace

void installCrashHandler(const std::filesystem::path& crashLog) {
    const std::wstring path = crashLog.wstring();
    const std::size_t length = path.copy(gCrashLogPath.data(), gCrashLogPath.size() - 1);
    gCrashLogPath[length] = L'\0';
    // What is left of the game's stack when it has overflowed, for the line and the box.
    ULONG room = 64 * 1024;
    SetThreadStackGuarantee(&room);
    SetUnhandledExceptionFilter(portUnhandledException);
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX);
}

}  // namespace port::platform
