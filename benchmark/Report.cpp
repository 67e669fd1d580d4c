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

void Report::add(const QString &job, const QString &contestant, int size, double milliseconds)
{
    m_times[job][contestant][size] = milliseconds;
}

QMap<int, double> Report::times(const QString &job, const QString &contestant) const
{
    return m_times.value(job).value(contestant);
}

QString Report::tables() const
{
    const QString own = m_contestants.constFirst();
    QString text;
    QTextStream out(&text);
    for (auto bytes = m_bytes.cbegin(); bytes != m_bytes.cend(); ++bytes) {
        const int size = bytes.key();
        out << "\n### " << size << " bookmarks, " << number(*bytes) << " bytes of columns each\n\n"
            << "| job | " << own << ", ms |";
        for (const QString &contestant : m_contestants.mid(1))
            out << " x " << contestant << " |";
        out << "\n|---" << u"|---:"_s.repeated(m_contestants.size()) << "|\n";
        for (const QString &job : m_jobs) {
            const double time = times(job, own).value(size);
            out << "| " << job << " | " << number(time) << " |";
            for (const QString &contestant : m_contestants.mid(1)) {
                const double other = times(job, contestant).value(size);
                out << ' ' << (other > 0 && time > 0 ? number(other / time) : u"–"_s) << " |";
            }
            out << '\n';
        }
    }
    return text;
}

QString Report::growth() const
{
    QString text;
    QTextStream out(&text);
    const QString own = m_contestants.constFirst();
    for (auto bytes = m_bytes.cbegin(); bytes != m_bytes.cend(); ++bytes) {
        const int size = bytes.key();
        if (!m_bytes.contains(2 * size))
            continue;
        out << "\nFrom " << size << " to " << 2 * size << " bookmarks:";
        for (const QString &job : m_jobs) {
            const QMap<int, double> times = this->times(job, own);
            out << ' ' << job << " x " << number(times.value(2 * size) / times.value(size)) << ';';
        }
        out << '\n';
    }
    return text;
}

bool Report::write(const QString &folder) const
{
    QJsonArray rows;
    for (const QString &job : m_jobs) {
        for (const QString &contestant : m_contestants) {
            const QMap<int, double> times = this->times(job, contestant);
            for (auto time = times.cbegin(); time != times.cend(); ++time) {
                rows.append(QJsonObject{{u"job"_s, job},
                                        {u"contestant"_s, contestant},
                                        {u"bookmarks"_s, time.key()},
                                        {u"milliseconds"_s, *time}});
            }
        }
    }
    QJsonObject bytes;
    for (auto it = m_bytes.cbegin(); it != m_bytes.cend(); ++it)
        bytes.insert(QString::number(it.key()), *it);
    const QJsonObject document{{u"medians"_s, rows}, {u"columnBytesPerBookmark"_s, bytes}};
    return QDir().mkpath(folder) &&
           writeFile(folder + u"/benchmark.json"_s, QJsonDocument(document).toJson()) &&
           writeFile(folder + u"/benchmark.svg"_s, plot(*this));
}
