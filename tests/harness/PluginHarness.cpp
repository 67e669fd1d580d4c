#include "PluginHarness.h"

#include "PluginBase.h"

#include <QtCore/QAbstractItemModel>

PluginHarness::PluginHarness(Start start)
    : m_loader(libraryPath())
    , m_object(m_loader.instance())
    , m_plugin(qobject_cast<PluginBase *>(m_object))
{
    if (!m_plugin)
        qFatal("%s", qPrintable(m_loader.errorString()));
    emitted = std::make_unique<SignalLines>(m_object);

    for (const char name : {'A', 'B', 'C'}) {
        const QString station{QLatin1Char(name)};
        topology.setStation(station, QLatin1String("Station ") + station);
        topology.setCamera(station + QLatin1String("/1"),
                           QLatin1String("Camera ") + station + QLatin1Char('1'));
    }
    framework.addPlugin(standin::Topology::pluginID(), &topology);
    framework.addPlugin(pluginID(), m_object);
    if (start == Initialised)
        m_plugin->InitialPluginBase(nullptr, this, &framework);
}

PluginHarness::~PluginHarness()
{
    delete m_object.data();
}

QString PluginHarness::libraryPath()
{
    return QStringLiteral(TESSALINE_PLUGIN_PATH);
}

QString PluginHarness::pluginID()
{
    return QStringLiteral("2F6394EE90434A7190D7511370AFAE17");
}

QStringList PluginHarness::takeSent()
{
    QStringList lines;
    for (const standin::SentCommand &command : framework.sent()) {
        lines.append(QLatin1String(command.accepted ? "" : "!") + command.command +
                     QLatin1Char('@') + command.relayPath);
    }
    framework.clearSent();
    return lines;
}

standin::SentCommand PluginHarness::onlySent()
{
    const QList<standin::SentCommand> sent = framework.sent();
    framework.clearSent();
    if (sent.size() != 1)
        qFatal("%lld commands were sent instead of one", static_cast<long long>(sent.size()));
    return sent.constFirst();
}

void PluginHarness::answer(const QString &command, const QVariant &result, const QString &relayPath,
                           void *context, const QString &code)
{
    m_plugin->CommandProcessor(command, result, context, code, QString(), false, relayPath);
}

void PluginHarness::answer(const standin::SentCommand &command, const QVariant &result,
                           const QString &code)
{
    answer(command.command, result, command.relayPath, command.context, code);
}

void PluginHarness::grantPermission()
{
    answer(QStringLiteral("QuerySettingPermission"), true);
}

void PluginHarness::setServerTimeZone(const QByteArray &ianaId)
{
    answer(QStringLiteral("QuerySevTimezone"), ianaId);
}

void PluginHarness::storeBookmarks(const QVariantList &records, const QString &relayPath)
{
    call<bool>("queryAllBookmarks");
    const QList<standin::SentCommand> queries = sent();
    framework.clearSent();
    for (const standin::SentCommand &query : queries) {
        answer(query, QVariantMap{{QStringLiteral("Bookmarks"),
                                   query.relayPath == relayPath ? records : QVariantList()}});
    }
    emitted->take();
}

QAbstractItemModel *PluginHarness::openViewCell(const QString &viewCellUID,
                                                const QString &locationID, const QString &relayPath)
{
    auto *const model = call<QObject *>("getBookmarkModelForTimeline", viewCellUID);
    call("setTimelineFocusInfo", locationID, relayPath, viewCellUID);
    return qobject_cast<QAbstractItemModel *>(model);
}

QVariantMap serverRecord(const QString &bookmarkID, const QString &cameraID,
                         const QString &locationID, qint64 start, qint64 end,
                         const QString &description, const QString &creator, const QString &group)
{
    return {
        {QStringLiteral("BookmarkID"), bookmarkID}, {QStringLiteral("CameraID"), cameraID},
        {QStringLiteral("LocationID"), locationID}, {QStringLiteral("StartTimestamp"), start},
        {QStringLiteral("EndTimestamp"), end},      {QStringLiteral("Description"), description},
        {QStringLiteral("Creator"), creator},       {QStringLiteral("Group"), group}};
}

QStringList rowsOf(const QAbstractItemModel *model, int role)
{
    QStringList rows;
    for (int row = 0; row < model->rowCount(); ++row)
        rows.append(model->index(row, 0).data(role).toString());
    return rows;
}
