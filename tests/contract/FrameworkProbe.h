#pragma once

#include <QtCore/QMap>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVariant>

class FrameworkWrapperBase;
class QObject;

namespace check {

/// A framework object made of nothing but a virtual table: tells which of its entries are called.
/// It declares the entries on its own, so that a plug-in built with another order of them shows.
class FrameworkProbe final
{
public:
    /// @param topology what the fourteenth entry gives for the topology plug-in's ID
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

    /// The entries that were called and how often, "2 x3, 14 x1".
    QString summary() const;
    /// What was wrong with the arguments.
    QStringList oddities() const { return m_oddities; }

private:
    void count(int entry) { ++m_counts[entry]; }
    void note(bool holds, const char *oddity);

    QObject *m_topology;
    QMap<int, int> m_counts;
    QStringList m_oddities;
};

} // namespace check
