#include "Recording.h"

#include "RecordedValue.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDateTime>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QLocale>
#include <QtCore/QSaveFile>
#include <QtCore/QTimeZone>

namespace workbench {

namespace {

using Kind = TrafficEntry::Kind;

const QLatin1String Format("tessaline-recording");
constexpr int Version = 1;
constexpr qint64 MaxHeaderSize = 16'777'216; // bytes; the topology may be large

QJsonObject toJson(const Recording::Header &header)
{
    QJsonArray topology;
    for (const standin::Topology::Node &node : header.topology)
        topology.append(QJsonArray{node.id, node.name, recordedvalue::toJson(node.type)});
    return {{QStringLiteral("format"), Format},
            {QStringLiteral("formatVersion"), Version},
            {QStringLiteral("plugin"), header.pluginName},
            {QStringLiteral("version"), header.version},
            {QStringLiteral("timeZone"), header.timeZone},
            {QStringLiteral("locale"), header.locale},
            {QStringLiteral("start"), header.start},
            {QStringLiteral("complete"), header.complete},
            {QStringLiteral("entries"), header.entries},
            {QStringLiteral("topology"), topology}};
}

std::optional<Recording::Header> headerFromJson(const QJsonObject &json)
{
    if (json.value(QLatin1String("format")).toString() != Format ||
        json.value(QLatin1String("formatVersion")).toInt() != Version)
        return std::nullopt;
    Recording::Header header;
    header.pluginName = json.value(QLatin1String("plugin")).toString();
    header.version = json.value(QLatin1String("version")).toString();
    header.timeZone = json.value(QLatin1String("timeZone")).toString();
    header.locale = json.value(QLatin1String("locale")).toString();
    header.start = json.value(QLatin1String("start")).toInteger();
    header.complete = json.value(QLatin1String("complete")).toBool();
    header.entries = json.value(QLatin1String("entries")).toInteger();
    const QJsonArray topology = json.value(QLatin1String("topology")).toArray();
    for (const auto &node : topology) {
        const QJsonArray parts = node.toArray();
        header.topology.append({parts.at(0).toString(), parts.at(1).toString(),
                                recordedvalue::fromJson(parts.at(2)).value_or(QVariant())});
    }
    return header;
}

QJsonObject toJson(const TrafficEntry &entry)
{
    QJsonObject json{{QStringLiteral("n"), static_cast<qint64>(entry.sequence)},
                     {QStringLiteral("ms"), entry.elapsed},
                     {QStringLiteral("depth"), entry.depth},
                     {QStringLiteral("kind"), nameOf(entry.kind)},
                     {QStringLiteral("name"), entry.name}};
    if (entry.kind != Kind::Connection)
        json.insert(QStringLiteral("value"), recordedvalue::toJson(entry.value));
    if (entry.kind == Kind::Call)
        json.insert(QStringLiteral("result"), recordedvalue::toJson(entry.result));
    if (entry.kind == Kind::Sent || entry.kind == Kind::Answered) {
        json.insert(QStringLiteral("request"), static_cast<qint64>(entry.request));
        json.insert(QStringLiteral("context"), entry.context);
    }
    if (entry.kind == Kind::Sent)
        json.insert(QStringLiteral("accepted"), entry.accepted);
    if (entry.kind == Kind::Answered)
        json.insert(QStringLiteral("code"), entry.code);
    if (entry.kind == Kind::Sent || entry.kind == Kind::Answered || entry.kind == Kind::Event)
        json.insert(QStringLiteral("relayPath"), entry.relayPath);
    if (entry.omitted > 0)
        json.insert(QStringLiteral("omitted"), entry.omitted);
    return json;
}

/// Reads an entry.
/// @return an error message, or an empty text
QString readEntry(const QByteArray &line, TrafficEntry *entry)
{
    QJsonParseError parsing{};
    const QJsonDocument document = QJsonDocument::fromJson(line, &parsing);
    if (!document.isObject())
        return QStringLiteral("expected a JSON object: %1").arg(parsing.errorString());
    const QJsonObject json = document.object();
    entry->depth = json.value(QLatin1String("depth")).toInt();
    if (entry->depth < 0 || entry->depth > Recording::MaxDepth)
        return QStringLiteral("expected a depth from 0 to %1, found %2")
            .arg(Recording::MaxDepth)
            .arg(entry->depth);
    const QString kind = json.value(QLatin1String("kind")).toString();
    if (!kindOf(kind, &entry->kind))
        return QStringLiteral("unknown kind \"%1\"").arg(kind);

    const bool hasValue = entry->kind != Kind::Connection;
    const auto value = recordedvalue::fromJson(json.value(QLatin1String("value")));
    const auto result = recordedvalue::fromJson(json.value(QLatin1String("result")));
    if (!value || !result || hasValue != json.contains(QLatin1String("value")))
        return QStringLiteral("unreadable value");
    entry->value = *value;
    entry->result = *result;
    entry->sequence = static_cast<quint64>(json.value(QLatin1String("n")).toInteger());
    entry->elapsed = json.value(QLatin1String("ms")).toInteger();
    entry->name = json.value(QLatin1String("name")).toString();
    entry->request = static_cast<quint64>(json.value(QLatin1String("request")).toInteger());
    entry->context = json.value(QLatin1String("context")).toInt();
    entry->accepted = json.value(QLatin1String("accepted")).toBool(true);
    entry->code = json.value(QLatin1String("code")).toString();
    entry->relayPath = json.value(QLatin1String("relayPath")).toString();
    entry->omitted = json.value(QLatin1String("omitted")).toInteger();
    return {};
}

/// Reads the header.
/// @return false if the file is not a recording
bool readHeader(QFile &file, Recording::Header *header, QString *error)
{
    const QByteArray line = file.readLine(MaxHeaderSize);
    const auto read = headerFromJson(QJsonDocument::fromJson(line).object());
    if (read)
        *header = *read;
    else
        *error = QStringLiteral("%1:1: expected the format \"%2\", version %3%4")
                     .arg(QDir::toNativeSeparators(file.fileName()), Format)
                     .arg(Version)
                     .arg(line.isEmpty() ? QStringLiteral(", found an empty file") : QString());
    return read.has_value();
}

QByteArray lineOf(const QJsonObject &json)
{
    return QJsonDocument(json).toJson(QJsonDocument::Compact) + '\n';
}

} // namespace

Recording::Header Recording::Header::ofThisProcess()
{
    Header header;
    header.version = QCoreApplication::applicationVersion();
    header.timeZone = QString::fromLatin1(QTimeZone::systemTimeZoneId());
    header.locale = QLocale::system().name();
    return header;
}

std::optional<Recording> Recording::read(const QString &path, QString *error)
{
    QFile file(path);
    const bool isOther = file.exists() && !QFileInfo(path).isFile(); // reading a pipe would block
    if (isOther || !file.open(QIODevice::ReadOnly)) {
        *error = QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(path),
                                              isOther ? QStringLiteral("expected a regular file")
                                                      : file.errorString());
        return std::nullopt;
    }
    Recording recording;
    recording.file = path;
    if (!readHeader(file, &recording.header, error))
        return std::nullopt;
    int number = 1;
    bool isCut = false; // the last line is incomplete
    while (!file.atEnd()) {
        const QByteArray whole = file.readLine();
        const QByteArray text = whole.trimmed();
        ++number;
        if (text.isEmpty())
            continue;
        Line line;
        line.number = number;
        const QString defect = readEntry(text, &line.entry);
        isCut = !defect.isEmpty() && !whole.endsWith('\n');
        if (defect.isEmpty())
            recording.lines.append(line);
        else if (!isCut)
            recording.badLines.append({path, number, QStringLiteral("skipped, ") + defect});
    }
    const qint64 found = recording.lines.size() + recording.badLines.size();
    const QString missing = found < recording.header.entries
                                ? QStringLiteral(", %1 of %2 entries are missing")
                                      .arg(recording.header.entries - found)
                                      .arg(recording.header.entries)
                                : QString();
    recording.isCutOff = isCut || !missing.isEmpty();
    if (recording.isCutOff)
        recording.badLines.append(
            {path, number,
             QStringLiteral("the recording was cut off %1 this line%2")
                 .arg(isCut ? QLatin1String("inside") : QLatin1String("after"), missing)});
    return recording;
}

QByteArray Recording::lineOf(const TrafficEntry &entry)
{
    return workbench::lineOf(toJson(entry));
}

QString Recording::write(const QString &path, const Header &header,
                         const std::deque<TrafficEntry> &entries)
{
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly)) {
        Header counted = header;
        counted.entries = static_cast<qint64>(entries.size());
        file.write(workbench::lineOf(toJson(counted)));
        for (const TrafficEntry &entry : entries)
            file.write(lineOf(entry));
        if (file.commit())
            return {};
    }
    return QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(path), file.errorString());
}

} // namespace workbench
