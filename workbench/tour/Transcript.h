#pragma once

#include "framework/Traffic.h"

#include <QtCore/QObject>
#include <QtCore/QTextStream>
#include <QtCore/QVariant>

namespace workbench {

/// Prints the events of a tour: steps, calls, commands, answers, signals, rows and checks, one per
/// line.
class Transcript : public QObject
{
    Q_OBJECT

public:
    /// @param file    not owned; must outlive this object
    /// @param verbose print payloads and results too
    explicit Transcript(FILE *file, bool verbose, QObject *parent = nullptr);

    void printTraffic(const standin::Traffic &traffic);

    Q_INVOKABLE void printStep(const QString &title);
    /// Prints a call of the plug-in. Call it before the call is made, so that the lines are in
    /// order.
    Q_INVOKABLE void printCall(const QString &method, const QVariantList &arguments);
    Q_INVOKABLE void printResult(const QVariant &result);
    Q_INVOKABLE void printSignal(const QString &name, const QVariantList &arguments);
    /// @param rows lists of column texts
    Q_INVOKABLE void printRows(const QString &title, const QVariantList &rows);
    /// Prints and counts a check.
    /// @param what the expectation, or an error message
    Q_INVOKABLE void printCheck(bool passed, const QString &what);
    void printSummary();

    int failures() const { return m_failures; }

private:
    void printLine(const char *mark, const QString &text);

    QTextStream m_out;
    bool m_verbose;
    int m_steps = 0;
    int m_checks = 0;
    int m_failures = 0;
};

} // namespace workbench
