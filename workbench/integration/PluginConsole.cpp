#include "PluginConsole.h"

#include "PayloadText.h"
#include "ProcessLifetimeType.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QMetaMethod>

#include <limits>
#include <vector>

namespace workbench {

namespace {

constexpr qsizetype ShownResult = 2'000; // characters

QVariantMap describe(const QMetaMethod &method, int index)
{
    QVariantList parameters;
    QStringList texts;
    for (int i = 0; i < method.parameterCount(); ++i) {
        const QString name = QString::fromLatin1(method.parameterNames().at(i));
        const QString type = QString::fromLatin1(method.parameterMetaType(i).name());
        parameters.append(
            QVariantMap{{QStringLiteral("name"), name}, {QStringLiteral("type"), type}});
        texts.append(type + QLatin1Char(' ') + name);
    }
    const QString name = QString::fromLatin1(method.name());
    return {{QStringLiteral("index"), index},
            {QStringLiteral("name"), name},
            {QStringLiteral("parameters"), parameters},
            {QStringLiteral("signature"), QStringLiteral("%1 %2(%3)")
                                              .arg(QString::fromLatin1(method.typeName()), name,
                                                   texts.join(QLatin1String(", ")))}};
}

/// A value, or a description of the valid texts.
struct Argument
{
    QVariant value;
    QString expected;
};

Argument wholeNumber(const QString &text, QMetaType type, qint64 least, qint64 most)
{
    bool ok = false;
    QVariant value(text.toLongLong(&ok));
    if (!ok || value.toLongLong() < least || value.toLongLong() > most)
        return {{}, QStringLiteral("a whole number from %1 to %2").arg(least).arg(most)};
    value.convert(type);
    return {value, {}};
}

Argument fromJson(const QString &text, bool isList)
{
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(text.toUtf8(), &error);
    if (isList ? document.isArray() : document.isObject())
        return {document.toVariant(), {}};
    const QString kind = isList ? QStringLiteral("a list as JSON, such as [1, \"a\"]")
                                : QStringLiteral("an object as JSON, such as {\"a\": 1}");
    return {{},
            error.error == QJsonParseError::NoError ? kind
                                                    : QStringLiteral("%1; character %2: %3")
                                                          .arg(kind)
                                                          .arg(error.offset)
                                                          .arg(error.errorString())};
}

Argument argumentOf(const QString &text, QMetaType type)
{
    switch (type.id()) {
    case QMetaType::QString:
        return {text.isNull() ? QStringLiteral("") : text, {}}; // a null text means "omitted"
    case QMetaType::Bool:
        if (text == QLatin1String("true") || text == QLatin1String("false"))
            return {text == QLatin1String("true"), {}};
        return {{}, QStringLiteral("true or false")};
    case QMetaType::UChar:
        return wholeNumber(text, type, 0, std::numeric_limits<uchar>::max());
    case QMetaType::UInt:
        return wholeNumber(text, type, 0, std::numeric_limits<uint>::max());
    case QMetaType::LongLong:
        return wholeNumber(text, type, std::numeric_limits<qint64>::min(),
                           std::numeric_limits<qint64>::max());
    case QMetaType::QVariantList:
    case QMetaType::QVariantMap:
        return fromJson(text, type.id() == QMetaType::QVariantList);
    default:
        return {{},
                QStringLiteral("a type that the console supports, not %1")
                    .arg(QString::fromLatin1(type.name()))};
    }
}

} // namespace

void PluginConsole::setPlugin(QObject *plugin)
{
    m_plugin = plugin;
    m_receiver.emplace(plugin, [this](const QMetaMethod &signal, const QVariantList &arguments) {
        QVariant &entry = m_emitted[QString::fromLatin1(signal.name())];
        const int count = entry.toMap().value(QStringLiteral("count")).toInt();
        entry = QVariantMap{{QStringLiteral("count"), count + 1},
                            {QStringLiteral("arguments"), payloadtext::brief(arguments, 200)}};
        Q_EMIT emittedChanged();
    });
    Q_EMIT pluginChanged();
}

QVariantList PluginConsole::methods() const
{
    QVariantList list;
    const QMetaObject *const metaObject = m_plugin ? m_plugin->metaObject() : &staticMetaObject;
    for (int i = metaObject->methodOffset(); m_plugin && i < metaObject->methodCount(); ++i) {
        const QMetaMethod method = metaObject->method(i);
        if (method.methodType() == QMetaMethod::Method)
            list.append(describe(method, i));
    }
    return list;
}

QStringList PluginConsole::signalNames() const
{
    QStringList names;
    const QMetaObject *const metaObject = m_plugin ? m_plugin->metaObject() : &staticMetaObject;
    for (int i = metaObject->methodOffset(); m_plugin && i < metaObject->methodCount(); ++i) {
        const QMetaMethod method = metaObject->method(i);
        if (method.methodType() == QMetaMethod::Signal)
            names.append(QString::fromLatin1(method.name()));
    }
    return names;
}

QVariantMap PluginConsole::call(int index, const QStringList &texts)
{
    const QMetaMethod method = m_plugin->metaObject()->method(index);
    QVariantList values;
    for (int i = 0; i < method.parameterCount(); ++i) {
        const Argument argument = argumentOf(texts.value(i), method.parameterMetaType(i));
        if (!argument.expected.isEmpty())
            return {{QStringLiteral("parameter"), i},
                    {QStringLiteral("error"),
                     QStringLiteral("%1: expected %2, found \"%3\"")
                         .arg(QString::fromLatin1(method.parameterNames().at(i)), argument.expected,
                              texts.value(i))}};
        values.append(argument.value);
    }
    const bool returns = method.returnType() != QMetaType::Void;
    QVariant result = returns ? QVariant(processLifetimeType(method.returnMetaType())) : QVariant();
    std::vector<void *> arguments{returns ? result.data() : nullptr};
    for (QVariant &value : values)
        arguments.push_back(value.data());
    QMetaObject::metacall(m_plugin, QMetaObject::InvokeMetaMethod, index, arguments.data());
    return {{QStringLiteral("result"),
             returns ? payloadtext::brief(result, ShownResult) : QStringLiteral("called")}};
}

void PluginConsole::resetCounts()
{
    m_emitted.clear();
    Q_EMIT emittedChanged();
}

} // namespace workbench
