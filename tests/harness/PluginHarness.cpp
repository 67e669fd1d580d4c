#include "PluginHarness.h"

#include "Describe.h"
#include "PluginBase.h"
#include "ProcessLifetimeType.h"

#include <QtCore/QAbstractItemModel>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QMetaMethod>

using namespace Qt::StringLiterals;

namespace {

QString textOf(bool accepted, const QString &command, const QString &relayPath)
{
    return (accepted ? u""_s : u"!"_s) + command + u'@' + relayPath;
}

/// Makes the arguments those of the method; false when it is another overload.
bool fit(QVariantList &arguments, const QMetaMethod &method)
{
    if (arguments.size() != method.parameterCount())
        return false;
    for (int i = 0; i < method.parameterCount(); ++i) {
        const QMetaType type = processLifetimeType(method.parameterMetaType(i));
        QVariant &argument = arguments[i];
        const bool isText = argument.isNull() || argument.typeId() == QMetaType::QString;
        if (isText != (type.id() == QMetaType::QString))
            return false;
        argument = argument.isNull() ? QVariant(type) : argument;
        if (!argument.convert(type))
            return false;
    }
    return true;
}

} // namespace

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
        topology.setStation(station, u"Station "_s + station);
        topology.setCamera(station + u"/1"_s, u"Camera "_s + station + u'1');
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
    return u"2F6394EE90434A7190D7511370AFAE17"_s;
}

QVariant PluginHarness::run(const QString &text)
{
    QString json = u'[' + text.section(u'(', 1).chopped(1) + u']';
    json.replace(u'\'', u'"');
    const QMetaObject *const metaObject = m_object->metaObject();
    for (int i = metaObject->methodOffset(); i < metaObject->methodCount(); ++i) {
        const QMetaMethod method = metaObject->method(i);
        QVariantList arguments = QJsonDocument::fromJson(json.toUtf8()).array().toVariantList();
        if (method.name() != text.section(u'(', 0, 0).toLatin1() || !fit(arguments, method))
            continue;
        QVariant result(processLifetimeType(method.returnMetaType()));
        void *values[11] = {result.data()};
        for (qsizetype a = 0; a < arguments.size(); ++a)
            values[a + 1] = arguments[a].data();
        QMetaObject::metacall(m_object, QMetaObject::InvokeMetaMethod, i, values);
        return result;
    }
    qFatal("%s can't be called so", qPrintable(text));
}

void PluginHarness::invoke(const char *name, const QList<QMetaType> &types, QMetaType resultType,
                           const void *const *values)
{
    const QMetaObject *const metaObject = m_object->metaObject();
    for (int i = metaObject->methodOffset(); i < metaObject->methodCount(); ++i) {
        const QMetaMethod method = metaObject->method(i);
        bool fits = method.name() == name && method.parameterCount() == types.size() &&
                    (!resultType.sizeOf() || method.returnMetaType() == resultType);
        for (int p = 0; fits && p < method.parameterCount(); ++p)
            fits = method.parameterMetaType(p) == types.at(p);
        if (fits) {
            QMetaObject::metacall(m_object, QMetaObject::InvokeMetaMethod, i,
                                  const_cast<void **>(values));
            return;
        }
    }
    qFatal("%s can't be called so", name);
}

QStringList PluginHarness::takeSent()
{
    QStringList lines;
    for (const standin::SentCommand &command : framework.sent())
        lines.append(textOf(command.accepted, command.command, command.relayPath));
    framework.clearSent();
    return lines;
}

QStringList PluginHarness::describeSent() const
{
    QStringList lines;
    QList<void *> contexts{nullptr};
    const QList<standin::SentCommand> sent = framework.sent();
    for (const standin::SentCommand &command : sent) {
        QString line =
            textOf(true, command.command, command.relayPath) + u' ' + describe(command.payload);
        if (!contexts.contains(command.context))
            contexts.append(command.context);
        if (command.context)
            line += u' ' + QString::number(contexts.indexOf(command.context));
        if (command.flag || command.pluginID != pluginID() || command.hostHandle != this)
            line += u" with odd arguments"_s;
        lines.append(line);
    }
    return lines;
}

void PluginHarness::startTrace()
{
    const auto note = [this](const QString &line) { m_trace.append(line); };
    log.onLine = note;
    emitted->onSignal = note;
    framework.setObserver([=](const standin::Traffic &traffic) {
        if (traffic.kind == standin::Traffic::Kind::Sent)
            note(textOf(traffic.accepted, traffic.name, traffic.relayPath));
    });
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
    answer(u"QuerySettingPermission"_s, true);
}

void PluginHarness::setServerTimeZone(const QByteArray &ianaId)
{
    answer(u"QuerySevTimezone"_s, ianaId);
}

void PluginHarness::storeBookmarks(const QVariantList &records, const QString &relayPath)
{
    call<bool>("queryAllBookmarks");
    const QList<standin::SentCommand> queries = sent();
    framework.clearSent();
    for (const standin::SentCommand &query : queries) {
        answer(query, QVariantMap{{u"Bookmarks"_s,
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

QVariant queryAnswer(const QStringList &ids)
{
    QVariantList records;
    for (const QString &id : ids)
        records.append(serverRecord(id, u"1"_s, u"l"_s, 1, 2));
    return QVariantMap{{u"Bookmarks"_s, records}};
}

QString displayedIds(const QVariantList &list)
{
    QStringList ids;
    for (const QVariant &element : list) {
        const QVariantMap record = element.toMap();
        ids.append(record[u"relayPath"_s].toString() + u'/' + record[u"bookmarkID"_s].toString());
    }
    return ids.join(u' ');
}

QStringList rowsOf(const QAbstractItemModel *model, int role)
{
    QStringList rows;
    for (int row = 0; row < model->rowCount(); ++row)
        rows.append(model->index(row, 0).data(role).toString());
    return rows;
}
