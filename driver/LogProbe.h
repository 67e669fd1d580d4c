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

/// Brings the logging library into the process and puts its own functions into the log object, so
/// that every call of the plug-in is seen. Make it before the plug-in is loaded; one at a time.
class LogProbe
{
public:
    /// What a plug-in has to do without.
    enum class Missing { Nothing, Handle, RegisterModule, CheckLine, WriteLine, Everything };

    explicit LogProbe(Missing missing = Missing::Nothing);
    ~LogProbe();
    Q_DISABLE_COPY_MOVE(LogProbe)

    /// Why the logging library is not there, or an empty text.
    QString error() const { return m_error; }

    /// Called with each line, "log Tessaline_Req: %s, send command failed
    /// <Tessaline::addBookmark>": source file, format and arguments as they were passed, then what
    /// is wrong about the call (severity, handle, numbers, the place of another statement).
    std::function<void(const QString &line)> onLine;

    /// Removes a part from the log object, and restores all others.
    void withhold(Missing missing);
    /// Makes checkLine refuse lines.
    void refuseLines(bool refuse) { m_refuse = refuse; }

    /// The calls of registerModule, as "19 Tessaline" each.
    QStringList registrations() const { return m_registrations; }
    int checks() const { return m_checks; }

    /// The statements that have logged, "%s, send command failed <Tessaline::addBookmark>", by file
    /// and line.
    using Statements = QMap<QString, QString>;
    const Statements &statements() const { return m_statements; }

    /// The path of the logging library that belongs to this program, without prefix and suffix.
    static QString libraryPath();
    /// The name by which plug-ins look for the logging library.
    static QString loaderName();

private:
    static void registerModule(void *handle, int constant, const char *name, quint32 *moduleId);
    static int checkLine(void *handle, quint32 severity, int number, const char *file, int line);
    static void writeLine(void *handle, const char *format, va_list arguments);

    /// What of a checked line the write call needs.
    struct Checked
    {
        QString file;
        QString place; ///< file and line
        QString oddities;
    };

    QLibrary m_library;
    LogObject *m_object = nullptr;
    LogObject m_original = {};
    QString m_error;
    QStringList m_registrations;
    std::optional<Checked> m_checked;
    Statements m_statements;
    quint32 m_moduleId = 0; ///< as registered
    int m_checks = 0;
    bool m_refuse = false;
};

} // namespace driver
