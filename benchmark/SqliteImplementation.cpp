#include "Implementations.h"

#include "Data.h"
#include "ReferenceModel.h"

#include <QtCore/QTimeZone>

#include <sqlite3.h>

using namespace Qt::StringLiterals;

namespace {

/// A prepared statement. Ends the program on an error.
class Statement
{
public:
    Statement(sqlite3 *database, const QByteArray &sql)
    {
        if (sqlite3_prepare_v2(database, sql.constData(), -1, &m_statement, nullptr) != SQLITE_OK)
            qFatal("%s: %s", sql.constData(), sqlite3_errmsg(database));
    }
    ~Statement() { sqlite3_finalize(m_statement); }
    Q_DISABLE_COPY_MOVE(Statement)

    Statement &bind(int index, const QString &text)
    {
        sqlite3_bind_text16(m_statement, index, text.utf16(), int(2 * text.size()),
                            SQLITE_TRANSIENT);
        return *this;
    }
    Statement &bind(int index, qint64 number)
    {
        sqlite3_bind_int64(m_statement, index, number);
        return *this;
    }
    /// Reads all columns of all rows. Returns the first column of the last row as a number.
    qint64 run()
    {
        qint64 first = 0;
        while (sqlite3_step(m_statement) == SQLITE_ROW) {
            first = sqlite3_column_int64(m_statement, 0);
            for (int i = 1; i < sqlite3_column_count(m_statement); ++i)
                sqlite3_column_text16(m_statement, i);
        }
        sqlite3_reset(m_statement);
        return first;
    }

private:
    sqlite3_stmt *m_statement = nullptr;
};

/// The bookmarks in a database in memory, with indexes for all queries.
class Sqlite : public Implementation
{
public:
    Sqlite(int count, bool fullText)
        : m_count(count)
        , m_fullText(fullText)
    {
        sqlite3_open(":memory:", &m_database);
        execute("CREATE TABLE bookmark (id TEXT, camera TEXT, cameraKey TEXT, cameraName TEXT,"
                " creator TEXT, description TEXT, grp TEXT, location TEXT, start INTEGER,"
                " end INTEGER, day INTEGER, timeRange TEXT);"
                "CREATE INDEX byStart ON bookmark (start);"
                "CREATE INDEX byDay ON bookmark (day DESC, start DESC);"
                "CREATE INDEX byCamera ON bookmark (cameraName, start DESC);"
                "CREATE INDEX ofCamera ON bookmark (cameraKey, day DESC, start DESC);"
                "CREATE TABLE batch (relay TEXT, camera TEXT, location TEXT, start INTEGER,"
                " end INTEGER, desc TEXT, creator TEXT, grp TEXT,"
                " UNIQUE (relay, camera, location))");
        insertAll();
        if (m_fullText) {
            execute("CREATE VIRTUAL TABLE texts USING fts5(cameraName, creator, description,"
                    " timeRange, content='bookmark', tokenize='trigram');"
                    "INSERT INTO texts(texts) VALUES ('rebuild')");
        }
    }
    ~Sqlite() override { sqlite3_close(m_database); }
    Q_DISABLE_COPY_MOVE(Sqlite)

    const char *name() const override { return m_fullText ? "SQLite full text" : "SQLite"; }

    std::function<void()> work(Job job) override
    {
        if (m_fullText) {
            if (job != Job::TextOfFew && job != Job::TextOfAll)
                return {};
            return [this, filter = filterOf(job)] { getFullTextPage(filter); };
        }
        switch (job) {
        case Job::ForgetAll:
            return [this] { deleteAll(); };
        case Job::StoreAnswer:
            return [this] { insertAll(); };
        case Job::GroupBatch:
            return [this, targets = data::batchTargets(m_count)] { groupBatch(targets); };
        case Job::ListOfCamera:
        case Job::ListOfAll:
        case Job::ManyAnswers:
        case Job::EmptyAnswers:
        case Job::TimelineItems:
            return {};
        default:
            return [this, filter = filterOf(job)] { getPage(filter); };
        }
    }

    void prepare(Job job) override
    {
        if (job == Job::StoreAnswer)
            deleteAll();
        else if (m_isEmpty)
            insertAll();
    }

private:
    void execute(const char *sql)
    {
        char *error = nullptr;
        if (sqlite3_exec(m_database, sql, nullptr, nullptr, &error) != SQLITE_OK)
            qFatal("%s: %s", sql, error);
    }

    /// Measures only the insertion: texts and days are computed before.
    void insertAll()
    {
        if (m_rows.isEmpty()) {
            const QTimeZone zone(data::timeZone());
            const QVariantMap names = data::cameraNames();
            const QVariantList records = data::serverRecords(m_count);
            for (const QVariant &record : records) {
                m_rows.append(referencemodel::displayRecord(record.toMap(), u"A"_s, names, zone));
            }
        }
        execute("BEGIN");
        Statement insert(m_database,
                         "INSERT INTO bookmark VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)");
        for (const QVariantMap &row : std::as_const(m_rows)) {
            const auto text = [&](const QString &key) { return row.value(key).toString(); };
            const qint64 start = row.value(u"startTimestamp"_s).toLongLong();
            insert.bind(1, text(u"bookmarkID"_s))
                .bind(2, text(u"cameraID"_s))
                .bind(3, u"A/"_s + text(u"cameraID"_s))
                .bind(4, text(u"cameraName"_s))
                .bind(5, text(u"creator"_s))
                .bind(6, text(u"description"_s))
                .bind(7, text(u"group"_s))
                .bind(8, text(u"locID"_s))
                .bind(9, start)
                .bind(10, row.value(u"endTimestamp"_s).toLongLong())
                .bind(11, start / 86'400'000)
                .bind(12, text(u"displayTimeRange"_s))
                .run();
        }
        execute("COMMIT");
        m_isEmpty = false;
    }

    void deleteAll()
    {
        execute("DELETE FROM bookmark");
        m_isEmpty = true;
    }

    void groupBatch(const QVariantList &targets)
    {
        execute("BEGIN; DELETE FROM batch");
        Statement insert(m_database,
                         "INSERT OR IGNORE INTO batch VALUES (?, ?, ?, 1, 2, 'Alarm', 'rule',"
                         " 'alarms')");
        for (const QVariant &element : targets) {
            const QVariantMap target = element.toMap();
            insert.bind(1, target.value(u"relayPath"_s).toString())
                .bind(2, target.value(u"CameraID"_s).toString())
                .bind(3, target.value(u"LocationID"_s).toString())
                .run();
        }
        execute("COMMIT");
        Statement(m_database, "SELECT * FROM batch ORDER BY relay, rowid").run();
    }

    void getPage(const QVariantMap &filter)
    {
        const bool byCamera = filter.value(u"groupKey"_s) == u"cameraName"_s;
        const QString text = filter.value(u"text"_s).toString();
        const QString camera = filter.value(u"nodeID"_s).toString();
        QByteArray where;
        if (!text.isEmpty())
            where = " AND (cameraName LIKE ?1 OR creator LIKE ?1 OR description LIKE ?1"
                    " OR timeRange LIKE ?1)";
        else if (!camera.isEmpty())
            where = " AND cameraKey = ?1";
        const QString wanted = text.isEmpty() ? camera : u'%' + text + u'%';
        const QByteArray order =
            byCamera ? " ORDER BY cameraName, start DESC" : " ORDER BY day DESC, start DESC";

        const qint64 from = filter.value(u"startTimestamp"_s).toLongLong();
        const qint64 to = filter.value(u"endTimestamp"_s).toLongLong();
        Statement(m_database, "SELECT count(*) FROM bookmark WHERE start BETWEEN ?3 AND ?4" + where)
            .bind(1, wanted)
            .bind(3, from)
            .bind(4, to)
            .run();
        // The plus keeps SQLite from using the index of times: the index of the order is faster.
        Statement(m_database, "SELECT * FROM bookmark WHERE +start BETWEEN ?3 AND ?4" + where +
                                  order + " LIMIT 50 OFFSET ?2")
            .bind(1, wanted)
            .bind(2, 50 * filter.value(u"pageNumber"_s).toLongLong())
            .bind(3, from)
            .bind(4, to)
            .run();
    }

    void getFullTextPage(const QVariantMap &filter)
    {
        const QString phrase = u'"' + filter.value(u"text"_s).toString() + u'"';
        Statement(m_database, "SELECT count(*) FROM texts WHERE texts MATCH ?1")
            .bind(1, phrase)
            .run();
        Statement(m_database, "SELECT bookmark.* FROM texts JOIN bookmark ON bookmark.rowid ="
                              " texts.rowid WHERE texts MATCH ?1 ORDER BY day DESC, start DESC"
                              " LIMIT 50")
            .bind(1, phrase)
            .run();
    }

    int m_count;
    bool m_fullText;
    sqlite3 *m_database = nullptr;
    QList<QVariantMap> m_rows;
    bool m_isEmpty = true;
};

} // namespace

std::unique_ptr<Implementation> makeSqlite(int count)
{
    return std::make_unique<Sqlite>(count, false);
}

std::unique_ptr<Implementation> makeSqliteFullText(int count)
{
    return std::make_unique<Sqlite>(count, true);
}
