#include "Log.h"

#include "LogLibrary.h"

#include <cstdlib>

namespace tessaline {

void *g_logModule = nullptr;
LogObject *g_logObject = nullptr;
quint32 g_logModuleId = 0;

namespace {

constexpr quint32 ErrorLevel = 2;

// Numbers that the library requires; it does not publish their meaning.
constexpr int GlobalObjectArgument = 0;
constexpr int RegistrationArgument = 19;
constexpr int CheckArgument = 0;

void attachToLibrary()
{
    g_logModule = loadLogLibrary();
    if (!g_logModule)
        return;

    const auto getGlobalObject = resolveLogEntryPoint(g_logModule);
    if (!getGlobalObject)
        return;

    LogObject *object = nullptr;
    getGlobalObject(GlobalObjectArgument, &object);
    if (object && object->registerModule)
        object->registerModule(object->handle, RegistrationArgument, "Tessaline", &g_logModuleId);
    g_logObject = object;
}

void detachFromLibrary()
{
    if (g_logModule)
        freeLogLibrary(g_logModule);
}

// Runs while the plug-in library is loaded, before any object of the plug-in exists.
[[maybe_unused]] const int s_attached = [] {
    attachToLibrary();
    return std::atexit(detachFromLibrary);
}();

} // namespace

bool logWanted(const char *file, int line)
{
    if (!g_logObject || !g_logObject->handle || !g_logObject->checkLine)
        return false;
    const quint32 severity = (g_logModuleId << 8) | ErrorLevel;
    return g_logObject->checkLine(g_logObject->handle, severity, CheckArgument, file, line) == 0;
}

void logWrite(const char *format, ...)
{
    if (!g_logObject || !g_logObject->handle || !g_logObject->writeLine)
        return;
    va_list arguments;
    va_start(arguments, format);
    g_logObject->writeLine(g_logObject->handle, format, arguments);
    va_end(arguments);
}

} // namespace tessaline
