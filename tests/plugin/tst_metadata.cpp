#include "PluginHarness.h"

#include <QtCore/QFile>
#include <QtCore/QJsonObject>
#include <QtCore/QLibrary>
#include <QtTest/QTest>

/// What the host sees of the library before it makes the object.
class TestMetadata : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isReadWithoutLoading();
    void isTheBlobThatHostsScanFor();
    void exportsTheTwoEntryPoints();
    void hasNoFolderOfTheBuildMachine();
};

void TestMetadata::isReadWithoutLoading()
{
    const QPluginLoader loader(PluginHarness::libraryPath());
    const QJsonObject metaData = loader.metaData();
    QVERIFY(!loader.isLoaded());
    QCOMPARE(metaData.value(QLatin1String("IID")).toString(),
             QStringLiteral("com.MARLUNE.UIFramework.PluginInterface"));
    QCOMPARE(metaData.value(QLatin1String("className")).toString(), QStringLiteral("Tessaline"));
    QCOMPARE(metaData.value(QLatin1String("MetaData")).toObject(),
             (QJsonObject{{QStringLiteral("ClientOnly"), false},
                          {QStringLiteral("PluginID"),
                           QStringLiteral("2F6394EE90434A7190D7511370AFAE17")}}));
}

void TestMetadata::isTheBlobThatHostsScanFor()
{
    QByteArray expected = QByteArray::fromHex("01 06 07 00 bf 02 78 27");
    expected += "com.MARLUNE.UIFramework.PluginInterface";
    expected += QByteArray::fromHex("03 69") + "Tessaline" + QByteArray::fromHex("04 a2 6a");
    expected += "ClientOnly" + QByteArray::fromHex("f4 68") + "PluginID";
    expected += QByteArray::fromHex("78 20") + "2F6394EE90434A7190D7511370AFAE17";
    expected += QByteArray::fromHex("ff");
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
    expected.append(actual.size() - expected.size(),
                    '\0'); // some platforms round the size up to their alignment
    QVERIFY(actual.size() >= 116 && actual.size() <= 120);
    QCOMPARE(actual.toHex(' '), expected.toHex(' '));
}

void TestMetadata::exportsTheTwoEntryPoints()
{
    QLibrary library(PluginHarness::libraryPath());
    QVERIFY(library.resolve("qt_plugin_query_metadata_v2"));
    QVERIFY(library.resolve("qt_plugin_instance"));
    QVERIFY(!library.resolve("_ZN9Tessaline16staticMetaObjectE"));
    QVERIFY(!library.resolve("_ZTV9Tessaline"));
}

void TestMetadata::hasNoFolderOfTheBuildMachine()
{
#if defined(TESSALINE_INSTRUMENTED)
    QSKIP("Instrumented builds name folders for their own reports");
#endif
    QFile file(PluginHarness::libraryPath());
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    QVERIFY(bytes.contains("src/Tessaline_Req.cpp"));
    QVERIFY(!bytes.contains(TESSALINE_SOURCE_FOLDER));
}

QTEST_GUILESS_MAIN(TestMetadata)
#include "tst_metadata.moc"
