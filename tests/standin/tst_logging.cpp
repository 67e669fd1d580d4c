#include "logging/LogControl.h"

#include <QtCore/QFile>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

using namespace Qt::Literals::StringLiterals;
using namespace standin;

namespace {

LogObject *logObject()
{
    LogObject *object = nullptr;
    LogTrace_GetGlobalObject(0, &object);
    return object;
}

quint32 registered(const char *module)
{
    quint32 number = 0;
    logObject()->registerModule(logObject()->handle, 19, module, &number);
    return number;
}

int check(quint32 severity, const char *file = "src/File.cpp", int line = 12)
{
    return logObject()->checkLine(logObject()->handle, severity, 0, file, line);
}

void write(const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    logObject()->writeLine(logObject()->handle, format, arguments);
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

    void writtenLineHasFileAndLevelOfItsCheck();
    void anotherArgumentGivesNoObject();
    void formatsAnyText();
    void writesToAFile();

private:
    QList<LogLine> m_lines;
};

void TestLogging::writtenLineHasFileAndLevelOfItsCheck()
{
    registered("Other");
    const quint32 severity = registered("Module") << 8 | 2;
    QByteArray file("src/File.cpp");
    QCOMPARE(check(severity, file.constData()), 0);
    file.fill('x'); // callers may reuse the buffer after the call
    write("%s, failed", "Scope");
    write("unchecked");
    QCOMPARE(m_lines.size(), 2);
    QCOMPARE(m_lines.at(0).severityWord, severity);
    QCOMPARE(m_lines.at(0).format, "%s, failed");
    const auto words = [](const LogLine &line) {
        return line.severity + ' ' + line.module + ' ' + line.file + ':' +
               QByteArray::number(line.line) + ' ' + line.text;
    };
    QCOMPARE(words(m_lines.at(0)), "error Module src/File.cpp:12 Scope, failed");
    QCOMPARE(words(m_lines.at(1)), "level 0 module 0 :0 unchecked");
}

void TestLogging::anotherArgumentGivesNoObject()
{
    LogObject *object = logObject();
    LogTrace_GetGlobalObject(1, &object);
    QCOMPARE(object, nullptr);
}

void TestLogging::formatsAnyText()
{
    for (const QByteArray &text : {QByteArray(""), QByteArray("%s%n%d%%"),
                                   QByteArray("\xff\xfe\x80"), QByteArray(100000, 'x')}) {
        write("<%s>", text.constData());
        QCOMPARE(m_lines.constLast().text, '<' + text + '>');
        // A pointer for a number format gives some digits and must do no harm.
        write("%s, %d", "Scope", text.constData());
        QVERIFY(m_lines.constLast().text.startsWith("Scope, "));
    }
    m_lines.clear();
    write(nullptr);
    QVERIFY(m_lines.isEmpty());
}

void TestLogging::writesToAFile()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"log.txt"_s);
    QVERIFY(logging::writeToFile(path));
    const quint32 module = registered("Module") << 8;
    check(module | 2);
    write("%s, failed", "Scope");
    check(module | 4);
    write("done");

    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QString text = QString::fromUtf8(file.readAll());
    text.replace(QRegularExpression(uR"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3})"_s), u"TIME"_s);
    QCOMPARE(text, u"TIME error Module src/File.cpp:12 Scope, failed\n"
                   "TIME info Module src/File.cpp:12 done\n"_s);
    QVERIFY(!logging::writeToFile(folder.path()));
}

QTEST_GUILESS_MAIN(TestLogging)
#include "tst_logging.moc"
