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
    {&FrameTimes::frames, "frame", "From the begin of a frame to its end, ms"},
    {&FrameTimes::work, "frameWork", "Processor time of a frame, ms"},
    {&FrameTimes::stations, "station",
     "How long a station worked for an answer, in its thread, ms"},
    {&FrameTimes::answers, "answer",
     "How long the plug-in took for an answer, with what QML does about it, ms"},
    {&FrameTimes::blocks, "block", "How long the event loop was held up, ms"},
};

/// How measured times are spread; zero for none.
struct Spread
{
    explicit Spread(QList<double> times)
        : count(times.size())
    {
        if (times.isEmpty())
            return;
        std::sort(times.begin(), times.end());
        // The least one that so many of them do not exceed.
        const auto at = [&](double share) {
            return times.at(
                std::max<qsizetype>(0, qsizetype(std::ceil(share * double(count))) - 1));
        };
        median = at(0.5);
        most = at(0.95);
        nearlyAll = at(0.99);
        longest = times.constLast();
        const auto late = std::upper_bound(times.cbegin(), times.cend(), FrameReport::FrameMs);
        shareOver = double(times.cend() - late) / double(count);
    }

    QString columns() const
    {
        QStringList texts{QString::number(count)};
        for (const double time : {median, most, nearlyAll, longest})
            texts.append(QString::number(time, 'f', 1));
        texts.append(QString::number(100 * shareOver, 'f', 1) + QStringLiteral(" %"));
        return texts.join(QStringLiteral(" | "));
    }

    QJsonObject toJson() const
    {
        return {{QStringLiteral("count"), count}, {QStringLiteral("median"), median},
                {QStringLiteral("p95"), most},    {QStringLiteral("p99"), nearlyAll},
                {QStringLiteral("max"), longest}, {QStringLiteral("shareOverFrame"), shareOver}};
    }

    qsizetype count;
    double median = 0;
    double most = 0;
    double nearlyAll = 0;
    double longest = 0;
    double shareOver = 0; ///< of those that took more than a frame
};

} // namespace

void FrameReport::add(const QString &doing, const FrameTimes &times)
{
    auto row = std::find_if(m_rows.begin(), m_rows.end(),
                            [&](const Row &candidate) { return candidate.doing == doing; });
    if (row == m_rows.end()) {
        m_rows.append({doing, {}});
        row = std::prev(m_rows.end());
    }
    for (const Measure &measure : Measures)
        row->times.*measure.times += times.*measure.times;
    row->times.unseen += times.unseen;
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
                text += QStringLiteral("| %1 | %2 |\n").arg(row.doing, spread.columns());
        }
        text += QLatin1Char('\n');
    }
    for (const Row &row : m_rows) {
        if (row.times.unseen > 0)
            text += QStringLiteral("%1: %2 inputs without a frame\n")
                        .arg(row.doing)
                        .arg(row.times.unseen);
    }
    return text;
}

bool FrameReport::write(const QString &file, QJsonObject about) const
{
    QJsonArray rows;
    for (const Row &row : m_rows) {
        QJsonObject json{{QStringLiteral("doing"), row.doing},
                         {QStringLiteral("inputsWithoutFrame"), row.times.unseen}};
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
