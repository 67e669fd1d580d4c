#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QString>
#include <QtCore/QStringList>

namespace check {

enum class Status { Pass, Warning, Fail, Crash, Timeout, Skipped };

/// @return the word of a status in all reports: "pass", "warning", ...
QString wordFor(Status status);

/// @return true for a failed, crashed or timed-out check
bool isFailure(Status status);

/// The result of one check.
struct Result
{
    QString name; ///< name of the check, "4.batch-answers"
    int level = 0;
    Status status = Status::Skipped;
    QString line;     ///< first finding, or summary of a passed check
    QStringList more; ///< further findings, one line each
    qint64 milliseconds = 0;

    QJsonObject toJson() const;
    static Result fromJson(const QJsonObject &json);
};

} // namespace check
