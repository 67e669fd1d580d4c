#include "LogControl.h"

#include "LogSink.h"

#include <QtCore/QList>

#include <cstdio>

namespace standin {

namespace {

void registerModule(void *handle, int constant, const char *moduleName, quint32 *moduleId);
int checkLine(void *handle, quint32 severity, int, const char *file, int line);
void writeLine(void *handle, const char *format, va_list arguments);

/// The arguments of checkLine that the next writeLine needs.
struct CheckedLine
{
    quint32 severityWord = 0;
    QByteArray file;
    int line = 0;
};

struct State
{
    LogObject object = {};
    LogSink sink;
    std::function<void(const LogLine &)> watcher;
    QList<QByteArray> modules;
    CheckedLine checked;

    State()
    {
        object.handle = this;
        object.registerModule = standin::registerModule;
        object.checkLine = standin::checkLine;
        object.writeLine = standin::writeLine;
    }

    QByteArray moduleName(quint32 number) const
    {
        // Numbers start at 1, in the order of registration.
        if (number == 0 || number > quint32(modules.size()))
            return "module " + QByteArray::number(number);
        return modules.at(qsizetype(number) - 1);
    }
};

// Created on the first call, because clients register while libraries are still being initialised.
State &state()
{
    static State theState;
    return theState;
}

QByteArray severityName(quint32 level)
{
    switch (level) {
    case 1:
        return QByteArrayLiteral("fatal");
    case 2:
        return QByteArrayLiteral("error");
    case 3:
        return QByteArrayLiteral("warning");
    case 4:
        return QByteArrayLiteral("info");
    case 5:
        return QByteArrayLiteral("debug");
    default:
        return "level " + QByteArray::number(level);
    }
}

QByteArray formatted(const char *format, va_list arguments)
{
    // A va_list can be read only once, and the length is known only after formatting.
    va_list measured;
    va_copy(measured, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, measured);
    va_end(measured);
    if (length < 0)
        return QByteArray(format);

    QByteArray text(qsizetype(length) + 1, Qt::Uninitialized);
    std::vsnprintf(text.data(), size_t(text.size()), format, arguments);
    text.chop(1);
    return text;
}

void registerModule(void *, int, const char *moduleName, quint32 *moduleId)
{
    State &log = state();
    log.modules.append(moduleName);
    if (moduleId)
        *moduleId = quint32(log.modules.size());
}

int checkLine(void *, quint32 severity, int, const char *file, int line)
{
    state().checked = {severity, QByteArray(file), line};
    return 0;
}

void writeLine(void *, const char *format, va_list arguments)
{
    State &log = state();
    const CheckedLine checked = std::exchange(log.checked, {});
    if (!format)
        return;

    LogLine line;
    line.module = log.moduleName(checked.severityWord >> 8);
    line.severity = severityName(checked.severityWord & 0xffU);
    line.severityWord = checked.severityWord;
    line.file = checked.file;
    line.line = checked.line;
    line.format = format;
    line.text = formatted(format, arguments);
    log.sink.write(line);
    // A copy, because the watcher may install another one.
    if (const auto watcher = log.watcher)
        watcher(line);
}

} // namespace

void logging::writeToStandardError()
{
    state().sink.useStandardError();
}

bool logging::writeToFile(const QString &path)
{
    return state().sink.useFile(path);
}

void logging::writeTo(std::function<void(const LogLine &)> callback)
{
    state().sink.useCallback(std::move(callback));
}

void logging::watch(std::function<void(const LogLine &)> callback)
{
    state().watcher = std::move(callback);
}

void logging::reset()
{
    State &log = state();
    log.sink.useStandardError();
    log.watcher = nullptr;
    log.modules.clear();
    log.checked = {};
}

} // namespace standin

void LogTrace_GetGlobalObject(int argument, LogObject **object)
{
    if (object)
        *object = argument == 0 ? &standin::state().object : nullptr;
}
