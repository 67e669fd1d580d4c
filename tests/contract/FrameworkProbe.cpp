#include "FrameworkProbe.h"

namespace check {

bool FrameworkProbe::entry2(void *hostHandle, const QString &pluginID, const QString &command,
                            const QVariant &payload, void *context, bool flag,
                            const QString &relayPath)
{
    Q_UNUSED(hostHandle)
    Q_UNUSED(payload)
    Q_UNUSED(context)
    Q_UNUSED(relayPath)
    count(2);
    expect(pluginID == QLatin1String("2F6394EE90434A7190D7511370AFAE17"), "another plug-in ID");
    expect(!command.isEmpty(), "an empty command");
    expect(!flag, "a flag that is true");
    return true;
}

QObject *FrameworkProbe::entry14(void *hostHandle, const QString &pluginID)
{
    Q_UNUSED(hostHandle)
    count(14);
    const bool isTopology = pluginID == QLatin1String("1AA33B3D0AA047C9A202F1181284D2CD");
    expect(isTopology, "an ID that is not the topology plug-in's");
    return isTopology ? m_topology : nullptr;
}

FrameworkWrapperBase *FrameworkProbe::asFramework()
{
    return reinterpret_cast<FrameworkWrapperBase *>(this);
}

QString FrameworkProbe::summary() const
{
    QStringList parts;
    for (auto entry = m_counts.cbegin(); entry != m_counts.cend(); ++entry)
        parts.append(QStringLiteral("%1 x%2").arg(entry.key()).arg(entry.value()));
    return parts.join(QLatin1String(", "));
}

void FrameworkProbe::expect(bool condition, const char *violation)
{
    if (!condition)
        m_violations.append(QLatin1String(violation));
}

} // namespace check
