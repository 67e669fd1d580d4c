#include "SignalLines.h"

namespace {

QString lineOf(const QMetaMethod &signal, const QVariantList &arguments)
{
    QStringList texts;
    for (const QVariant &argument : arguments)
        texts.append(argument.typeId() == QMetaType::QStringList
                         ? argument.toStringList().join(u',')
                         : argument.toString());
    return QString::fromLatin1(signal.name()) + u'(' + texts.join(u',') + u')';
}

} // namespace

SignalLines::SignalLines(QObject *object)
    : m_receiver(object, [this](const QMetaMethod &signal, const QVariantList &arguments) {
        const QString line = lineOf(signal, arguments);
        m_lines.append(line);
        if (const auto callback = onSignal)
            callback(line);
    })
{
}
