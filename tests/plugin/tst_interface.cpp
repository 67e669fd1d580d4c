#include "PluginHarness.h"

#include "PluginBase.h"

#include <QtCore/QAbstractItemModel>
#include <QtCore/QFile>
#include <QtCore/QLibrary>
#include <QtCore/QMetaMethod>
#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

using namespace Qt::StringLiterals;

namespace {

// In this order; "+" marks a clone for default arguments.
const char *const methods = R"(
signal void addBookmarkResponsed(bool success)
signal void addBookmarksResponsed(QStringList failCamNameList)
signal void deleteBookmarkResponsed(bool success)
signal void deleteBookmarksResponsed(QStringList failBookmarkIdList)
signal void removeAllBookmarksResponsed(bool success)
signal void updateBookmarkResponsed(bool success)
signal void queryBookmarkForTimelineResponsed(bool success)
signal void queryBookmarkForRecentResponsed(bool success)
signal void queryAllBookmarksResponsed(bool done)
signal void queryBookmarkForApiFinished(bool success)
signal void getRecycleSettingResponse(uint reserveHour, bool enableRecycle)
signal void updateRecycleSettingResponse(bool success)
bool addBookmark(QString cameraID, QString locationID, QString relayPath, qlonglong startTimestamp,
                 qlonglong endTimestamp, QString desc, QString creator, QString group)
bool addBookmarks(QVariantList targetList, qlonglong startTimestamp, qlonglong endTimestamp,
                  QString desc, QString creator, QString group)
bool addBookmarks(QVariantList targetList, QString startDateTime, QString endDateTime,
                  QString desc, QString creator, QString group)
bool deleteBookmark(QString bookmarkID, QString relayPath)
bool deleteBookmarks(QVariantList deleteList)
bool updateBookmark(QString bookmarkID, QString desc, QString group)
+bool updateBookmark(QString bookmarkID, QString desc)
+bool updateBookmark(QString bookmarkID)
bool removeAllBookmarks(QString relayPath)
bool queryBookmarkForRecent(QString cameraID, QString relayPath, uchar recentCnt)
bool queryAllBookmarks()
void queryBookmarkForAPI(QVariantList camIdList, QString startDateTime, QString endDateTime)
void queryBookmarkForAPI(QVariantList camIdList, qlonglong startTimestamp, qlonglong endTimestamp)
void clearTimelineModel(QString viewCellUID)
void removeTimelineModel(QString viewCellUID)
void setTimelineFocusInfo(QString locationID, QString relayPath, QString viewCellUID)
void setTimelineBoundary(qlonglong headBoundTs, qlonglong tailBoundTs, QString viewCellUID)
void getRecycleSetting()
void updateRecycleSetting(uint reserveHour, bool enableRecycle)
QObject* getBookmarkModelForTimeline(QString viewCellUID)
QVariantList getBookmarkListForRecent()
QVariantList getBookmarkListByNodeID(QString nodeID)
QVariantMap getFilteredBookmarkList(QVariantMap filterMap)
QVariantList getQueryBookmarkResult() const
)";

QString lineOf(const QMetaMethod &method)
{
    QStringList parameters;
    for (int i = 0; i < method.parameterCount(); ++i) {
        parameters.append(
            QString::fromLatin1(method.parameterTypeName(i) + ' ' + method.parameterNames().at(i)));
    }
    const bool isSignal = method.methodType() == QMetaMethod::Signal;
    const bool isClone = method.attributes() & QMetaMethod::Cloned;
    return QLatin1String(isSignal ? "signal " : "") + QLatin1String(isClone ? "+" : "") +
           QLatin1String(method.typeName()) + u' ' + QString::fromLatin1(method.name()) + u'(' +
           parameters.join(", "_L1) + u')' + QLatin1String(method.isConst() ? " const" : "");
}

} // namespace

/// What the host sees of the library and of the one object, and what QML finds on that.
class TestInterface : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isTheBlobThatHostsScanFor()
    {
        const auto hex = [](const char *bytes) { return QByteArray::fromHex(bytes); };
        QByteArray expected =
            hex("01 06 07 00 bf 02 78 27") + "com.MARLUNE.UIFramework.PluginInterface" +
            hex("03 69") + "Tessaline" + hex("04 a2 6a") + "ClientOnly" + hex("f4 68") +
            "PluginID" + hex("78 20") + "2F6394EE90434A7190D7511370AFAE17" + hex("ff");
        QCOMPARE(expected.size(), 116);
        // The Qt it was built with, and whether that was a debug build, is all that may differ.
        expected[2] = QT_VERSION_MINOR;

        QLibrary library(PluginHarness::libraryPath());
        using Query = QPluginMetaData (*)();
        const auto query = reinterpret_cast<Query>(library.resolve("qt_plugin_query_metadata_v2"));
        QVERIFY(query);
        const QPluginMetaData blob = query();
        QByteArray actual(static_cast<const char *>(blob.data), qsizetype(blob.size));
        actual[3] = 0;
        // Some platforms round the size up to their alignment.
        QVERIFY(actual.size() >= 116 && actual.size() <= 120);
        expected.append(actual.size() - expected.size(), '\0');
        QCOMPARE(actual.toHex(' '), expected.toHex(' '));
    }

    void exportsTheEntryPointsAlone()
    {
        QLibrary library(PluginHarness::libraryPath());
        QVERIFY(library.resolve("qt_plugin_instance"));
        QVERIFY(!library.resolve("_ZTV9Tessaline"));
        QVERIFY(!library.resolve("_ZN9Tessaline16staticMetaObjectE"));
    }

    void hasNoFolderOfTheBuildMachine()
    {
#if defined(TESSALINE_INSTRUMENTED)
        QSKIP("Instrumented builds name folders for their own reports");
#endif
        QFile file(PluginHarness::libraryPath());
        QVERIFY(file.open(QIODevice::ReadOnly));
        QVERIFY(!file.readAll().contains(TESSALINE_SOURCE_FOLDER));
    }

    void answersToItsNames()
    {
        PluginHarness harness(PluginHarness::Bare);
        PluginBase &plugin = harness.plugin();
        QCOMPARE(plugin.name + plugin.pluginID, QString());
        QVERIFY(plugin.InitialPluginBase(nullptr, nullptr, nullptr));
        QCOMPARE(plugin.name, u"Corvanth"_s);
        QCOMPARE(plugin.pluginID, u"2F6394EE90434A7190D7511370AFAE17"_s);
        for (const char *name : {"Tessaline", "com.MARLUNE.UIFramework.PluginInterface", "QObject"})
            QCOMPARE(plugin.qt_metacast(name), static_cast<void *>(&plugin));
        for (const char *name : {"PluginBase", static_cast<const char *>(nullptr)})
            QCOMPARE(plugin.qt_metacast(name), nullptr);
    }

    void hasTheseMethodsAndNothingElse()
    {
        PluginHarness harness;
        const QMetaObject *const meta = harness.plugin().metaObject();
        QCOMPARE(meta->superClass(), &QObject::staticMetaObject);
        QCOMPARE(meta->propertyCount(), meta->propertyOffset());
        QCOMPARE(meta->enumeratorCount(), meta->enumeratorOffset());
        QCOMPARE(meta->constructorCount(), 0);
        QStringList actual;
        for (int i = meta->methodOffset(); i < meta->methodCount(); ++i) {
            QCOMPARE(meta->method(i).access(), QMetaMethod::Public);
            actual.append(lineOf(meta->method(i)));
        }
        const QString expected = QString::fromLatin1(methods).trimmed();
        QCOMPARE(actual, expected.split(QRegularExpression(u"\n(?! )"_s))
                             .replaceInStrings(QRegularExpression(u"\n +"_s), u" "_s));
    }

    void ignoresWhatIsNotForIt()
    {
        PluginHarness harness;
        const auto *const model = harness.openViewCell(u"cell"_s, u"loc"_s, u"A"_s);
        const QVariant record = serverRecord(u"id"_s, u"1"_s, u"loc"_s, 1, 2);

        PluginBase &plugin = harness.plugin();
        for (const QString &name : {u"addbookmark"_s, u"AddBookmark "_s, u"QueryAllBookmarks"_s,
                                    u"QueryBookmarkForAPI"_s, u""_s}) {
            harness.answer(name, record, u"A"_s);
            plugin.EventProcessor(name, 1, 2, 3, record, u"A"_s);
        }
        plugin.CommandProcessorEx(u"AddBookmark"_s, {}, record, {}, u"0"_s, {}, true, u"A"_s);
        plugin.EventProcessorEx(u"AddBookmark"_s, nullptr, 1, 2, 3, record, u"A"_s);
        plugin.HostHook1();
        plugin.HostHook2();
        plugin.HostHook3();
        QCOMPARE(harness.emitted->take() + harness.takeSent() + harness.log.take(), QStringList());
        QCOMPARE(model->rowCount(), 0);
    }
};

QTEST_GUILESS_MAIN(TestInterface)
#include "tst_interface.moc"
