#pragma once

#include "LogControl.h"

#include <QtCore/QFile>

namespace standin {

/// Writes formatted lines to standard error, to a file or to a callback.
class LogSink
{
public:
    LogSink() = default;

    void useStandardError();
    bool useFile(const QString &path);
    void useCallback(std::function<void(const LogLine &)> callback);

    void write(const LogLine &line);

private:
    Q_DISABLE_COPY_MOVE(LogSink)

    QFile m_file; ///< closed while lines go elsewhere
    std::function<void(const LogLine &)> m_callback;
};

} // namespace standin
