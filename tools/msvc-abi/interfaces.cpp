// Compiles the interfaces of host/ without Qt's headers. Stubs suffice, because only the layout of
// the classes is checked. See tools/check-msvc-abi.sh.
#include <cstdarg>
#include <cstddef>

using qint64 = long long;
using quint32 = unsigned int;
#define Q_UNUSED(x) (void)(x);
#define Q_DISABLE_COPY_MOVE(Class)
#define Q_DECLARE_INTERFACE(Class, iid)

struct QMetaObject
{
    enum Call { InvokeMetaMethod };
};
struct QMetaMethod;
class QEvent;
class QTimerEvent;
class QChildEvent;
class QQmlContext;

// Three pointers and four pointers, as in Qt 6.
class QString
{
    void *d[3];

public:
    QString();
    QString(const QString &);
    ~QString();
};
class QVariant
{
    void *d[4];

public:
    QVariant();
    QVariant(const QVariant &);
    ~QVariant();
};

// The virtual functions of Qt's QObject, in their order.
class QObject
{
public:
    QObject();
    virtual const QMetaObject *metaObject() const;
    virtual void *qt_metacast(const char *);
    virtual int qt_metacall(QMetaObject::Call, int, void **);
    virtual ~QObject();
    virtual bool event(QEvent *);
    virtual bool eventFilter(QObject *, QEvent *);

protected:
    virtual void timerEvent(QTimerEvent *);
    virtual void childEvent(QChildEvent *);
    virtual void customEvent(QEvent *);
    virtual void connectNotify(const QMetaMethod &);
    virtual void disconnectNotify(const QMetaMethod &);

private:
    void *d_ptr;
};

#include "FrameworkWrapperBase.h"
#include "LogObject.h"
#include "PluginBase.h"

// A compiler computes the layout only of classes that are used.
struct Plugin : PluginBase
{
    bool InitialPluginBase(QQmlContext *, void *, FrameworkWrapperBase *) override;
    void EventProcessor(QString, qint64, int, int, QVariant, const QString &) override;
    void EventProcessorEx(QString, ConfigBase *, qint64, int, int, QVariant,
                          const QString &) override;
    void CommandProcessor(QString, QVariant, void *, QString, QString, bool,
                          const QString &) override;
    void CommandProcessorEx(QString, ConfigBase *, QVariant, void *, QString, QString, bool,
                            const QString &) override;
    bool Init(QQmlContext *) override;
};
struct Framework : FrameworkWrapperBase
{
};
Plugin *newPlugin()
{
    return new Plugin;
}
Framework *newFramework()
{
    return new Framework;
}
const LogObject logObject = {};
const void *theLogObject()
{
    return &logObject;
}
