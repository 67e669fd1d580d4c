#pragma once

#include <QtCore/QMap>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVariant>

class FrameworkWrapperBase;
class QObject;

namespace check {

/// A framework object that counts the calls of each entry. It declares the entries itself and does
/// not use host/, so that it detects a plug-in that was built with another order of entries.
class FrameworkProbe final
{
public:
    /// @param topology result of the fourteenth entry for the ID of the topology plug-in; not owned
    explicit FrameworkProbe(QObject *topology)
        : m_topology(topology)
    {
    }
    Q_DISABLE_COPY_MOVE(FrameworkProbe)

    virtual void entry1() { count(1); }
    virtual bool entry2(void *hostHandle, const QString &pluginID, const QString &command,
                        const QVariant &payload, void *context, bool flag,
                        const QString &relayPath);
    virtual void entry3() { count(3); }
    virtual void entry4() { count(4); }
    virtual void entry5() { count(5); }
    virtual void entry6() { count(6); }
    virtual void entry7() { count(7); }
    virtual void entry8() { count(8); }
    virtual void entry9() { count(9); }
    virtual void entry10() { count(10); }
    virtual void entry11() { count(11); }
    virtual void entry12() { count(12); }
    virtual void entry13() { count(13); }
    virtual QObject *entry14(void *hostHandle, const QString &pluginID);
    virtual void entry15() { count(15); }
    virtual void entry16() { count(16); }
    virtual void entry17() { count(17); }
    virtual void entry18() { count(18); }

    FrameworkWrapperBase *asFramework();

    /// @return the called entries and their number of calls, "2 x3, 14 x1"
    QString summary() const;
    /// @return a text for each argument that violates the contract
    QStringList violations() const { return m_violations; }

private:
    void count(int entry) { ++m_counts[entry]; }
    void expect(bool condition, const char *violation);

    QObject *m_topology;
    QMap<int, int> m_counts;
    QStringList m_violations;
};

} // namespace check
