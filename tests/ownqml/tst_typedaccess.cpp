#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QHash>
#include <QtCore/QMetaMethod>
#include <QtCore/QPluginLoader>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

using namespace Qt::StringLiterals;

namespace {

struct Function
{
    QString name;
    QList<QByteArray> parameters;
    QList<int> types;
    int returnType;
    qsizetype required; ///< parameters that every overload has
};

/// @return the type that QML has for a type of the plug-in
QString qmlType(int type)
{
    switch (type) {
    case QMetaType::Void:
        return u"void"_s;
    case QMetaType::Bool:
        return u"bool"_s;
    case QMetaType::QString:
        return u"string"_s;
    case QMetaType::UChar:
        return u"int"_s;
    case QMetaType::LongLong:
    case QMetaType::UInt:
        return u"double"_s;
    case QMetaType::QObjectStar:
        return u"QtObject"_s;
    default:
        return u"var"_s; // Qt 6.4 has no typed lists of values
    }
}

QString parametersOf(const Function &function)
{
    QStringList list;
    for (qsizetype i = 0; i < function.parameters.size(); ++i) {
        const bool optional = i >= function.required; // a typed parameter can't be undefined
        list.append(QString::fromLatin1(function.parameters.at(i)) + u": "_s +
                    (optional ? u"var"_s : qmlType(function.types.at(i))));
    }
    return list.join(u", "_s);
}

/// Wraps a line after commas to at most 100 characters.
QString wrapped(const QString &line)
{
    QString text;
    QString rest = line;
    while (rest.size() > 100) {
        const qsizetype end = rest.lastIndexOf(u", "_s, 99) + 1;
        text += rest.left(end) + u'\n';
        rest = u"            "_s + rest.mid(end + 1);
    }
    return text + rest + u'\n';
}

bool hasTexts(const Function &function)
{
    return function.parameters.contains("startDateTime");
}

/// QML has no overloads. The overload with times as texts gets another name, and parameters that
/// some overloads lack become optional.
QList<Function> functionsOf(const QMetaObject &metaObject)
{
    QList<Function> functions;
    for (int i = metaObject.methodOffset(); i < metaObject.methodCount(); ++i) {
        const QMetaMethod method = metaObject.method(i);
        if (method.methodType() != QMetaMethod::Method)
            continue;
        Function function{QString::fromLatin1(method.name()),
                          method.parameterNames(),
                          {},
                          method.returnType(),
                          method.parameterCount()};
        for (int p = 0; p < method.parameterCount(); ++p)
            function.types.append(method.parameterType(p));
        if (hasTexts(function))
            function.name += "ByText"_L1;
        if (!functions.isEmpty() && functions.constLast().name == function.name)
            functions.last().required = function.required; // moc's clone for a default argument
        else
            functions.append(function);
    }
    return functions;
}

/// Returns the expected contents of TessalinePlugin.qml, from the plug-in's meta-object.
QString typedAccess(const QMetaObject &metaObject)
{
    QString declared;
    QString forwarded;
    for (int i = metaObject.methodOffset(); i < metaObject.methodCount(); ++i) {
        const QMetaMethod signal = metaObject.method(i);
        if (signal.methodType() != QMetaMethod::Signal)
            continue;
        Function function{QString::fromLatin1(signal.name()),
                          signal.parameterNames(),
                          {},
                          QMetaType::Void,
                          signal.parameterCount()};
        for (int p = 0; p < signal.parameterCount(); ++p)
            function.types.append(signal.parameterType(p));
        const QString names = QString::fromLatin1(function.parameters.join(", "));
        declared += wrapped(u"    signal %1(%2)"_s.arg(function.name, parametersOf(function)));
        forwarded +=
            u"        function on%1%2(%3) {\n            access.%4(%3);\n        }\n"_s.arg(
                function.name.at(0).toUpper(), function.name.mid(1), names, function.name);
    }
    QString functions;
    const auto list = functionsOf(metaObject);
    for (const Function &function : list) {
        const bool returns = function.returnType != QMetaType::Void;
        QString target = function.name;
        if (hasTexts(function))
            target.chop(6);
        functions += wrapped(u"    function %1(%2): %3 {"_s.arg(
                         function.name, parametersOf(function), qmlType(function.returnType))) +
                     wrapped(u"        %1target.%2(%3);"_s.arg(
                         returns ? u"return "_s : QString(), target,
                         QString::fromLatin1(function.parameters.join(", ")))) +
                     u"    }\n"_s;
    }
    return uR"(import QtQml

/// Gives the plug-in's object types, so that tools check calls, arguments and signals. Do not edit
/// this file: a test compares it with the plug-in.
QtObject {
    id: access

    /// The plug-in's object, which the client puts into the QML context.
    required property var target

)"_s + declared +
           u'\n' + functions + uR"(
    readonly property Connections forwarding: Connections {
        target: access.target

)"_s + forwarded +
           u"    }\n}\n"_s;
}

struct Lint
{
    int exitCode;
    QString output;
};

Lint lint(const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(QStringLiteral(QMLLINT),
                  QStringList{u"-I"_s, QStringLiteral(QML_FOLDER)} + arguments);
    if (!process.waitForFinished(60'000))
        return {-1, process.errorString()};
    return {process.exitCode(), QString::fromUtf8(process.readAll())};
}

} // namespace

/// Tests the QML element that gives tools the types of the plug-in's object.
class TestTypedAccess : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void elementMatchesTheMetaObject()
    {
        QPluginLoader loader(QStringLiteral(PLUGIN_PATH));
        QVERIFY2(loader.instance(), qPrintable(loader.errorString()));
        const QString expected = typedAccess(*loader.instance()->metaObject());
        QFile file(QStringLiteral(QML_FOLDER "/Tessaline/TessalinePlugin.qml"));
        QVERIFY(file.open(QIODevice::ReadOnly | QIODevice::Text));
        if (QString::fromUtf8(file.readAll()) == expected)
            return;
        QFile right(QDir::current().filePath(u"TessalinePlugin.qml"_s));
        QVERIFY(right.open(QIODevice::WriteOnly) && right.write(expected.toUtf8()) > 0);
        QFAIL(qPrintable(u"%1 differs from the plug-in. Replace it with %2."_s.arg(
            file.fileName(), right.fileName())));
    }

    void lintAcceptsExamples()
    {
        const QFileInfoList examples = QDir(QStringLiteral(EXAMPLES)).entryInfoList({u"*.qml"_s});
        QVERIFY(!examples.isEmpty());
        for (const QFileInfo &example : examples) {
            const Lint found = lint({u"-I"_s, QStringLiteral(MODULES), example.filePath()});
            QVERIFY2(found.exitCode == 0 && found.output.isEmpty(), qPrintable(found.output));
        }
    }

    void lintFindsMistakes_data()
    {
        QTest::addColumn<QByteArray>("statement");
        QTest::addColumn<QString>("complaint"); // empty if qmllint accepts the line
        QTest::newRow("right")
            << QByteArray("function f(): bool { return root.plugin.deleteBookmark('1', 'r'); }")
            << QString();
        QTest::newRow("right signal")
            << QByteArray("readonly property TessalinePlugin other: TessalinePlugin { "
                          "target: null; onQueryAllBookmarksResponsed: {} }")
            << QString();
        QTest::newRow("unknown method")
            << QByteArray("function f(): bool { return root.plugin.deleteBookmrk('1', 'r'); }")
            << u"deleteBookmrk"_s;
        QTest::newRow("argument is missing")
            << QByteArray("function f(): bool { return root.plugin.deleteBookmark('1'); }")
            << u"arguments"_s;
        QTest::newRow("result is no list")
            << QByteArray("function f(): void { root.plugin.queryAllBookmarks().length; }")
            << u"length"_s;
        QTest::newRow("unknown signal")
            << QByteArray("readonly property TessalinePlugin other: TessalinePlugin { "
                          "target: null; onQueryAllBookmarksResponded: {} }")
            << u"onQueryAllBookmarksResponded"_s;
    }
    void lintFindsMistakes()
    {
        QFETCH(const QByteArray, statement);
        QFETCH(const QString, complaint);
        const QTemporaryDir folder;
        QFile file(folder.filePath(u"Caller.qml"_s));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("import QtQml\nimport Tessaline\nQtObject {\n    id: root\n"
                   "    required property TessalinePlugin plugin\n    " +
                   statement + "\n}\n");
        file.close();
        const Lint found = lint({u"--compiler"_s, u"warning"_s, file.fileName()});
        // Check the output, because since Qt 6.8 a warning does not change the exit code.
        QVERIFY2(complaint.isEmpty() ? found.exitCode == 0 : found.output.contains(complaint),
                 qPrintable(found.output));
    }
};

QTEST_GUILESS_MAIN(TestTypedAccess)
#include "tst_typedaccess.moc"
