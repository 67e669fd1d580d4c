#pragma once

#include "Contestants.h"

#include <QtCore/QMap>
#include <QtCore/QString>
#include <QtCore/QStringList>

/// The medians of one run, in milliseconds, and what is made of them.
class Report
{
public:
    /// @param contestants the library first
    Report(const QStringList &jobs, const QStringList &contestants)
        : m_jobs(jobs)
        , m_contestants(contestants)
    {
    }

    void add(const QString &job, const QString &contestant, int size, double milliseconds);

    void setFigures(int size, const PluginFigures &figures) { m_figures.insert(size, figures); }

    /// A table of one size: the library's time, and by how much the others take longer; then what
    /// is measured of the library alone.
    QString table(int size) const;

    /// Writes benchmark.json and benchmark.svg. False when that is not possible.
    bool write(const QString &folder) const;

    QStringList jobs() const { return m_jobs; }
    QStringList contestants() const { return m_contestants; }
    /// By size; empty when the contestant does not do that job.
    QMap<int, double> times(const QString &job, const QString &contestant) const;

private:
    QStringList m_jobs;
    QStringList m_contestants;
    QMap<QString, QMap<QString, QMap<int, double>>> m_times;
    QMap<int, PluginFigures> m_figures;
};
