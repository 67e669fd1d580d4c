#pragma once

#include "Implementations.h"

#include <QtCore/QMap>
#include <QtCore/QString>
#include <QtCore/QStringList>

/// Collects the medians of one run, in milliseconds, and writes them as table, JSON and diagram.
class Report
{
public:
    /// @param implementations the first one is the library
    Report(const QStringList &jobs, const QStringList &implementations)
        : m_jobs(jobs)
        , m_implementations(implementations)
    {
    }

    void add(const QString &job, const QString &implementation, int size, double milliseconds);

    void setFigures(int size, const PluginFigures &figures) { m_figures.insert(size, figures); }

    /// @return a table for one size: the library's time and the others' multiples of it; then the
    /// figures of the library
    QString table(int size) const;

    /// Writes benchmark.json and benchmark.svg.
    /// @return false on failure
    bool write(const QString &folder) const;

    QStringList jobs() const { return m_jobs; }
    QStringList implementations() const { return m_implementations; }
    /// @return medians by size; empty if the implementation lacks the job
    QMap<int, double> times(const QString &job, const QString &implementation) const;

private:
    QStringList m_jobs;
    QStringList m_implementations;
    QMap<QString, QMap<QString, QMap<int, double>>> m_times;
    QMap<int, PluginFigures> m_figures;
};
