#include "Report.h"

#include "Plot.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QTextStream>

using namespace Qt::StringLiterals;

namespace {

bool writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

QString number(double value)
{
    return QString::number(value, 'g', value < 1000 ? 3 : 5);
}

} // namespace

void Report::add(const QString &job, const QString &implementation, int size, double milliseconds)
{
    m_times[job][implementation][size] = milliseconds;
}

QMap<int, double> Report::times(const QString &job, const QString &implementation) const
{
    return m_times.value(job).value(implementation);
}

QString Report::table(int size) const
{
    const QString own = m_implementations.constFirst();
    QString text;
    QTextStream out(&text);
    const PluginFigures figures = m_figures.value(size);
    out << "\n### " << size << " bookmarks\n\n| job | " << own << ", ms |";
    for (const QString &implementation : m_implementations.mid(1))
        out << " x " << implementation << " |";
    out << "\n|---" << u"|---:"_s.repeated(m_implementations.size()) << "|\n";
    for (const QString &job : m_jobs) {
        const double time = times(job, own).value(size);
        if (time == 0) // not measured with this number of bookmarks
            continue;
        out << "| " << job << " | " << number(time) << " |";
        for (const QString &implementation : m_implementations.mid(1)) {
            const double other = times(job, implementation).value(size);
            out << ' ' << (other > 0 && time > 0 ? number(other / time) : u"–"_s) << " |";
        }
        out << '\n';
    }
    out << "\nHeap for each bookmark: " << number(figures.bytesPerBookmark)
        << " bytes. An answer in pieces takes "
        << number(times(QString::fromUtf8(nameOf(Job::ManyAnswers)), own).value(size) /
                  times(QString::fromUtf8(nameOf(Job::StoreAnswer)), own).value(size))
        << " x one answer. The first use of a group key takes, compared to the second:";
    for (auto key = figures.firstUse.cbegin(); key != figures.firstUse.cend(); ++key)
        out << ' ' << key.key() << " x " << number(*key) << ';';
    out << '\n';
    return text;
}

bool Report::write(const QString &folder) const
{
    QJsonArray rows;
    for (const QString &job : m_jobs) {
        for (const QString &implementation : m_implementations) {
            const QMap<int, double> times = this->times(job, implementation);
            for (auto time = times.cbegin(); time != times.cend(); ++time) {
                rows.append(QJsonObject{{u"job"_s, job},
                                        {u"implementation"_s, implementation},
                                        {u"bookmarks"_s, time.key()},
                                        {u"milliseconds"_s, *time}});
            }
        }
    }
    QJsonObject bytes;
    for (auto it = m_figures.cbegin(); it != m_figures.cend(); ++it)
        bytes.insert(QString::number(it.key()), it->bytesPerBookmark);
    const QJsonObject document{{u"medians"_s, rows}, {u"heapBytesPerBookmark"_s, bytes}};
    return QDir().mkpath(folder) &&
           writeFile(folder + u"/benchmark.json"_s, QJsonDocument(document).toJson()) &&
           writeFile(folder + u"/benchmark.svg"_s, plot(*this));
}
