#include "LogControl.h"

#include "LogSink.h"

#include <cstdio>

namespace standin {

namespace {

void registerModule(void *handle, int constant, const char *moduleName, quint32 *moduleId);
int checkLine(void *handle, quint32 severity, int, const char *file, int line);
void writeLine(void *handle, const char *format, va_list arguments);

/// What of checkLine's arguments the next writeLine needs.
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
    LogCalls calls;
    QList<LogRegistration> registrations;
    CheckedLine checked;
    bool refuse = false;

    State() { offerAllBut({}); }

    void offerAllBut(LogParts missing)
    {
        object.handle = missing.testFlag(LogPart::Handle) ? nullptr : this;
        object.registerModule =
            missing.testFlag(LogPart::RegisterModule) ? nullptr : standin::registerModule;
        object.checkLine = missing.testFlag(LogPart::CheckLine) ? nullptr : standin::checkLine;
        object.writeLine = missing.testFlag(LogPart::WriteLine) ? nullptr : standin::writeLine;
    }

    void noteHandle(const void *handle)
    {
        if (handle != this)
            ++calls.withWrongHandle;
    }

    QByteArray moduleName(quint32 number) const
    {
        // Numbers are given from 1 on, in the order of registration.
        if (number == 0 || number > quint32(registrations.size()))
            return "module " + QByteArray::number(number);
        return registrations.at(qsizetype(number) - 1).name;
    }
};

// Made on the first call: users register while their own library is still being initialised.
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
    // The arguments can be walked only once, and the length is known only afterwards.
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

void registerModule(void *handle, int constant, const char *moduleName, quint32 *moduleId)
{
    State &log = state();
    ++log.calls.registerModule;
    log.noteHandle(handle);
    const quint32 number = quint32(log.registrations.size()) + 1;
    log.registrations.append({constant, QByteArray(moduleName), number});
    if (moduleId)
        *moduleId = number;
}

int checkLine(void *handle, quint32 severity, int, const char *file, int line)
{
    State &log = state();
    ++log.calls.checkLine;
    log.noteHandle(handle);
    if (log.refuse)
        return 1;
    log.checked = {severity, QByteArray(file), line};
    return 0;
}

void writeLine(void *handle, const char *format, va_list arguments)
{
    State &log = state();
    ++log.calls.writeLine;
    log.noteHandle(handle);
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
    // A copy, as the watcher may install another one.
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

void logging::withhold(LogParts parts)
{
    state().offerAllBut(parts);
}

void logging::refuseLines(bool refuse)
{
    state().refuse = refuse;
}

LogCalls logging::calls()
{
    return state().calls;
}

QList<LogRegistration> logging::registrations()
{
    return state().registrations;
}

void logging::reset()
{
    State &log = state();
    log.offerAllBut({});
    log.sink.useStandardError();
    log.watcher = nullptr;
    log.calls = {};
    log.registrations.clear();
    log.checked = {};
    log.refuse = false;
}

} // namespace standin

void LogTrace_GetGlobalObject(int argument, LogObject **object)
{
    standin::State &log = standin::state();
    ++log.calls.getGlobalObject;
    log.calls.withWrongArgument += argument != 0 ? 1 : 0;
    if (object)
        *object = &log.object;
}
