#include "logging/LogControl.h"

#include <QtCore/QFile>
#include <QtCore/QLibrary>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

using namespace standin;

namespace {

LogObject *logObject()
{
    LogObject *object = nullptr;
    LogTrace_GetGlobalObject(0, &object);
    return object;
}

void write(const LogObject *object, const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    object->writeLine(object->handle, format, arguments);
    va_end(arguments);
}

} // namespace

class TestLogging : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        logging::reset();
        m_lines.clear();
        logging::writeTo([this](const LogLine &line) { m_lines.append(line); });
    }
    void cleanupTestCase() { logging::reset(); }

    void isTheLibraryThatIsLoadedByName();
    void numbersModules();
    void remembersTheCheckedLine();
    void refusesLines();
    void withholdsParts_data();
    void withholdsParts();
    void formatsAnyText_data();
    void formatsAnyText();
    void writesToAFile();
    void resetsEverything();

private:
    QList<LogLine> m_lines;
};

void TestLogging::isTheLibraryThatIsLoadedByName()
{
#if defined(Q_OS_WIN)
    QLibrary library(QStringLiteral("QarnLogUtl.dll"));
#else
    QLibrary library(QStringLiteral("libQarnLogUtl.so"));
#endif
    const auto entry = reinterpret_cast<LogTrace_GetGlobalObject_t>(
        library.resolve(LogTrace_GetGlobalObject_name));
    QVERIFY2(entry, qPrintable(library.errorString()));
    LogObject *object = nullptr;
    entry(0, &object);
    QCOMPARE(object, logObject());
    entry(0, nullptr);
}

void TestLogging::numbersModules()
{
    const LogObject *object = logObject();
    quint32 first = 0;
    quint32 second = 0;
    object->registerModule(object->handle, 19, "One", &first);
    object->registerModule(object->handle, 20, nullptr, &second);
    object->registerModule(nullptr, 19, "Three", nullptr);

    QVERIFY(first != 0 && second != 0 && first != second);
    QStringList seen;
    const auto registrations = logging::registrations();
    for (const LogRegistration &registration : registrations)
        seen.append(QStringLiteral("%1 %2")
                        .arg(registration.constant)
                        .arg(QString::fromLatin1(registration.name)));
    QCOMPARE(seen.join(QLatin1Char(',')), QStringLiteral("19 One,20 ,19 Three"));
    QCOMPARE(registrations.at(1).number, second);
    QCOMPARE(logging::calls().registerModule, 3);
    QCOMPARE(logging::calls().withWrongHandle, 1);
}

void TestLogging::remembersTheCheckedLine()
{
    const LogObject *object = logObject();
    quint32 number = 0;
    object->registerModule(object->handle, 19, "Module", &number);
    {
        QByteArray file("src/File.cpp");
        QCOMPARE(object->checkLine(object->handle, number << 8 | 2, 0, file.constData(), 12), 0);
        file.fill('x'); // the text is the caller's, and only for the call
    }
    write(object, "%s, failed", "Scope");
    write(object, "unchecked");

    QCOMPARE(m_lines.size(), 2);
    const LogLine &line = m_lines.constFirst();
    QCOMPARE(line.module, "Module");
    QCOMPARE(line.severity, "error");
    QCOMPARE(line.severityWord, number << 8 | 2);
    QCOMPARE(line.file, "src/File.cpp");
    QCOMPARE(line.line, 12);
    QCOMPARE(line.format, "%s, failed");
    QCOMPARE(line.text, "Scope, failed");
    QCOMPARE(m_lines.at(1).file, QByteArray());
    QCOMPARE(m_lines.at(1).module, "module 0");
}

void TestLogging::refusesLines()
{
    const LogObject *object = logObject();
    logging::refuseLines(true);
    QVERIFY(object->checkLine(object->handle, 2, 0, "file", 1) != 0);
    logging::refuseLines(false);
    QCOMPARE(object->checkLine(object->handle, 2, 0, "file", 1), 0);
    QCOMPARE(logging::calls().checkLine, 2);
}

void TestLogging::withholdsParts_data()
{
    QTest::addColumn<LogParts>("parts");
    QTest::newRow("nothing") << LogParts();
    QTest::newRow("handle") << LogParts(LogPart::Handle);
    QTest::newRow("registration") << LogParts(LogPart::RegisterModule);
    QTest::newRow("check") << LogParts(LogPart::CheckLine);
    QTest::newRow("writing") << LogParts(LogPart::WriteLine);
    QTest::newRow("two") << (LogPart::CheckLine | LogPart::WriteLine);
}

void TestLogging::withholdsParts()
{
    QFETCH(const LogParts, parts);
    const LogObject *object = logObject();
    logging::withhold(LogPart::Handle | LogPart::RegisterModule); // replaced, not added to
    logging::withhold(parts);
    QCOMPARE(object->handle == nullptr, parts.testFlag(LogPart::Handle));
    QCOMPARE(object->registerModule == nullptr, parts.testFlag(LogPart::RegisterModule));
    QCOMPARE(object->checkLine == nullptr, parts.testFlag(LogPart::CheckLine));
    QCOMPARE(object->writeLine == nullptr, parts.testFlag(LogPart::WriteLine));
}

void TestLogging::formatsAnyText_data()
{
    QTest::addColumn<QByteArray>("argument");
    QTest::newRow("empty") << QByteArray("");
    QTest::newRow("format signs") << QByteArray("%s%n%d%%");
    QTest::newRow("not UTF-8") << QByteArray("\xff\xfe\x80");
    QTest::newRow("longer than any buffer") << QByteArray(100000, 'x');
}

void TestLogging::formatsAnyText()
{
    QFETCH(const QByteArray, argument);
    write(logObject(), "<%s>", argument.constData());
    QCOMPARE(m_lines.constLast().text, '<' + argument + '>');
    // A pointer where a number is expected: some digits, and no harm.
    write(logObject(), "%s, %d", "Scope", argument.constData());
    QVERIFY(m_lines.constLast().text.startsWith("Scope, "));
    write(logObject(), nullptr);
    QCOMPARE(m_lines.size(), 2);
}

void TestLogging::writesToAFile()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("log.txt"));
    QVERIFY(logging::writeToFile(path));
    const LogObject *object = logObject();
    quint32 number = 0;
    object->registerModule(object->handle, 19, "Module", &number);
    for (int line = 1; line <= 2; ++line) {
        object->checkLine(object->handle, number << 8 | 2, 0, "src/File.cpp", line);
        write(object, "%s, failed", "Scope");
    }

    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(file.readAll());
    static const QRegularExpression expected(QRegularExpression::anchoredPattern(QStringLiteral(
        R"((\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3} error Module src/File\.cpp:[12] Scope, failed\n){2})")));
    QVERIFY2(expected.match(text).hasMatch(), qPrintable(text));
    QVERIFY(!logging::writeToFile(folder.path()));
}

void TestLogging::resetsEverything()
{
    const LogObject *object = logObject();
    quint32 first = 0;
    quint32 second = 0;
    object->registerModule(object->handle, 19, "One", &first);
    logging::withhold(LogPart::Handle | LogPart::WriteLine);
    logging::refuseLines(true);
    object->checkLine(object->handle, 2, 0, "file", 1);

    logging::reset();

    QVERIFY(object->handle && object->writeLine);
    QCOMPARE(object->checkLine(object->handle, 2, 0, "file", 1), 0);
    QCOMPARE(logging::calls().checkLine, 1);
    QVERIFY(logging::registrations().isEmpty());
    object->registerModule(object->handle, 19, "Two", &second);
    QCOMPARE(second, first);
}

QTEST_GUILESS_MAIN(TestLogging)
#include "tst_logging.moc"
