#include "Data.h"

#include <random>

namespace data {

using namespace Qt::StringLiterals;

namespace {

constexpr int Cameras = 40;
constexpr qint64 FirstStart = 1'772'000'000'000; // in February 2026, so that summer time begins
constexpr int FourWeeks = 4 * 7 * 86'400;        // seconds

QString cameraID(int number)
{
    return u"camera-%1"_s.arg(number);
}

/// Returns a random number; unlike the standard distributions, the same with every library.
int below(std::mt19937 &random, int limit)
{
    return static_cast<int>(random() % static_cast<unsigned>(limit));
}

} // namespace

QVariantList serverRecords(int count)
{
    static const QStringList subjects{u"Van"_s, u"Delivery"_s, u"Person"_s, u"Dog"_s, u"Truck"_s};
    static const QStringList places{u"at the gate"_s, u"near the fence"_s, u"on the ramp"_s,
                                    u"in the yard"_s, u"by the dock"_s};
    std::mt19937 random(1);
    QVariantList records;
    records.reserve(count);
    for (int i = 0; i < count; ++i) {
        const qint64 start = FirstStart + qint64(1000) * below(random, FourWeeks);
        const QString subject =
            below(random, 100) < 8 ? u"Forklift"_s : subjects.at(below(random, 5));
        records.append(QVariantMap{
            {u"BookmarkID"_s, u"b-%1"_s.arg(i)},
            {u"CameraID"_s, cameraID(below(random, Cameras))},
            {u"LocationID"_s, u"location-1"_s},
            {u"StartTimestamp"_s, start},
            {u"EndTimestamp"_s, start + qint64(1000) * (5 + below(random, 120))},
            {u"Description"_s, u"%1 %2, no. %3"_s.arg(subject, places.at(below(random, 5))).arg(i)},
            {u"Creator"_s, below(random, 3) == 0 ? u"operator"_s : u"rule engine"_s},
            {u"Group"_s, u"group %1"_s.arg(below(random, 12))},
        });
    }
    return records;
}

QVariantMap cameraNames()
{
    QVariantMap names{{u"A"_s, u"Harbour"_s}};
    for (int i = 0; i < Cameras; ++i)
        names.insert(u"A/"_s + cameraID(i), u"Camera no. %1"_s.arg(i));
    return names;
}

QVariantList batchTargets(int count)
{
    QVariantList targets;
    for (int i = 0; i < count; ++i) {
        const int number = i % 10 == 9 ? i - 9 : i;
        targets.append(QVariantMap{{u"CameraID"_s, cameraID(number)},
                                   {u"LocationID"_s, u"location-1"_s},
                                   {u"relayPath"_s, u"relay-%1"_s.arg(number % 5)}});
    }
    return targets;
}

QByteArray timeZone()
{
    return QByteArrayLiteral("Europe/Berlin");
}

} // namespace data
