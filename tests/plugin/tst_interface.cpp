#include "PluginHarness.h"

#include "PluginBase.h"

#include <QtCore/QMetaMethod>
#include <QtTest/QTest>

/// The one object: how the host makes it, and what QML finds on it.
class TestInterface : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isOneObjectUntilItIsDeleted();
    void knowsItsNameAfterInitialisation();
    void answersToItsClassAndItsInterface();
    void hasExactlyTheseMethods();
    void hasNothingElseForQml();
    void ignoresWhatIsNotForIt();
};

void TestInterface::isOneObjectUntilItIsDeleted()
{
    QPluginLoader loader(PluginHarness::libraryPath());
    QPluginLoader other(PluginHarness::libraryPath());
    const QPointer<QObject> object = loader.instance();
    QVERIFY(object);
    QCOMPARE(other.instance(), object.data());
    QVERIFY(!object->parent());

    delete object.data();
    const QPointer<QObject> next = loader.instance();
    QVERIFY(next);
    QCOMPARE(other.instance(), next.data());
    delete next.data();
}

void TestInterface::knowsItsNameAfterInitialisation()
{
    PluginHarness harness(PluginHarness::Bare);
    QVERIFY(harness.plugin().name.isEmpty());
    QVERIFY(harness.plugin().pluginID.isEmpty());
    QVERIFY(harness.plugin().InitialPluginBase(nullptr, nullptr, nullptr));
    QCOMPARE(harness.plugin().name, QStringLiteral("Corvanth"));
    QCOMPARE(harness.plugin().pluginID, QStringLiteral("2F6394EE90434A7190D7511370AFAE17"));
}

void TestInterface::answersToItsClassAndItsInterface()
{
    PluginHarness harness;
    QObject &object = harness.plugin();
    QCOMPARE(object.qt_metacast("Tessaline"), static_cast<void *>(&object));
    QCOMPARE(object.qt_metacast("com.MARLUNE.UIFramework.PluginInterface"),
             static_cast<void *>(&harness.plugin()));
    QCOMPARE(object.qt_metacast("QObject"), static_cast<void *>(&object));
    QCOMPARE(object.qt_metacast("PluginBase"), nullptr);
    QCOMPARE(object.qt_metacast(nullptr), nullptr);
}

void TestInterface::hasExactlyTheseMethods()
{
    // Signals come first; then the invokable methods, "+" marking a clone for default arguments
    // and a trailing "const" what does not change the object.
    const QStringList expected = {
        QStringLiteral("void addBookmarkResponsed(bool success)"),
        QStringLiteral("void addBookmarksResponsed(QStringList failCamNameList)"),
        QStringLiteral("void deleteBookmarkResponsed(bool success)"),
        QStringLiteral("void deleteBookmarksResponsed(QStringList failBookmarkIdList)"),
        QStringLiteral("void removeAllBookmarksResponsed(bool success)"),
        QStringLiteral("void updateBookmarkResponsed(bool success)"),
        QStringLiteral("void queryBookmarkForTimelineResponsed(bool success)"),
        QStringLiteral("void queryBookmarkForRecentResponsed(bool success)"),
        QStringLiteral("void queryAllBookmarksResponsed(bool done)"),
        QStringLiteral("void queryBookmarkForApiFinished(bool success)"),
        QStringLiteral("void getRecycleSettingResponse(uint reserveHour,bool enableRecycle)"),
        QStringLiteral("void updateRecycleSettingResponse(bool success)"),
        QStringLiteral("bool addBookmark(QString cameraID,QString locationID,QString relayPath,"
                       "qlonglong startTimestamp,qlonglong endTimestamp,QString desc,"
                       "QString creator,QString group)"),
        QStringLiteral("bool addBookmarks(QVariantList targetList,qlonglong startTimestamp,"
                       "qlonglong endTimestamp,QString desc,QString creator,QString group)"),
        QStringLiteral("bool addBookmarks(QVariantList targetList,QString startDateTime,"
                       "QString endDateTime,QString desc,QString creator,QString group)"),
        QStringLiteral("bool deleteBookmark(QString bookmarkID,QString relayPath)"),
        QStringLiteral("bool deleteBookmarks(QVariantList deleteList)"),
        QStringLiteral("bool updateBookmark(QString bookmarkID,QString desc,QString group)"),
        QStringLiteral("+bool updateBookmark(QString bookmarkID,QString desc)"),
        QStringLiteral("+bool updateBookmark(QString bookmarkID)"),
        QStringLiteral("bool removeAllBookmarks(QString relayPath)"),
        QStringLiteral("bool queryBookmarkForRecent(QString cameraID,QString relayPath,"
                       "uchar recentCnt)"),
        QStringLiteral("bool queryAllBookmarks()"),
        QStringLiteral("void queryBookmarkForAPI(QVariantList camIdList,QString startDateTime,"
                       "QString endDateTime)"),
        QStringLiteral("void queryBookmarkForAPI(QVariantList camIdList,qlonglong startTimestamp,"
                       "qlonglong endTimestamp)"),
        QStringLiteral("void clearTimelineModel(QString viewCellUID)"),
        QStringLiteral("void removeTimelineModel(QString viewCellUID)"),
        QStringLiteral("void setTimelineFocusInfo(QString locationID,QString relayPath,"
                       "QString viewCellUID)"),
        QStringLiteral("void setTimelineBoundary(qlonglong headBoundTs,qlonglong tailBoundTs,"
                       "QString viewCellUID)"),
        QStringLiteral("void getRecycleSetting()"),
        QStringLiteral("void updateRecycleSetting(uint reserveHour,bool enableRecycle)"),
        QStringLiteral("QObject* getBookmarkModelForTimeline(QString viewCellUID)"),
        QStringLiteral("QVariantList getBookmarkListForRecent()"),
        QStringLiteral("QVariantList getBookmarkListByNodeID(QString nodeID)"),
        QStringLiteral("QVariantMap getFilteredBookmarkList(QVariantMap filterMap)"),
        QStringLiteral("QVariantList getQueryBookmarkResult() const"),
    };

    PluginHarness harness;
    const QMetaObject *const metaObject = harness.plugin().metaObject();
    QStringList actual;
    for (int i = metaObject->methodOffset(); i < metaObject->methodCount(); ++i) {
        const QMetaMethod method = metaObject->method(i);
        QCOMPARE(method.access(), QMetaMethod::Public);
        const bool isSignal = i - metaObject->methodOffset() < 12;
        QCOMPARE(method.methodType(), isSignal ? QMetaMethod::Signal : QMetaMethod::Method);

        QStringList parameters;
        for (int p = 0; p < method.parameterCount(); ++p) {
            parameters.append(QString::fromLatin1(method.parameterTypeName(p) + ' ' +
                                                  method.parameterNames().at(p)));
        }
        actual.append(QLatin1String(method.attributes() & QMetaMethod::Cloned ? "+" : "") +
                      QLatin1String(method.typeName()) + QLatin1Char(' ') +
                      QString::fromLatin1(method.name()) + QLatin1Char('(') +
                      parameters.join(QLatin1Char(',')) + QLatin1Char(')') +
                      QLatin1String(method.isConst() ? " const" : ""));
    }
    QCOMPARE(actual, expected);
}

void TestInterface::hasNothingElseForQml()
{
    PluginHarness harness;
    const QMetaObject *const metaObject = harness.plugin().metaObject();
    QCOMPARE(metaObject->className(), "Tessaline");
    QCOMPARE(metaObject->superClass(), &QObject::staticMetaObject);
    QCOMPARE(metaObject->propertyCount(), metaObject->propertyOffset());
    QCOMPARE(metaObject->enumeratorCount(), metaObject->enumeratorOffset());
    QCOMPARE(metaObject->classInfoCount(), metaObject->classInfoOffset());
    QCOMPARE(metaObject->constructorCount(), 0);
}

void TestInterface::ignoresWhatIsNotForIt()
{
    PluginHarness harness;
    harness.openViewCell(QStringLiteral("cell"), QStringLiteral("loc"), QStringLiteral("A"));
    harness.takeSent();
    const QVariant record =
        serverRecord(QStringLiteral("id"), QStringLiteral("1"), QStringLiteral("loc"), 1, 2);

    // Known names but for their case, the correctly spelled query, and the host's other calls.
    for (const char *command : {"addbookmark", "ADDBOOKMARK", "AddBookmark ", "",
                                "QueryAllBookmarks", "QueryBookmarkForAPI", "Unknown"})
        harness.answer(QLatin1String(command), record, QStringLiteral("A"));
    PluginBase &plugin = harness.plugin();
    plugin.CommandProcessorEx(QStringLiteral("AddBookmark"), nullptr, record, nullptr,
                              QStringLiteral("0"), {}, true, QStringLiteral("A"));
    plugin.EventProcessorEx(QStringLiteral("AddBookmark"), nullptr, 1, 2, 3, record,
                            QStringLiteral("A"));
    for (const char *event : {"addBookmark", "EventTunnelConnected", "EventTunnelDisConnected"})
        plugin.EventProcessor(QLatin1String(event), 1, 2, 3, record, QStringLiteral("A"));
    plugin.HostHook1();
    plugin.HostHook2();
    plugin.HostHook3();

    QCOMPARE(harness.emitted->take(), QStringList());
    QCOMPARE(harness.takeSent(), QStringList());
    QCOMPARE(harness.log.take(), QStringList());
    const auto *const model = qobject_cast<QAbstractItemModel *>(
        harness.call<QObject *>("getBookmarkModelForTimeline", QStringLiteral("cell")));
    QCOMPARE(model->rowCount(), 0);
}

QTEST_GUILESS_MAIN(TestInterface)
#include "tst_interface.moc"
