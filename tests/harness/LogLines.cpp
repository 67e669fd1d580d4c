#include "LogLines.h"

#include "logging/LogControl.h"

#include <QtCore/QDir>

LogLines::LogLines()
{
    standin::logging::writeTo([this](const standin::LogLine &line) {
        m_lines.append(QDir::fromNativeSeparators(QString::fromUtf8(line.file)) +
                       QString::fromLocal8Bit(": " + line.text));
        if (onLine)
            onLine(m_lines.constLast());
    });
}

LogLines::~LogLines()
{
    standin::logging::writeToStandardError();
}

QStringList LogLines::takeTexts()
{
    QStringList texts = take();
    for (QString &text : texts)
        text = text.section(QLatin1String(": "), 1);
    return texts;
}
