#include "FrameReport.h"

#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

#include <algorithm>
#include <cmath>
#include <iterator>

namespace workbench {

namespace {

struct Measure
{
    QList<double> FrameTimes::*times;
    const char *key; ///< in JSON
    const char *title;
};

constexpr Measure Measures[] = {
    {&FrameTimes::latencies, "inputToFrame",
     "From an input to the end of the frame that shows it, ms"},
    {&FrameTimes::frames, "frame", "From the start of a frame to its end, ms"},
    {&FrameTimes::work, "frameWork", "Processor time of a frame, ms"},
    {&FrameTimes::stations, "station", "Time of a station for an answer, in its thread, ms"},
    {&FrameTimes::answers, "answer",
     "Time of the plug-in for an answer, including slots in QML, ms"},
    {&FrameTimes::blocks, "block", "Delay of a timer by a busy event loop, ms"},
};

/// The distribution of measured times; all values are 0 without times.
struct Spread
{
    explicit Spread(QList<double> times)
        : count(times.size())
    {
        if (times.isEmpty())
            return;
        std::sort(times.begin(), times.end());
        // The smallest time that this share of the times does not exceed.
        const auto at = [&](double share) {
            return times.at(
                std::max<qsizetype>(0, qsizetype(std::ceil(share * double(count))) - 1));
        };
        median = at(0.5);
        p95 = at(0.95);
        p99 = at(0.99);
        maximum = times.constLast();
        const auto late = std::upper_bound(times.cbegin(), times.cend(), FrameReport::FrameMs);
        shareOver = double(times.cend() - late) / double(count);
    }

    QString columns() const
    {
        QStringList texts{QString::number(count)};
        for (const double time : {median, p95, p99, maximum})
            texts.append(QString::number(time, 'f', 1));
        texts.append(QString::number(100 * shareOver, 'f', 1) + QStringLiteral(" %"));
        return texts.join(QStringLiteral(" | "));
    }

    QJsonObject toJson() const
    {
        return {{QStringLiteral("count"), count}, {QStringLiteral("median"), median},
                {QStringLiteral("p95"), p95},     {QStringLiteral("p99"), p99},
                {QStringLiteral("max"), maximum}, {QStringLiteral("shareOverFrame"), shareOver}};
    }

    qsizetype count;
    double median = 0;
    double p95 = 0;
    double p99 = 0;
    double maximum = 0;
    double shareOver = 0; ///< share of times above FrameMs
};

} // namespace

void FrameReport::add(const QString &action, const FrameTimes &times)
{
    auto row = std::find_if(m_rows.begin(), m_rows.end(),
                            [&](const Row &candidate) { return candidate.action == action; });
    if (row == m_rows.end()) {
        m_rows.append({action, {}});
        row = std::prev(m_rows.end());
    }
    for (const Measure &measure : Measures)
        row->times.*measure.times += times.*measure.times;
    row->times.unshown += times.unshown;
}

QString FrameReport::tables() const
{
    QString text;
    for (const Measure &measure : Measures) {
        text += QStringLiteral("### %1\n\n"
                               "| | count | median | 95 % | 99 % | longest | over 16.7 |\n"
                               "|---|---:|---:|---:|---:|---:|---:|\n")
                    .arg(QString::fromLatin1(measure.title));
        for (const Row &row : m_rows) {
            const Spread spread(row.times.*measure.times);
            if (spread.count > 0)
                text += QStringLiteral("| %1 | %2 |\n").arg(row.action, spread.columns());
        }
        text += QLatin1Char('\n');
    }
    for (const Row &row : m_rows) {
        if (row.times.unshown > 0)
            text += QStringLiteral("%1: %2 inputs without a frame\n")
                        .arg(row.action)
                        .arg(row.times.unshown);
    }
    return text;
}

bool FrameReport::write(const QString &file, QJsonObject about) const
{
    QJsonArray rows;
    for (const Row &row : m_rows) {
        QJsonObject json{{QStringLiteral("action"), row.action},
                         {QStringLiteral("inputsWithoutFrame"), row.times.unshown}};
        for (const Measure &measure : Measures)
            json.insert(QLatin1String(measure.key), Spread(row.times.*measure.times).toJson());
        rows.append(json);
    }
    about.insert(QStringLiteral("rows"), rows);
    QFile out(file);
    const QByteArray text = QJsonDocument(about).toJson();
    return out.open(QIODevice::WriteOnly) && out.write(text) == text.size();
}

} // namespace workbench
