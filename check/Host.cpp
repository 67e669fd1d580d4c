#include "Host.h"

#include "Describe.h"
#include "Footprints.h"
#include "LastingType.h"
#include "timeline/TimelineControl.h"

#include <QtCore/QAbstractItemModel>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QMetaMethod>

namespace check {

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1String tessalineID("2F6394EE90434A7190D7511370AFAE17");

/// Makes a value one of the type of a parameter; false when it is for another overload.
bool fit(QVariant &argument, QMetaType type)
{
    const bool isText = argument.isNull() || argument.typeId() == QMetaType::QString;
    if (isText != (type.id() == QMetaType::QString))
        return false;
    if (argument.isNull())
        argument = QVariant(type);
    return argument.metaType() == type || argument.convert(type);
}

bool fit(QVariantList &arguments, const QMetaMethod &method)
{
    if (arguments.size() != method.parameterCount())
        return false;
    for (int i = 0; i < method.parameterCount(); ++i) {
        if (!fit(arguments[i], lastingType(method.parameterMetaType(i))))
            return false;
    }
    return true;
}

QString codeOf(const QString &word)
{
    if (word == u"ok")
        return u"0"_s;
    return word.startsWith(u'\'') ? word.mid(1, word.size() - 2) : word;
}

/// A value with its types. Whether an empty text is null is nobody's business but updateBookmark's,
/// which shows by the keys it sends.
QString valueText(const QVariant &value)
{
    return describe(value).replace(u"QString null"_s, u"QString \"\""_s);
}

/// An object shows as being there; what it is others look at.
QString resultText(const QVariant &result)
{
    if (result.metaType() == QMetaType::fromType<QObject *>())
        return result.value<QObject *>() ? u"an object"_s : u"null"_s;
    return valueText(result);
}

} // namespace

Host::Host(const QString &library, Start start)
    : m_library(library)
    , m_start(start)
    , m_error(m_library.error())
{
    for (const char name : {'A', 'B', 'C'}) {
        const QString station{QLatin1Char(name)};
        topology.setStation(station, u"Station "_s + station);
        topology.setCamera(station + u"/1"_s, u"Camera "_s + station + u'1');
    }
    topology.setStation(u"x"_s, u"Server"_s, standin::Topology::ConnectedServer);
    framework.addPlugin(standin::Topology::pluginID(), &topology);
    framework.setObserver([this](const standin::Traffic &traffic) { noteSent(traffic); });
    standin::timeline::observe([this](const TimeShiftBufferModel *, const QString &operation) {
        note(u"timeline "_s + operation);
    });
    if (m_error.isEmpty())
        makeObject();
}

Host::~Host()
{
    onLine = nullptr;
    delete m_object.data();
    standin::timeline::observe({});
}

void Host::makeObject()
{
    m_object = m_library.object();
    m_plugin = qobject_cast<PluginBase *>(m_object.data());
    if (!m_plugin) {
        m_error = u"the library has no object of the host's interface"_s;
        return;
    }
    m_signals = std::make_unique<SignalLines>(m_object);
    m_signals->onSignal = [this](const QString &line) { note(u"signal "_s + line); };
    framework.addPlugin(tessalineID, m_object);
    if (m_start == Initialised)
        introduce(&framework);
}

void Host::renewObject()
{
    delete m_object.data();
    forgetTraffic();
    framework.addPlugin(standin::Topology::pluginID(), &topology);
    makeObject();
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
}

void Host::forgetTraffic()
{
    takeTrace();
    m_during.clear();
    if (m_signals)
        m_signals->take();
    m_contexts.clear();
    framework.clearSent();
    resetRules();
}

void Host::introduce(FrameworkWrapperBase *newFramework)
{
    m_plugin->InitialPluginBase(nullptr, this, newFramework);
}

void Host::note(const QString &line)
{
    m_trace.append(line);
    stepDuring(line);
    if (const auto callback = onLine)
        callback(line);
}

void Host::stepDuring(const QString &line)
{
    if (m_during.isEmpty() || !line.startsWith(m_during.section(u" | "_s, 0, 0)))
        return;
    step(std::exchange(m_during, QString()).section(u" | "_s, 1));
}

/// As "send AddBookmark@A {...} context 1": no number without a context, equal numbers for equal
/// contexts.
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
    note(traffic.accepted ? line : line + u" refused"_s);
}

QString Host::play(const QString &steps)
{
    takeTrace();
    const QStringList lines = steps.split(u'\n');
    for (const QString &line : lines) {
        if (const QString text = line.trimmed(); !text.isEmpty() && isAlive())
            step(text);
    }
    return takeTrace().join(u'\n');
}

void Host::step(const QString &text)
{
    footprint(text);
    const QString word = text.section(u' ', 0, 0);
    const QString target = text.section(u' ', 1, 1);
    if (word == u"grant")
        answer(u"QuerySettingPermission"_s, true, {});
    else if (word == u"connect")
        m_plugin->PluginServerConnected();
    else if (word == u"initialise")
        m_plugin->Init(nullptr);
    else if (word == u"answer" || word == u"reply")
        answerStep(target, codeOf(text.section(u' ', 2, 2)), valueOf(text.section(u' ', 3)));
    else if (word == u"event")
        framework.sendEvent(target.section(u'@', 0, 0), valueOf(text.section(u' ', 2)),
                            target.section(u'@', 1));
    else if (word == u"refuse")
        refuse(text.split(u' ').mid(1));
    else if (word == u"topology" && target == u"gone")
        framework.removePlugin(standin::Topology::pluginID());
    else if (word == u"show")
        showCell(target, text.section(u' ', 2, 2), text.section(u' ', 3));
    else if (word == u"list")
        note(u"list ["_s + identifiersOf(target) + u']');
    else if (word == u"rows")
        note(u"rows ["_s + rowsOf(target) + u']');
    else if (word == u"watch")
        watch(target);
    else if (word == u"during")
        m_during = text.section(u' ', 1);
    else if (word == u"delete")
        deleteObject();
    else if (const QVariant result = call(text); result.isValid())
        note(u"= "_s + resultText(result));
}

void Host::answerStep(const QString &target, const QString &code, const QVariant &value)
{
    if (target.contains(u'@')) {
        answer(target.section(u'@', 0, 0), value, target.section(u'@', 1), nullptr, code);
        return;
    }
    const QList<standin::SentCommand> sent = framework.sent();
    const qsizetype number = target.toInt() - 1;
    if (number >= 0 && number < sent.size())
        answer(sent.at(number), value, code);
    else
        note(u"no command %1 was sent"_s.arg(target));
}

void Host::refuse(const QStringList &stations)
{
    resetRules();
    for (const QString &station : stations)
        framework.rules().setForStation(station == u"-" ? QString() : station,
                                        standin::Delivery::refused());
}

QString Host::identifiersOf(const QString &list)
{
    QVariant records;
    if (list == u"all")
        records = call(u"getBookmarkListByNodeID('')"_s);
    else
        records = call(list == u"recent" ? u"getBookmarkListForRecent()"_s
                                         : u"getQueryBookmarkResult()"_s);
    QStringList identifiers;
    for (const QVariant &element : records.toList()) {
        const QVariantMap record = element.toMap();
        const QString relayPath = record.value(u"relayPath"_s).toString();
        identifiers.append((relayPath.isEmpty() ? relayPath : relayPath + u'/') +
                           record.value(u"bookmarkID"_s, record.value(u"BookmarkID"_s)).toString());
    }
    return identifiers.join(u' ');
}

QAbstractItemModel *Host::modelOf(const QString &viewCellUID)
{
    QVariant model;
    call("getBookmarkModelForTimeline", {viewCellUID}, &model);
    return qobject_cast<QAbstractItemModel *>(model.value<QObject *>());
}

void Host::watch(const QString &viewCellUID)
{
    const QAbstractItemModel *const model = modelOf(viewCellUID);
    if (!model)
        return;
    const auto noteChange = [this, viewCellUID] { note(u"changed "_s + viewCellUID); };
    QObject::connect(model, &QAbstractItemModel::rowsInserted, model, noteChange);
    QObject::connect(model, &QAbstractItemModel::rowsRemoved, model, noteChange);
}

QString Host::rowsOf(const QString &viewCellUID)
{
    const QAbstractItemModel *const model = modelOf(viewCellUID);
    QStringList identifiers;
    for (int row = 0; model && row < model->rowCount(); ++row)
        identifiers.append(model->index(row, 0).data(Qt::UserRole + 1).toString());
    return identifiers.join(u' ');
}

QVariant Host::call(const QString &text)
{
    const QString arguments = text.section(u'(', 1).chopped(1);
    QVariantList values = valueOf(u'[' + arguments + u']').toList();
    for (QVariant &value : values) {
        if (value.typeId() == QMetaType::QString && value.toString().isEmpty())
            value = u""_s; // not null, unlike what is written as null
    }
    QVariant result;
    if (!call(text.section(u'(', 0, 0).toLatin1(), values, &result))
        note(u"no method takes "_s + text);
    return result;
}

bool Host::call(const QByteArray &method, QVariantList arguments, QVariant *result)
{
    const QMetaObject *const metaObject = m_object->metaObject();
    for (int i = metaObject->methodOffset(); i < metaObject->methodCount(); ++i) {
        const QMetaMethod candidate = metaObject->method(i);
        QVariantList fitted = arguments;
        if (candidate.name() != method || !fit(fitted, candidate))
            continue;
        const QVariant returned = callMethod(candidate, fitted);
        if (result)
            *result = returned;
        return true;
    }
    return false;
}

QVariant Host::callMethod(const QMetaMethod &method, QVariantList arguments)
{
    footprint(QString::fromLatin1(method.methodSignature()));
    const QMetaType type = lastingType(method.returnMetaType());
    const bool hasResult = type.id() != QMetaType::Void;
    QVariant result = hasResult ? QVariant(type) : QVariant();
    void *values[11] = {hasResult ? result.data() : nullptr};
    for (qsizetype i = 0; i < arguments.size(); ++i)
        values[i + 1] = arguments[i].data();
    QMetaObject::metacall(m_object, QMetaObject::InvokeMetaMethod, method.methodIndex(), values);
    return result;
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
    footprint(QStringLiteral("answer to %1@%2, code '%3'").arg(command, relayPath, code));
    m_plugin->CommandProcessor(command, result, context, code, QString(), false, relayPath);
}

void Host::answer(const standin::SentCommand &command, const QVariant &result, const QString &code)
{
    answer(command.command, result, command.relayPath, command.context, code);
}

QAbstractItemModel *Host::showCell(const QString &viewCellUID, const QString &locationID,
                                   const QString &relayPath)
{
    QAbstractItemModel *const model = modelOf(viewCellUID);
    call("setTimelineFocusInfo", {locationID, relayPath, viewCellUID});
    return model;
}

LoggingHost::LoggingHost(Trial &trial, Host::Start start)
{
    m_host = std::make_unique<Host>(trial.library(), start);
    if (!m_log.error().isEmpty())
        trial.warn(u"the logging library is not there: "_s + m_log.error());
    if (!m_host->error().isEmpty())
        trial.fail(u"expected a plug-in, found: "_s + m_host->error());
    m_log.onLine = [this](const QString &line) {
        m_log.take();
        m_host->note(line);
    };
}

LoggingHost::~LoggingHost() = default;

QVariant valueOf(QString json)
{
    json.replace(u'\'', u'"');
    // Only in a list may a value stand that is no container.
    const auto document = QJsonDocument::fromJson(u"[%1]"_s.arg(json).toUtf8());
    return document.array().toVariantList().value(0);
}

} // namespace check
