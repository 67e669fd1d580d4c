#include "LogProbe.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFileInfo>

#include <cstdarg>

namespace driver {

namespace {

// Arbitrary. A plug-in that ignores the registered number can't have it by chance.
constexpr quint32 ModuleNumber = 0x4d2;
constexpr quint32 ErrorLevel = 2;

LogProbe *s_probe = nullptr;
char s_handle; ///< only its address is used

/// Joins the arguments of a log line. All of them are texts: the contract passes a text even for
/// the one format with "%d".
QString argumentsOf(const QByteArray &format, va_list arguments)
{
    QStringList texts;
    for (qsizetype i = format.indexOf('%'); i >= 0; i = format.indexOf('%', i + 2)) {
        if (format.mid(i + 1, 1) != "%")
            texts.append(QString::fromLocal8Bit(va_arg(arguments, const char *)));
    }
    return texts.join(QLatin1String(", "));
}

/// Returns "Tessaline_Req" for "src/Tessaline_Req.cpp", and any other path unchanged.
QString shortened(const QString &path)
{
    const QString name = QFileInfo(path).completeBaseName();
    return path == QLatin1String("src/") + name + QLatin1String(".cpp") ? name : path;
}

} // namespace

LogProbe::LogProbe(Missing missing)
    : m_library(libraryPath())
{
    const auto entry = reinterpret_cast<LogTrace_GetGlobalObject_t>(
        m_library.resolve(LogTrace_GetGlobalObject_name));
    if (!entry) {
        m_error = m_library.errorString();
        return;
    }
    entry(0, &m_object);
    s_probe = this;
    m_original = *m_object;
    setMissing(missing);
}

LogProbe::~LogProbe()
{
    if (m_object)
        *m_object = m_original;
    s_probe = nullptr;
    m_library.unload();
}

void LogProbe::setMissing(Missing missing)
{
    const auto has = [=](Missing part) {
        return missing != part && missing != Missing::Everything;
    };
    m_object->handle = has(Missing::Handle) ? &s_handle : nullptr;
    m_object->registerModule = has(Missing::RegisterModule) ? registerModule : nullptr;
    m_object->checkLine = has(Missing::CheckLine) ? checkLine : nullptr;
    m_object->writeLine = has(Missing::WriteLine) ? writeLine : nullptr;
}

QString LogProbe::libraryPath()
{
    // Built programs are in build/FOLDER/ or build/FOLDER/FOLDER/, the library in build/logging/.
    const QString folder = QCoreApplication::applicationDirPath();
    for (const char *place : {"/../logging/", "/../../logging/"}) {
        QString path = folder + QLatin1String(place) + loaderName();
        if (QFileInfo::exists(path))
            return path;
    }
    return folder + u'/' + loaderName();
}

QString LogProbe::loaderName()
{
    return QLatin1String(LOG_LIBRARY_NAME);
}

void LogProbe::registerModule(void *handle, int constant, const char *name, quint32 *moduleId)
{
    QString line = QString::number(constant) + u' ' + QLatin1String(name);
    if (handle != s_probe->m_object->handle)
        line += QLatin1String(" with another handle");
    s_probe->m_registrations.append(line);
    s_probe->m_moduleId = ModuleNumber;
    if (moduleId)
        *moduleId = ModuleNumber;
}

int LogProbe::checkLine(void *handle, quint32 severity, int number, const char *file, int line)
{
    LogProbe &probe = *s_probe;
    ++probe.m_checks;
    CheckedLine checked;
    checked.file = shortened(QString::fromLocal8Bit(file).replace(u'\\', u'/'));
    checked.place = checked.file + u':' + QString::number(line);
    if (severity != (probe.m_moduleId << 8 | ErrorLevel))
        checked.violations += QStringLiteral(" with severity 0x%1").arg(severity, 0, 16);
    if (handle != probe.m_object->handle)
        checked.violations += QLatin1String(" with another handle");
    if (number != 0)
        checked.violations += QStringLiteral(" with number %1").arg(number);
    if (line <= 0)
        checked.violations += QStringLiteral(" with line %1").arg(line);
    probe.m_checked = checked;
    return probe.m_rejectsLines ? 1 : 0;
}

void LogProbe::writeLine(void *handle, const char *format, va_list arguments)
{
    LogProbe &probe = *s_probe;
    const auto checked =
        std::exchange(probe.m_checked, {})
            .value_or(CheckedLine{QStringLiteral("?"), {}, QStringLiteral(" unchecked")});
    const QString texts = argumentsOf(format, arguments);
    QString line = QLatin1String("log ") + checked.file + QLatin1String(": ") +
                   QLatin1String(format) + QLatin1String(" <") + texts + u'>' + checked.violations;
    const QString statement =
        QLatin1String(format) + QLatin1String(" <") + texts.section(u',', 0, 0) + u'>';
    QString &known = probe.m_statements[checked.place];
    if (!known.isEmpty() && known != statement)
        line += QLatin1String(" from the place of ") + known;
    known = statement;
    if (handle != probe.m_object->handle)
        line += QLatin1String(" written with another handle");
    if (probe.m_rejectsLines)
        line += QLatin1String(" although checkLine rejected it");
    if (const auto callback = probe.onLine)
        callback(line);
}

} // namespace driver
