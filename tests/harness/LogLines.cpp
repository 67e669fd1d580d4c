#include "LogLines.h"

#include "logging/LogControl.h"

LogLines::LogLines()
{
    standin::logging::writeTo([this](const standin::LogLine &line) {
        m_lines.append(QString::fromUtf8(line.file) + QLatin1String(": ") +
                       QString::fromUtf8(line.text));
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
