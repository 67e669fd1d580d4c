#pragma once

#include "LogObject.h"

#include <QtCore/QByteArray>
#include <QtCore/QLibrary>
#include <QtCore/QList>
#include <QtCore/QMap>
#include <QtCore/QStringList>

#include <functional>
#include <optional>
#include <utility>

namespace driver {

/// Loads the logging library and replaces the functions of its log object, to observe every log
/// call of the plug-in. Create it before the plug-in is loaded. Only one may exist at a time.
class LogProbe
{
public:
    /// A part of the log object.
    enum class Missing { Nothing, Handle, RegisterModule, CheckLine, WriteLine, Everything };

    explicit LogProbe(Missing missing = Missing::Nothing);
    ~LogProbe();
    Q_DISABLE_COPY_MOVE(LogProbe)

    /// @return the reason why the logging library could not be loaded; empty if it is loaded
    QString error() const { return m_error; }

    /// Called with each log line: source file, format and arguments, as in "log Tessaline_Req: %s,
    /// send command failed <Tessaline::addBookmark>". Violations of the logging contract follow:
    /// another severity, handle or number, or the file and line of another statement.
    std::function<void(const QString &line)> onLine;

    /// Sets a part of the log object to null, or all parts, and restores the other ones.
    void setMissing(Missing missing);
    /// @param reject true if checkLine shall reject all lines
    void rejectLines(bool reject) { m_rejectsLines = reject; }

    /// @return one entry for each call of registerModule: its number and name, "19 Tessaline"
    QStringList registrations() const { return m_registrations; }
    /// @return the number of calls of checkLine
    int checks() const { return m_checks; }

    /// Log statements by "FILE:LINE". A value is format and first argument, "%s, send command
    /// failed <Tessaline::addBookmark>".
    using Statements = QMap<QString, QString>;
    const Statements &statements() const { return m_statements; }

    /// @return the path of the stand-in for the logging library in the build or installation
    static QString libraryPath();
    /// @return the name with which plug-ins load the logging library
    static QString loaderName();

private:
    static void registerModule(void *handle, int constant, const char *name, quint32 *moduleId);
    static int checkLine(void *handle, quint32 severity, int number, const char *file, int line);
    static void writeLine(void *handle, const char *format, va_list arguments);

    /// A line that checkLine has seen and writeLine not yet.
    struct CheckedLine
    {
        QString file;
        QString place; ///< file and line
        QString violations;
    };

    QLibrary m_library;
    LogObject *m_object = nullptr;
    LogObject m_original = {};
    QString m_error;
    QStringList m_registrations;
    std::optional<CheckedLine> m_checked;
    Statements m_statements;
    quint32 m_moduleId = 0; ///< result of registerModule
    int m_checks = 0;
    bool m_rejectsLines = false;
};

} // namespace driver
