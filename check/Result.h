#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QString>
#include <QtCore/QStringList>

namespace check {

enum class Status { Pass, Warning, Fail, Crash, Timeout, Skipped };

/// The word for a status as all reports use it: "pass", "warning" ...
QString wordFor(Status status);

/// Whether a check that ended so makes the library unfit.
bool isFailure(Status status);

/// What one check has found out.
struct Result
{
    QString name; ///< of the check, as "4.batches"
    int level = 0;
    Status status = Status::Skipped;
    QString line;     ///< what was expected and what was found, or what was looked at
    QStringList more; ///< further findings, one line each
    qint64 milliseconds = 0;

    QJsonObject toJson() const;
    static Result fromJson(const QJsonObject &json);
};

} // namespace check
