#include "Result.h"

#include <QtCore/QJsonArray>

#include <algorithm>
#include <array>

namespace check {

namespace {

constexpr std::array statusWords{"pass", "warning", "fail", "crash", "timeout", "skipped"};

Status statusFor(const QString &word)
{
    const auto found = std::find(statusWords.begin(), statusWords.end(), word.toLatin1());
    return found == statusWords.end() ? Status::Fail : Status(found - statusWords.begin());
}

} // namespace

QString wordFor(Status status)
{
    return QLatin1String(statusWords.at(size_t(status)));
}

bool isFailure(Status status)
{
    return status == Status::Fail || status == Status::Crash || status == Status::Timeout;
}

QJsonObject Result::toJson() const
{
    return {{QLatin1String("name"), name},
            {QLatin1String("level"), level},
            {QLatin1String("status"), wordFor(status)},
            {QLatin1String("line"), line},
            {QLatin1String("more"), QJsonArray::fromStringList(more)},
            {QLatin1String("milliseconds"), milliseconds}};
}

Result Result::fromJson(const QJsonObject &json)
{
    Result result;
    result.name = json.value(QLatin1String("name")).toString();
    result.level = json.value(QLatin1String("level")).toInt();
    result.status = statusFor(json.value(QLatin1String("status")).toString());
    result.line = json.value(QLatin1String("line")).toString();
    const QJsonArray lines = json.value(QLatin1String("more")).toArray();
    for (const auto &text : lines)
        result.more.append(text.toString());
    result.milliseconds = json.value(QLatin1String("milliseconds")).toInteger();
    return result;
}

} // namespace check
