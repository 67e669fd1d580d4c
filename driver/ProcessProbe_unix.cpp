#include "ProcessProbe.h"

#include <QtCore/QDir>
#include <QtCore/QFile>

#include <csignal>
#include <cstring>

#include <dlfcn.h>
#include <malloc.h>
#include <unistd.h>

namespace driver {

namespace {

QProcessEnvironment fixedEnvironment(const QString &folder)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *variable : {"HOME", "TMPDIR", "XDG_CONFIG_HOME", "XDG_CACHE_HOME",
                                 "XDG_DATA_HOME", "XDG_RUNTIME_DIR"})
        environment.insert(QLatin1String(variable), folder);
    environment.insert(QStringLiteral("TZ"), QStringLiteral("Europe/Berlin"));
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("en_US.UTF-8"));
    return environment;
}

} // namespace

bool isInMemory(const QString &library)
{
    void *const handle = dlopen(QFile::encodeName(library).constData(), RTLD_NOW | RTLD_NOLOAD);
    if (handle)
        dlclose(handle);
    return handle != nullptr;
}

std::optional<int> threadCount()
{
    const QDir tasks(QStringLiteral("/proc/self/task"));
    if (!tasks.exists())
        return std::nullopt;
    return int(tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot).size());
}

std::optional<QStringList> openFiles()
{
    const QDir descriptors(QStringLiteral("/proc/self/fd"));
    if (!descriptors.exists())
        return std::nullopt;
    QStringList files;
    const QStringList names = descriptors.entryList(QDir::Files | QDir::System);
    for (const QString &name : names) {
        // The descriptor that entryList() used to read the folder is closed and has no target.
        const QString target = QFile::symLinkTarget(descriptors.filePath(name));
        if (!target.isEmpty())
            files.append(name + QLatin1String(" -> ") + target);
    }
    return files;
}

std::optional<qint64> allocatedBytes()
{
    const struct mallinfo2 info = mallinfo2();
    return qint64(info.uordblks) + qint64(info.hblkhd);
}

std::optional<qint64> processorTime(qint64 processId)
{
    QFile file(QStringLiteral("/proc/%1/stat").arg(processId));
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QByteArray content = file.readAll();
    // The fields follow the name, which is in parentheses and may contain any character.
    const QList<QByteArray> fields = content.mid(content.lastIndexOf(')') + 2).split(' ');
    constexpr qsizetype userTime = 11;
    constexpr qsizetype systemTime = 12;
    const qint64 ticks =
        fields.value(userTime).toLongLong() + fields.value(systemTime).toLongLong();
    return ticks * 1000 / sysconf(_SC_CLK_TCK);
}

QString describeCrash(int exitCode)
{
    const char *const name = sigabbrev_np(exitCode);
    const QString number = QStringLiteral("signal %1").arg(exitCode);
    return name ? number + QLatin1String(", SIG") + QLatin1String(name) : number;
}

QProcessEnvironment childEnvironment(const QString &folder)
{
    QProcessEnvironment environment = fixedEnvironment(folder);
    // glibc overwrites freed memory, so that a read of it gives wrong values. It does not overwrite
    // blocks in the thread cache, so that cache is off.
    environment.insert(QStringLiteral("GLIBC_TUNABLES"),
                       QStringLiteral("glibc.malloc.perturb=221:glibc.malloc.tcache_count=0"));
    return environment;
}

} // namespace driver
