#include "LogSink.h"

#include <QtCore/QDateTime>

#include <cstdio>
#include <memory>

namespace standin {

namespace {

QByteArray formatted(const LogLine &line)
{
    const QString time = QDateTime::currentDateTime().toString(Qt::ISODateWithMs);
    return time.toLatin1() + ' ' + line.severity + ' ' + line.module + ' ' + line.file + ':' +
           QByteArray::number(line.line) + ' ' + line.text + '\n';
}

} // namespace

void LogSink::useStandardError()
{
    m_file.close();
    m_callback = nullptr;
}

bool LogSink::useFile(const QString &path)
{
    useStandardError();
    m_file.setFileName(path);
    return m_file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered);
}

void LogSink::useCallback(std::function<void(const LogLine &)> callback)
{
    m_file.close();
    m_callback = std::move(callback);
}

void LogSink::write(const LogLine &line)
{
    if (m_callback) {
        // A copy, because the callback may install another one.
        const auto callback = m_callback;
        callback(line);
        return;
    }
    const QByteArray text = formatted(line);
    if (m_file.isOpen())
        m_file.write(text);
    else
        std::fwrite(text.constData(), 1, size_t(text.size()), stderr);
}

} // namespace standin
