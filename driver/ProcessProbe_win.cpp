#include "ProcessProbe.h"

#include <QtCore/QDir>

#include <windows.h>

#include <tlhelp32.h>

namespace driver {

bool isInMemory(const QString &library)
{
    const QString path = QDir::toNativeSeparators(library);
    return GetModuleHandleW(reinterpret_cast<LPCWSTR>(path.utf16())) != nullptr;
}

std::optional<int> threadCount()
{
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    if (snapshot == INVALID_HANDLE_VALUE)
        return std::nullopt;
    int count = 0;
    THREADENTRY32 entry = {};
    entry.dwSize = sizeof entry;
    for (BOOL more = Thread32First(snapshot, &entry); more; more = Thread32Next(snapshot, &entry)) {
        if (entry.th32OwnerProcessID == GetCurrentProcessId())
            ++count;
    }
    CloseHandle(snapshot);
    return count;
}

std::optional<QStringList> openFiles()
{
    return std::nullopt;
}

std::optional<qint64> allocatedBytes()
{
    return std::nullopt;
}

std::optional<qint64> processorTime(qint64 processId)
{
    const HANDLE process =
        OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, static_cast<DWORD>(processId));
    FILETIME created = {};
    FILETIME ended = {};
    FILETIME inKernel = {};
    FILETIME inProgram = {};
    const bool known = GetProcessTimes(process, &created, &ended, &inKernel, &inProgram);
    CloseHandle(process);
    const auto milliseconds = [](const FILETIME &time) {
        return ((qint64(time.dwHighDateTime) << 32) + time.dwLowDateTime) / 10'000;
    };
    return known ? std::optional(milliseconds(inKernel) + milliseconds(inProgram)) : std::nullopt;
}

QString describeCrash(int exitCode)
{
    return QStringLiteral("exception 0x") + QString::number(uint(exitCode), 16);
}

QProcessEnvironment childEnvironment(const QString &folder)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *variable : {"TEMP", "TMP"})
        environment.insert(QLatin1String(variable), QDir::toNativeSeparators(folder));
    return environment;
}

} // namespace driver
