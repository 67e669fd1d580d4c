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
        return QDateTime::fromMSecsSinceEpoch(moment, Qt::UTC)
            .toString(Qt::ISODateWithMs)
            .toLatin1();
    };
    const QByteArrayList fields{text("cameraID"),    time("startTimestamp"), time("endTimestamp"),
                                text("description"), text("relayPath"),      text("creator"),
                                text("group")};
    return fields.join(',') + '\n';
}

/// All records of the filter's camera that begin in its range, whatever their texts.
QVariantList recordsInRange(QObject *plugin, const QVariantMap &filter)
{
    QVariantList records;
    QMetaObject::invokeMethod(plugin, "getBookmarkListByNodeID",
                              Q_RETURN_ARG(QVariantList, records),
                              Q_ARG(QString, filter.value(QStringLiteral("nodeID")).toString()));
    const QString key = QStringLiteral("startTimestamp");
    const qint64 first = filter.value(key).toLongLong();
    const qint64 last = filter.value(QStringLiteral("endTimestamp")).toLongLong();
    records.removeIf([&](const QVariant &record) {
        const qint64 start = record.toMap().value(key).toLongLong();
        return start < first || start > last;
    });
    return records;
}

QVariantList recordsWithText(QObject *plugin, QVariantMap filter)
{
    QVariantList records;
    for (int number = 0;; ++number) {
        filter.insert(QStringLiteral("pageNumber"), number);
        QVariantMap page;
        QMetaObject::invokeMethod(plugin, "getFilteredBookmarkList",
                                  Q_RETURN_ARG(QVariantMap, page), Q_ARG(QVariantMap, filter));
        const QVariantList groups = page.value(QStringLiteral("bookmarkGroupList")).toList();
        for (const QVariant &group : groups)
            records += group.toMap().value(QStringLiteral("bookmarkList")).toList();
        const qint64 total = page.value(QStringLiteral("totalBookmarkNumber")).toLongLong();
        if (groups.isEmpty() || records.size() >= total)
            return records;
    }
}

/// Pages are for texts alone, as the plug-in sorts all that match for each page.
QVariantList recordsFound(QObject *plugin, const QVariantMap &filter)
{
    return filter.value(QStringLiteral("text")).toString().isEmpty()
               ? recordsInRange(plugin, filter)
               : recordsWithText(plugin, filter);
}

} // namespace

QString CsvExport::newFile()
{
    const QString now = QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    return QDir::toNativeSeparators(
        QDir::home().filePath(QStringLiteral("bookmarks-%1.csv").arg(now)));
}

QString CsvExport::save(const QString &path, QObject *plugin, const QVariantMap &filter)
{
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly)) {
        file.write("camera,start,end,description,station,creator,group\n");
        const QVariantList records = recordsFound(plugin, filter);
        for (const QVariant &record : records)
            file.write(lineOf(record.toMap()));
    }
    if (file.isOpen() && file.commit())
        return QString();
    return QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(path), file.errorString());
}

} // namespace workbench
