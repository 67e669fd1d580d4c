#include "LoadedPlugin.h"
#include "SignalLines.h"

#include "PluginBase.h"

#include <QtTest/QTest>

#include <memory>

using namespace Qt::StringLiterals;

/// A client without the logging library. This program does not link it; the second run finds it by
/// the search path, so that both are held against the same results.
class TestLoggingAbsent : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void changesNothing()
    {
        QVERIFY(!isInMemory(LOG_LIBRARY));
        LoadedPlugin loaded;
        const bool onPath = qEnvironmentVariableIsSet("LOG_LIBRARY_ON_PATH");
        QCOMPARE(isInMemory(LOG_LIBRARY), onPath);

        // What writes a line, in each of the sources.
        const std::unique_ptr<QObject> object(loaded.object());
        auto &plugin = *qobject_cast<PluginBase *>(object.get());
        SignalLines emitted(object.get());
        for (const QString &command : {u"RemoveAllBookmarks"_s, u"QueryAllBookmars"_s})
            plugin.CommandProcessor(command, {}, nullptr, u"7"_s, {}, false, {});
        plugin.EventProcessor(u"AddBookmark"_s, 0, 0, 0, {}, {});
        bool sent = true;
        QMetaObject::invokeMethod(object.get(), "queryAllBookmarks", Q_RETURN_ARG(bool, sent));
        QVERIFY(!sent);
        sent = true;
        QMetaObject::invokeMethod(object.get(), "updateBookmark", Q_RETURN_ARG(bool, sent),
                                  Q_ARG(QString, u"b"_s));
        QVERIFY(!sent);
        QCOMPARE(emitted.take(), QStringList{u"removeAllBookmarksResponsed(false)"_s});
    }

    void cleanupTestCase() { QVERIFY(!isInMemory(LOG_LIBRARY)); }
};

QTEST_GUILESS_MAIN(TestLoggingAbsent)
#include "tst_logging_absent.moc"
