#pragma once

#include <QtCore/QStringList>

#include <functional>
#include <utility>

/// What is written through the host's logging library while this object lives, one line each:
/// "src/Tessaline_Req.cpp: Tessaline::addBookmark, send command failed".
class LogLines
{
public:
    LogLines();
    ~LogLines();
    Q_DISABLE_COPY_MOVE(LogLines)

    /// The lines since the last call.
    QStringList take() { return std::exchange(m_lines, {}); }
    /// The texts alone.
    QStringList takeTexts();

    /// Called with each line.
    std::function<void(const QString &line)> onLine;

private:
    QStringList m_lines;
};
