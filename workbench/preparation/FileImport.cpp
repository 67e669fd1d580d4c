#include "FileImport.h"

#include "CsvImport.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QDateTime>
#include <QtCore/QDir>
#include <QtCore/QFile>

namespace workbench {

namespace {

/// The list of imported files in a data folder, a text file with checksum, date and name per line.
class ImportedFiles
{
public:
    explicit ImportedFiles(const QString &folder)
        : m_list(QDir(folder).filePath(QStringLiteral("imported.txt")))
    {
    }

    QString listName() const { return QDir::toNativeSeparators(m_list); }

    /// Returns the date of the import of a file with this checksum, or an empty text.
    QString dateOf(const QByteArray &checksum) const
    {
        QFile list(m_list);
        if (!list.open(QIODevice::ReadOnly))
            return QString();
        while (!list.atEnd()) {
            const QList<QByteArray> words = list.readLine().split(' ');
            if (words.size() > 1 && words.at(0) == checksum)
                return QString::fromUtf8(words.at(1));
        }
        return QString();
    }

    void add(const QByteArray &checksum, const QString &file) const
    {
        QFile list(m_list);
        const QString date = QDate::currentDate().toString(Qt::ISODate);
        if (list.open(QIODevice::Append))
            list.write(checksum + ' ' + date.toUtf8() + ' ' + file.toUtf8() + '\n');
    }

private:
    QString m_list;
};

/// Returns the checksum of a file, or an empty array if it can't be read.
QByteArray checksumOf(const QString &path)
{
    QFile file(path);
    QCryptographicHash hash(QCryptographicHash::Sha256);
    return file.open(QIODevice::ReadOnly) && hash.addData(&file) ? hash.result().toHex()
                                                                 : QByteArray();
}

QString summaryOf(const stations::CsvImport::Result &result)
{
    QString summary = Preparation::tr("Imported %1 bookmarks, skipped %2 lines.")
                          .arg(result.imported)
                          .arg(result.skipped);
    if (result.recordings > 0)
        summary += QLatin1Char(' ') +
                   Preparation::tr("%1 names are not cameras; they were placed as recordings.")
                       .arg(result.recordings);
    return summary;
}

} // namespace

void importFile(stations::StationNetwork &network, const Preparation::Plan &plan,
                const Preparation::Report &report, Preparation::Outcome &outcome)
{
    const QString name = QDir::toNativeSeparators(plan.importFile);
    const ImportedFiles imported(plan.folder);
    const QByteArray checksum = checksumOf(plan.importFile);
    const QString date = imported.dateOf(checksum);
    if (!date.isEmpty()) {
        outcome.messages.append(
            Preparation::tr("%1 was imported on %2 and is not imported again. To import it again, "
                            "delete its line from %3.")
                .arg(name, date, imported.listName()));
        return;
    }

    stations::CsvImport csv(network, QDate::currentDate());
    csv.setProgressCallback([&](const stations::CsvImport::Progress &progress) {
        const double done =
            progress.totalBytes > 0 ? double(progress.bytes) / double(progress.totalBytes) : 0;
        return report(Preparation::tr("Importing %1").arg(name), done);
    });
    const stations::CsvImport::Result result = csv.run(plan.importFile);
    outcome.messages.append(result.messages);
    const qint64 more = result.skipped - result.messages.size();
    if (more > 0)
        outcome.messages.append(Preparation::tr("... and %1 more lines").arg(more));
    if (!result.error.isEmpty())
        outcome.messages.append(result.error);
    if (result.cancelled)
        outcome.messages.append(
            Preparation::tr("The import was cancelled; the rest of the file is missing."));
    outcome.summary = summaryOf(result);
    if (result.imported == 0 && !result.cancelled)
        outcome.error =
            Preparation::tr("%1: no bookmark was imported; see the messages above.").arg(name);
    else if (result.error.isEmpty() && !result.cancelled)
        imported.add(checksum, name);
}

} // namespace workbench
