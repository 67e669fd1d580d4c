#include "BookmarkMaker.h"

#include <QtCore/QDateTime>
#include <QtCore/QTimeZone>

#include <algorithm>

namespace workbench {

namespace {

constexpr qint64 Second = 1'000;
constexpr qint64 Minute = 60 * Second;
constexpr qint64 Hour = 60 * Minute;

/// Relative number of bookmarks in each hour of a day, in the stations' zone.
constexpr std::size_t HourWeights[] = {2,  1, 1, 1, 2,  4,  7,  11, 14, 12, 10, 9,
                                       10, 9, 9, 9, 11, 14, 13, 9,  6,  5,  4,  3};

/// Subjects, all singular, and actions that fit them. Two of the 24 subjects are vans, so a search
/// for "van" finds about one bookmark in twelve.
struct Scenes
{
    QStringList subjects;
    QStringList actions;
};

const QList<Scenes> &scenes()
{
    static const QList<Scenes> list{
        {{QStringLiteral("White van"), QStringLiteral("Blue van"), QStringLiteral("Red car"),
          QStringLiteral("Silver car"), QStringLiteral("Lorry"), QStringLiteral("Tanker lorry"),
          QStringLiteral("Forklift"), QStringLiteral("Taxi")},
         {QStringLiteral("passes"), QStringLiteral("waits"), QStringLiteral("turns round"),
          QStringLiteral("stops in the way"), QStringLiteral("is loaded"),
          QStringLiteral("drives too fast"), QStringLiteral("comes back"),
          QStringLiteral("blocks the exit")}},
        {{QStringLiteral("Visitor"), QStringLiteral("Group of people"),
          QStringLiteral("Person in hood"), QStringLiteral("Courier"), QStringLiteral("Cleaner"),
          QStringLiteral("Technician"), QStringLiteral("Guard"), QStringLiteral("Child")},
         {QStringLiteral("passes"), QStringLiteral("waits"), QStringLiteral("turns round"),
          QStringLiteral("enters without a badge"), QStringLiteral("asks for the way"),
          QStringLiteral("comes back"), QStringLiteral("leaves by the side door"),
          QStringLiteral("is seen in the dark")}},
        {{QStringLiteral("Suitcase"), QStringLiteral("Box"), QStringLiteral("Pallet"),
          QStringLiteral("Bicycle"), QStringLiteral("Ladder"), QStringLiteral("Toolbox"),
          QStringLiteral("Rucksack"), QStringLiteral("Umbrella")},
         {QStringLiteral("is left alone"), QStringLiteral("is in the way"),
          QStringLiteral("is moved"), QStringLiteral("is taken away"),
          QStringLiteral("is found again"), QStringLiteral("falls over"),
          QStringLiteral("is reported by phone"), QStringLiteral("is gone")}},
    };
    return list;
}

/// Half of them are empty: most bookmarks have no remark.
const QStringList &remarks()
{
    static const QStringList words{
        QString(),
        QString(),
        QString(),
        QString(),
        QStringLiteral(", police informed"),
        QStringLiteral(", number plate readable"),
        QStringLiteral(", see the neighbouring camera"),
        QStringLiteral(", checked, no finding"),
    };
    return words;
}

const QStringList &creators()
{
    static const QStringList words{QStringLiteral("day shift"),   QStringLiteral("late shift"),
                                   QStringLiteral("night shift"), QStringLiteral("supervisor"),
                                   QStringLiteral("reception"),   QStringLiteral("guard")};
    return words;
}

const QStringList &groups()
{
    static const QStringList words{QString(),
                                   QString(),
                                   QStringLiteral("delivery"),
                                   QStringLiteral("incident"),
                                   QStringLiteral("maintenance"),
                                   QStringLiteral("traffic")};
    return words;
}

/// Returns the starts of all hours of the last four weeks, each repeated by its weight.
std::vector<qint64> weightedHours(qint64 now)
{
    const QTimeZone zone("Europe/Berlin");
    const QDate today = QDateTime::fromMSecsSinceEpoch(now, zone).date();
    std::vector<qint64> hours;
    for (int day = 0; day < BookmarkMaker::Days; ++day) {
        const qint64 start = today.addDays(-day).startOfDay(zone).toMSecsSinceEpoch();
        for (int hour = 0; hour < int(std::size(HourWeights)); ++hour) {
            const qint64 time = start + hour * Hour;
            if (time + Hour < now)
                hours.insert(hours.end(), HourWeights[hour], time);
        }
    }
    return hours;
}

} // namespace

BookmarkMaker::BookmarkMaker(const stations::StationConfig &station, quint32 seed, qint64 now)
    : m_station(station)
    , m_now(now)
    , m_hours(weightedHours(now))
{
    // The relay path is part of the seed: each station differs, whatever the number of stations.
    const QByteArray name = station.relayPath.toUtf8();
    const quint32 seeds[] = {seed, qChecksum(name)};
    m_random = QRandomGenerator(seeds);
}

QList<stations::Bookmark> BookmarkMaker::make(int count)
{
    QList<stations::Bookmark> bookmarks;
    if (m_station.cameras.isEmpty())
        return bookmarks;
    bookmarks.reserve(count);
    while (bookmarks.size() < count) {
        if (m_remaining == 0)
            beginIncident();
        stations::Bookmark bookmark = m_incident;
        bookmark.cameraID = m_station.cameras.at(m_camera).cameraID;
        // The square makes short bookmarks more frequent than long ones.
        const double length = m_random.generateDouble();
        bookmark.end =
            std::min(m_now, bookmark.start + 10 * Second + qint64(length * length * 12 * Minute));
        bookmarks.append(bookmark);

        --m_remaining;
        m_camera = (m_camera + 1) % m_station.cameras.size();
        m_incident.start =
            std::min(m_incident.start + m_random.bounded(20, 120) * Second, m_now - 10 * Second);
    }
    return bookmarks;
}

/// Several cameras see one incident in eight.
void BookmarkMaker::beginIncident()
{
    constexpr int OneIn = 8;
    m_remaining = m_random.bounded(OneIn) == 0 ? m_random.bounded(3, 9) : 1;
    m_camera = m_random.bounded(m_station.cameras.size());
    m_incident.locationID = m_station.locationID;
    m_incident.start = timeOfIncident();
    m_incident.description = description();
    m_incident.creator = oneOf(creators());
    m_incident.group = m_remaining > 1 ? QStringLiteral("incident") : oneOf(groups());
}

qint64 BookmarkMaker::timeOfIncident()
{
    const qint64 hour = m_hours.at(m_random.bounded(quint32(m_hours.size())));
    return hour + m_random.bounded(int(Hour / Second)) * Second;
}

QString BookmarkMaker::description()
{
    // Separate statements: each draws from the random generator, and the order of evaluation inside
    // one expression is up to the compiler.
    const Scenes &scene = scenes().at(m_random.bounded(scenes().size()));
    const QString &subject = oneOf(scene.subjects);
    const QString &action = oneOf(scene.actions);
    const QString &remark = oneOf(remarks());
    return subject + QLatin1Char(' ') + action + remark;
}

const QString &BookmarkMaker::oneOf(const QStringList &words)
{
    return words.at(m_random.bounded(words.size()));
}

} // namespace workbench
