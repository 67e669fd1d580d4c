#include "CsvExport.h"

#include <QtCore/QDateTime>
#include <QtCore/QDir>
#include <QtCore/QSaveFile>

namespace workbench {

namespace {

QByteArray quoted(const QString &text)
{
    QByteArray field = text.toUtf8();
    for (const char special : {',', '"', '\r', '\n'}) {
        if (field.contains(special))
            return '"' + field.replace('"', "\"\"") + '"';
    }
    return field;
}

QByteArray lineOf(const QVariantMap &record)
{
    const auto text = [&record](const char *key) {
        return quoted(record.value(QLatin1String(key)).toString());
    };
    const auto time = [&record](const char *key) {
        const qint64 moment = record.value(QLatin1String(key)).toLongLong();
        const QString iso =
            QDateTime::fromMSecsSinceEpoch(moment, Qt::UTC).toString(Qt::ISODateWithMs);
        // ISO 8601 has no years of more than four digits.
        return iso.isEmpty() ? QByteArray::number(moment) : iso.toLatin1();
    };
    const QByteArrayList fields{text("cameraID"),    time("startTimestamp"), time("endTimestamp"),
                                text("description"), text("relayPath"),      text("creator"),
                                text("group")};
    return fields.join(',') + '\n';
}

} // namespace

QString CsvExport::newFile()
{
    const QString now = QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    return QDir::toNativeSeparators(
        QDir::home().filePath(QStringLiteral("bookmarks-%1.csv").arg(now)));
}

QString CsvExport::save(const QString &path, RecordFinder *finder, const QVariantMap &filter)
{
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly)) {
        file.write("camera,start,end,description,station,creator,group\n");
        const QVariantList records = finder->records(filter);
        for (const QVariant &record : records)
            file.write(lineOf(record.toMap()));
    }
    if (file.isOpen() && file.commit())
        return QString();
    return QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(path), file.errorString());
}

} // namespace workbench
