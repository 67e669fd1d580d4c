#include "Host.h"

#include "Breadcrumbs.h"
#include "Describe.h"
#include "MethodCall.h"
#include "timeline/TimelineControl.h"

#include <QtCore/QAbstractItemModel>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QMetaMethod>

#include <limits>

namespace driver {

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1String tessalineID("2F6394EE90434A7190D7511370AFAE17");

QString codeOf(const QString &word)
{
    if (word == u"ok")
        return u"0"_s;
    return word.startsWith(u'\'') ? word.mid(1, word.size() - 2) : word;
}

/// Describes a value with its types. Null texts look like empty ones: only updateBookmark
/// distinguishes them, by the keys that it sends.
QString valueText(const QVariant &value)
{
    return describe(value).replace(u"QString null"_s, u"QString \"\""_s);
}

/// Describes the result of a call. An object has no text of its own, so only its presence is shown.
QString resultText(const QVariant &result)
{
    if (result.metaType() == QMetaType::fromType<QObject *>())
        return result.value<QObject *>() ? u"an object"_s : u"null"_s;
    return valueText(result);
}

} // namespace

Host::Host(const QString &library, Start start, LogProbe *log)
    : m_library(library)
    , m_start(start)
    , m_log(log)
    , m_error(m_library.error())
{
    if (m_log)
        m_log->onLine = [this](const QString &line) { note(line); };
    resetTopology();
    framework.addPlugin(standin::Topology::pluginID(), &topology);
    framework.setObserver([this](const standin::Traffic &traffic) { noteSent(traffic); });
    standin::timeline::observe([this](const TimeShiftBufferModel *, const QString &operation) {
        note(u"timeline "_s + operation);
    });
    if (m_error.isEmpty())
        createObject();
}

Host::~Host()
{
    onLine = nullptr;
    delete m_object.data();
    standin::timeline::observe({});
    if (m_log)
        m_log->onLine = nullptr;
}

void Host::resetTopology()
{
    topology.clear();
    for (const char name : {'A', 'B', 'C'}) {
        const QString station{QLatin1Char(name)};
        topology.setStation(station, u"Station "_s + station);
        topology.setCamera(station + u"/1"_s, u"Camera "_s + station + u'1');
    }
    topology.setStation(u"x"_s, u"Server"_s, standin::Topology::ConnectedServer);
}

void Host::createObject()
{
    m_object = m_library.object();
    m_plugin = qobject_cast<PluginBase *>(m_object.data());
    if (!m_plugin) {
        m_error = u"the library's object does not implement the host's interface"_s;
        return;
    }
    m_signals = std::make_unique<SignalLines>(m_object);
    m_signals->onSignal = [this](const QString &line) { note(u"signal "_s + line); };
    framework.addPlugin(tessalineID, m_object);
    if (m_start == Initialised)
        initialise(&framework);
}

void Host::recreateObject()
{
    delete m_object.data();
    clearTraffic();
    framework.addPlugin(standin::Topology::pluginID(), &topology);
    createObject();
}

void Host::setDefaultDelivery(const standin::Delivery &delivery)
{
    m_delivery = delivery;
    resetRules();
}

void Host::resetRules()
{
    framework.rules().reset();
    framework.rules().setDefault(m_delivery);
    if (!m_insideAnswers.byStation.isEmpty())
        framework.setServer(nullptr);
    m_insideAnswers.byStation.clear();
}

void Host::clearTraffic()
{
    takeTrace();
    m_during.clear();
    if (m_signals)
        m_signals->take();
    m_contexts.clear();
    framework.clearSent();
    resetRules();
}

void Host::initialise(FrameworkWrapperBase *newFramework)
{
    m_plugin->InitialPluginBase(nullptr, this, newFramework);
}

void Host::note(const QString &line)
{
    m_trace.append(line);
    runStepDuring(line);
    if (const auto callback = onLine)
        callback(line);
}

void Host::runStepDuring(const QString &line)
{
    if (m_during.isEmpty() || !line.startsWith(m_during.section(u" | "_s, 0, 0)))
        return;
    step(std::exchange(m_during, QString()).section(u" | "_s, 1));
}

/// Appends a line such as "send AddBookmark@A {...} context 1". Contexts are numbered, because
/// their addresses differ between runs.
void Host::noteSent(const standin::Traffic &traffic)
{
    if (traffic.kind != standin::Traffic::Kind::Sent)
        return;
    QString line = u"send %1@%2 "_s.arg(traffic.name, traffic.relayPath) + valueText(traffic.value);
    if (traffic.context) {
        if (!m_contexts.contains(traffic.context))
            m_contexts.append(traffic.context);
        line += u" context %1"_s.arg(m_contexts.indexOf(traffic.context) + 1);
    }
    const QList<standin::SentCommand> sent = framework.sent();
    if (!sent.isEmpty()) {
        const standin::SentCommand &command = sent.constLast();
        if (command.flag || command.pluginID != tessalineID || command.hostHandle != this)
            line += u" with another flag, plug-in ID or host handle"_s;
    }
    note(traffic.accepted ? line : line + u" rejected"_s);
}

QString Host::play(const QString &steps, const char *file, int line)
{
    takeTrace();
    const QStringList lines = steps.split(u'\n');
    for (const QString &each : lines) {
        const QString text = each.trimmed();
        if (text.isEmpty() || !isAlive() || step(text))
            continue;
        const QString error =
            u"%1:%2: unknown step; docs/testing.md lists the steps: %3"_s.arg(QLatin1String(file))
                .arg(line)
                .arg(text);
        leaveBreadcrumb(error);
        qFatal("%s", qPrintable(error));
    }
    return takeTrace().join(u'\n');
}

/// @return false if the step is unknown
bool Host::step(const QString &text)
{
    leaveBreadcrumb(text);
    const QString word = text.section(u' ', 0, 0);
    const QString target = text.section(u' ', 1, 1);
    const QString third = text.section(u' ', 2, 2);
    if (word == u"grant")
        answer(u"QuerySettingPermission"_s, true, {});
    else if (word == u"connect")
        m_plugin->PluginServerConnected();
    else if (word == u"initialise")
        m_plugin->Init(nullptr);
    else if (word == u"answer")
        answerStep(target, codeOf(third), parseValue(text.section(u' ', 3)));
    else if (word == u"event")
        framework.sendEvent(target.section(u'@', 0, 0), parseValue(text.section(u' ', 2)),
                            target.section(u'@', 1));
    else if (word == u"reject")
        reject(text.split(u' ').mid(1));
    else if (word == u"inside")
        answerInside(target, codeOf(third), parseValue(text.section(u' ', 3)));
    else if (text == u"remove topology")
        framework.removePlugin(standin::Topology::pluginID());
    else if (text == u"remove framework")
        initialise(nullptr);
    else if (word == u"station")
        topology.setStation(target == u"-" ? QString() : target, text.section(u' ', 2));
    else if (word == u"camera")
        topology.setCamera(target, text.section(u' ', 2));
    else if (word == u"show")
        showCell(target, third, text.section(u' ', 3));
    else if (word == u"list")
        note(u"list ["_s + identifiersIn(target) + u']');
    else if (word == u"page")
        notePage(parseValue(text.section(u' ', 1)).toMap());
    else if (word == u"rows")
        note(u"rows ["_s + rowsIn(target) + u']');
    else if (word == u"watch")
        watch(target);
    else if (word == u"during")
        m_during = text.section(u' ', 1);
    else if (word == u"delete")
        deleteObject();
    else if (!text.contains(u'('))
        return false;
    else if (const QVariant result = call(text); result.isValid())
        note(u"= "_s + resultText(result));
    return true;
}

void Host::answerStep(const QString &target, const QString &code, const QVariant &value)
{
    const QString name = target.section(u'@', 0, 0);
    const QString station = target.section(u'@', 1);
    bool isNumber = false;
    const qsizetype number = name.toInt(&isNumber) - 1;
    if (!isNumber)
        return answer(name, value, station, nullptr, code);
    const QList<standin::SentCommand> sent = framework.sent();
    if (number < 0 || number >= sent.size())
        return note(u"command %1 was not sent"_s.arg(name));
    const standin::SentCommand &command = sent.at(number);
    answer(command.command, value, target.contains(u'@') ? station : command.relayPath,
           command.context, code);
}

void Host::reject(const QStringList &stations)
{
    resetRules();
    for (const QString &station : stations)
        framework.rules().setForStation(station == u"-" ? QString() : station,
                                        standin::Delivery::rejected());
}

void Host::answerInside(const QString &station, const QString &code, const QVariant &value)
{
    m_insideAnswers.byStation.insert(station, {value, code});
    framework.setServer(&m_insideAnswers);
    framework.rules().setForStation(station, standin::Delivery::immediate());
}

QString Host::identifiersIn(const QString &list)
{
    const QVariant records = list == u"all"      ? call("getBookmarkListByNodeID", {u""_s})
                             : list == u"recent" ? call("getBookmarkListForRecent", {})
                                                 : call("getQueryBookmarkResult", {});
    QStringList identifiers;
    for (const QVariant &element : records.toList()) {
        const QVariantMap record = element.toMap();
        const QString relayPath = record.value(u"relayPath"_s).toString();
        identifiers.append((relayPath.isEmpty() ? relayPath : relayPath + u'/') +
                           record.value(u"bookmarkID"_s, record.value(u"BookmarkID"_s)).toString());
    }
    return identifiers.join(u' ');
}

void Host::notePage(const QVariantMap &conditions)
{
    QVariantMap filter{{u"startTimestamp"_s, std::numeric_limits<qint64>::min()},
                       {u"endTimestamp"_s, std::numeric_limits<qint64>::max()},
                       {u"groupKey"_s, u"bookmarkID"_s},
                       {u"ascending"_s, true}};
    filter.insert(conditions);
    const QVariantMap page = call("getFilteredBookmarkList", {filter}).toMap();
    QString line = u"page %1:"_s.arg(page.value(u"totalBookmarkNumber"_s).toString());
    const QVariantList groups = page.value(u"bookmarkGroupList"_s).toList();
    for (const QVariant &element : groups) {
        const QVariantMap group = element.toMap();
        const QString title = group.value(u"title"_s).toString();
        QStringList identifiers;
        for (const QVariant &record : group.value(u"bookmarkList"_s).toList())
            identifiers.append(record.toMap().value(u"bookmarkID"_s).toString());
        const QString list = identifiers.join(u' ');
        line += u' ' + (title == list ? title : title + u'[' + list + u']');
    }
    note(line);
}

QAbstractItemModel *Host::timelineModel(const QString &viewCellUID)
{
    const QVariant model = call("getBookmarkModelForTimeline", {viewCellUID});
    return qobject_cast<QAbstractItemModel *>(model.value<QObject *>());
}

void Host::watch(const QString &viewCellUID)
{
    const QAbstractItemModel *const model = timelineModel(viewCellUID);
    if (!model)
        return;
    const auto noteChange = [this, viewCellUID] { note(u"changed "_s + viewCellUID); };
    QObject::connect(model, &QAbstractItemModel::rowsInserted, model, noteChange);
    QObject::connect(model, &QAbstractItemModel::rowsRemoved, model, noteChange);
}

QString Host::rowsIn(const QString &viewCellUID)
{
    const QAbstractItemModel *const model = timelineModel(viewCellUID);
    QStringList identifiers;
    for (int row = 0; model && row < model->rowCount(); ++row)
        identifiers.append(model->index(row, 0).data(Qt::UserRole + 1).toString());
    return identifiers.join(u' ');
}

QVariant Host::call(const QString &text)
{
    const QString arguments = text.section(u'(', 1).chopped(1);
    QVariantList values = parseValue(u'[' + arguments + u']').toList();
    for (QVariant &value : values) {
        if (value.typeId() == QMetaType::QString && value.toString().isEmpty())
            value = u""_s; // not null: only the word null means a null text
    }
    return call(text.section(u'(', 0, 0).toLatin1(), values);
}

QVariant Host::call(const QByteArray &method, const QVariantList &arguments)
{
    const std::optional<QVariant> result = callByName(*m_object, method, arguments);
    if (!result)
        note(u"no method accepts %1 %2"_s.arg(QString::fromLatin1(method), valueText(arguments)));
    return result.value_or(QVariant());
}

bool Host::hasMethod(const QByteArray &name) const
{
    const QMetaObject *const metaObject = m_object->metaObject();
    for (int i = metaObject->methodOffset(); i < metaObject->methodCount(); ++i) {
        if (metaObject->method(i).name() == name)
            return true;
    }
    return false;
}

void Host::answer(const QString &command, const QVariant &result, const QString &relayPath,
                  void *context, const QString &code)
{
    leaveBreadcrumb(QStringLiteral("answer to %1@%2, code '%3'").arg(command, relayPath, code));
    m_plugin->CommandProcessor(command, result, context, code, QString(), false, relayPath);
}

void Host::answer(const standin::SentCommand &command, const QVariant &result, const QString &code)
{
    answer(command.command, result, command.relayPath, command.context, code);
}

QAbstractItemModel *Host::showCell(const QString &viewCellUID, const QString &locationID,
                                   const QString &relayPath)
{
    QAbstractItemModel *const model = timelineModel(viewCellUID);
    call("setTimelineFocusInfo", {locationID, relayPath, viewCellUID});
    return model;
}

QVariant parseValue(QString json)
{
    json.replace(u'\'', u'"');
    // QJsonDocument accepts only an array or an object at the top level.
    const auto document = QJsonDocument::fromJson(u"[%1]"_s.arg(json).toUtf8());
    if (!document.isArray())
        qFatal("not a JSON value: %s", qPrintable(json));
    return document.array().toVariantList().value(0);
}

} // namespace driver
