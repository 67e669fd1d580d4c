#pragma once

#include "BookmarkList.h"
#include "PluginBase.h"
#include "Timelines.h"

#include <QtCore/QList>
#include <QtCore/QSharedPointer>
#include <QtCore/QString>
#include <QtCore/QTimeZone>
#include <QtCore/QVariant>

#include <memory>
#include <vector>

class FrameworkWrapperBase;
class QStandardItem;
class TimeShiftBufferModel;

namespace tessaline {
class CameraNames;
class TimeFormatter;
template <typename Context>
struct ContextEnd;
} // namespace tessaline

/// The plug-in's only object: video bookmarks for the client.
///
/// QML calls the invokable methods; each sends one or more commands through the host's framework
/// and returns at once. The host delivers every answer to CommandProcessor(), which updates lists
/// and timeline models and emits the signal named after the request. All of it happens on the
/// thread in which the object lives.
///
/// Times are milliseconds since 1970-01-01T00:00:00 UTC; texts of times are "yyyy/MM/dd hh:mm:ss"
/// in the client machine's local time. A relay path names a station; the empty one names the server
/// to which the client is connected.
///
/// The client's QML depends on the order of signals and invokable methods, on their parameter names
/// and on their spelling ("Responsed", "ForApi" beside "ForAPI"). It also depends on the names of
/// types, which newer versions of moc copy as they are written here.
class Tessaline : public PluginBase
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID PluginBase_iid FILE "Tessaline.json")
    Q_INTERFACES(PluginBase)

public:
    ~Tessaline() override = default;

    // ---- Tessaline.cpp: calls from the host ----

    bool InitialPluginBase(QQmlContext *context, void *hostHandle,
                           FrameworkWrapperBase *framework) override;
    void EventProcessor(QString eventName, qint64, int, int, QVariant data,
                        const QString &relayPath) override;
    void EventProcessorEx(QString eventName, ConfigBase *config, qint64, int, int, QVariant data,
                          const QString &relayPath) override;
    void CommandProcessor(QString command, QVariant result, void *context, QString resultCode,
                          QString, bool, const QString &relayPath) override;
    void CommandProcessorEx(QString command, ConfigBase *config, QVariant result, void *context,
                            QString resultCode, QString, bool, const QString &relayPath) override;
    bool Init(QQmlContext *context) override;
    void PluginServerConnected() override;

    // ---- For C++ callers in the same process; not callable from QML ----

    /// @return true if the server allows the user to change settings; false before its answer
    bool hasSettingPermission() const;
    /// Sets the number of bookmarks on a page of getFilteredBookmarkList(), 50 by default. Any
    /// number is accepted.
    void setBookmarkNumberPerPage(int number);
    /// @return the display records of all bookmarks, as of the last queryAllBookmarks()
    QVariantList getBookmarkList();
    /// Emits needItems() of the view cell's model for the range, so that it is queried again.
    void queryBookmarkForTimeline(qint64 start, qint64 end, const QString &viewCellUID);
    /// Queries the bookmarks of a location in a range, for a view cell.
    /// @return true if the host accepted the command
    bool queryBookmarkForTimeline(const QString &locationID, const QString &relayPath,
                                  qint64 startTimestamp, qint64 endTimestamp,
                                  const QString &viewCellUID);

Q_SIGNALS:
    void addBookmarkResponsed(bool success);
    void addBookmarksResponsed(QStringList failCamNameList);
    void deleteBookmarkResponsed(bool success);
    void deleteBookmarksResponsed(QStringList failBookmarkIdList);
    void removeAllBookmarksResponsed(bool success);
    void updateBookmarkResponsed(bool success);
    void queryBookmarkForTimelineResponsed(bool success);
    void queryBookmarkForRecentResponsed(bool success);
    /// @param done false while answers of other stations are pending
    void queryAllBookmarksResponsed(bool done);
    void queryBookmarkForApiFinished(bool success);
    void getRecycleSettingResponse(uint reserveHour, bool enableRecycle);
    void updateRecycleSettingResponse(bool success);

public:
    // ---- Tessaline_Req.cpp: requests. They return true if the host accepted a command ----

    /// Adds a bookmark. Returns false for an empty camera identifier; nothing else is checked.
    Q_INVOKABLE bool addBookmark(const QString &cameraID, const QString &locationID,
                                 const QString &relayPath, qint64 startTimestamp,
                                 qint64 endTimestamp, const QString &desc, const QString &creator,
                                 const QString &group);
    /// Adds one bookmark on each camera. Sends one command for each station.
    /// @param targetList maps with "CameraID", "LocationID" and "relayPath"
    Q_INVOKABLE bool addBookmarks(const QVariantList &targetList, qint64 startTimestamp,
                                  qint64 endTimestamp, const QString &desc, const QString &creator,
                                  const QString &group);
    Q_INVOKABLE bool addBookmarks(const QVariantList &targetList, const QString &startDateTime,
                                  const QString &endDateTime, const QString &desc,
                                  const QString &creator, const QString &group);
    /// Deletes a bookmark. Without the setting permission: emits deleteBookmarkResponsed(false) and
    /// returns false.
    Q_INVOKABLE bool deleteBookmark(const QString &bookmarkID, const QString &relayPath);
    /// Deletes bookmarks. Without the setting permission: emits deleteBookmarksResponsed() with all
    /// identifiers and returns true.
    /// @param deleteList maps with "BookmarkID" and "relayPath"
    Q_INVOKABLE bool deleteBookmarks(const QVariantList &deleteList);
    /// Changes a bookmark. A null text leaves the field unchanged, an empty text clears it.
    Q_INVOKABLE bool updateBookmark(const QString &bookmarkID, const QString &desc = QString(),
                                    const QString &group = QString());
    /// Deletes all bookmarks of a station. Without the setting permission: emits
    /// removeAllBookmarksResponsed(false) and returns true.
    Q_INVOKABLE bool removeAllBookmarks(const QString &relayPath);
    /// Queries the newest bookmarks of a camera.
    /// @param cameraID sent as the location, because the server reads it there
    Q_INVOKABLE bool queryBookmarkForRecent(const QString &cameraID, const QString &relayPath,
                                            uchar recentCnt);
    /// Queries every sub-station. Supersedes an earlier query whose answers are pending.
    Q_INVOKABLE bool queryAllBookmarks();
    Q_INVOKABLE void queryBookmarkForAPI(const QVariantList &camIdList,
                                         const QString &startDateTime, const QString &endDateTime);
    Q_INVOKABLE void queryBookmarkForAPI(const QVariantList &camIdList, qint64 startTimestamp,
                                         qint64 endTimestamp);

    // ---- Tessaline.cpp: timeline models ----

    Q_INVOKABLE void clearTimelineModel(const QString &viewCellUID);
    Q_INVOKABLE void removeTimelineModel(const QString &viewCellUID);
    /// Sets the focus of a view cell and removes the items of its model.
    Q_INVOKABLE void setTimelineFocusInfo(const QString &locationID, const QString &relayPath,
                                          const QString &viewCellUID);
    Q_INVOKABLE void setTimelineBoundary(qint64 headBoundTs, qint64 tailBoundTs,
                                         const QString &viewCellUID);

    // ---- Tessaline_Local.cpp: recycle settings ----

    Q_INVOKABLE void getRecycleSetting();
    Q_INVOKABLE void updateRecycleSetting(uint reserveHour, bool enableRecycle);

    // ---- Tessaline.cpp, Tessaline_Req.cpp, Tessaline_Local.cpp: getters ----

    /// @return the view cell's list model, created on first use and owned by the plug-in; null if
    /// it could not be created, and the next call tries again
    Q_INVOKABLE QObject *getBookmarkModelForTimeline(const QString &viewCellUID);
    Q_INVOKABLE QVariantList getBookmarkListForRecent();
    /// @return the display records of one camera, by camera key. Also sorts the list of recent
    /// bookmarks, newest first.
    Q_INVOKABLE QVariantList getBookmarkListByNodeID(const QString &nodeID);
    /// Returns one page of the bookmark panel.
    /// @param filterMap "nodeID", "groupKey", "ascending", "text", "startTimestamp",
    ///                  "endTimestamp" and "pageNumber"
    /// @return "totalBookmarkNumber" and "bookmarkGroupList", a list of maps with "title" and
    ///         "bookmarkList"
    Q_INVOKABLE QVariantMap getFilteredBookmarkList(const QVariantMap &filterMap);
    /// @return the server records of the last successful queryBookmarkForAPI()
    Q_INVOKABLE QVariantList getQueryBookmarkResult() const;

private:
    struct AnswerRule;
    struct StationCommand;

    /// The arguments of CommandProcessor() that handlers read.
    struct Answer
    {
        const QVariant &result;
        void *context;
        const QString &resultCode;
        const QString &relayPath;
    };

    // ---- Tessaline.cpp ----

    static const AnswerRule *answerRule(const QString &command);
    QSharedPointer<TimeShiftBufferModel> CreateTimelineModel(const QString &viewCellUID);

    // ---- Tessaline_Local.cpp ----

    static QVariantMap CreateBookmarkItem(const QVariantMap &record,
                                          tessaline::CameraNames &camNames,
                                          tessaline::TimeFormatter &formatter);
    /// @return the record as an item of a timeline, or null if memory is short
    static std::unique_ptr<QStandardItem>
    CreateBookmarkModelItem(const QVariantMap &record, tessaline::CameraNames &camNames,
                            tessaline::TimeFormatter &formatter);
    /// @return the formatter for the server's zone and the present system locale
    std::shared_ptr<tessaline::TimeFormatter> timeFormatter();

    QObject *findTopologyPlugin() const;
    /// @return names by camera key and relay path, read from the topology plug-in by this call
    QVariantMap GetAllCamNames();
    /// @return relay paths of all sub-stations, in ascending order
    std::vector<QString> GetAllSubStations();

    // Filters and sort change a list of rows of m_allBookmarks.
    tessaline::Rows filterBookmarkListByTimestamp(qint64 startTimestamp, qint64 endTimestamp) const;
    void filterBookmarkListByText(tessaline::Rows &rows, const QString &text) const;
    void filterBookmarkListByNodeID(tessaline::Rows &rows, const QString &nodeID) const;
    /// @return the page's range within the sorted rows
    tessaline::Range filterBookmarkListByPageNumber(const tessaline::Rows &rows,
                                                    int pageNumber) const;
    /// Sorts the rows of the page; the order of the others is unspecified.
    void sortBookmarkListByKey(tessaline::Rows &rows, const QString &key, bool ascending,
                               tessaline::Range page);
    void sortRecentBookmarks();
    /// @return the display records of the rows in @p range
    QVariantList bookmarksAt(const tessaline::Rows &rows, tessaline::Range range) const;
    /// @return the display records of one camera, or of all cameras for an empty key
    QVariantList bookmarksOfCamera(const QString &nodeID) const;
    QList<QVariant> generateBookmarkGroupList(const QList<QVariant> &list, QString groupKey) const;

    // ---- Tessaline_Req.cpp ----

    /// Sends a command to the host, which may answer, and even delete this object, before the call
    /// returns.
    /// @return true if the host accepted the command
    bool sendCommand(const QString &command, const QVariant &payload, void *context,
                     const QString &relayPath);
    /// Sends a command without a context; logs a rejection with the line of the call.
    bool sendSingle(const char *scope, const QString &command, const QVariant &payload,
                    const QString &relayPath, int line = __builtin_LINE());
    /// Sends a command to several stations.
    /// @param finish called if the host accepted a command and no answer is pending at the end
    /// @return true if the host accepted at least one command
    template <typename Context, typename Finish>
    bool sendToStations(const StationCommand &request,
                        std::unique_ptr<Context, tessaline::ContextEnd<Context>> created,
                        Finish finish);

    // ---- Tessaline_ReqRespHandler.cpp ----

    static QVariantList bookmarksOf(const Answer &answer);
    void HandleAddBookmarkResp(const Answer &answer);
    void HandleAddBookmarksResp(const Answer &answer);
    void HandleDeleteBookmarkResp(const Answer &answer);
    void HandleDeleteBookmarksResp(const Answer &answer);
    void HandleUpdateBookmarkResp(const Answer &answer);
    void HandleQueryBookmarkForTimelineResp(const Answer &answer);
    void HandleQueryAllBookmarksResp(const Answer &answer);
    void HandleQueryBookmarkForRecentResp(const Answer &answer);
    void HandleQueryBookmarkForAPIResp(const Answer &answer);
    void HandleQuerySevTimezoneResp(const Answer &answer);
    void HandleQuerySettingPermissionResp(const Answer &answer);
    void HandleGetRecycleSettingResp(const Answer &answer);
    void HandleUpdateRecycleSettingResp(const Answer &answer);
    void finishQueryAnswer(const Answer &answer);
    /// Adds a new bookmark to every view cell that shows its location.
    /// @return false if a view cell has no model or an item could not be created
    bool addBookmarkToTimelineModel(const QVariantMap &record, const QString &relayPath);
    int showInViewCells(const QVariantMap &record, const QStringList &viewCells,
                        tessaline::CameraNames &camNames);
    QStringList placeAddedBookmarks(const QVariantList &records, tessaline::CameraNames &camNames);

    void *m_hostHandle = nullptr;                ///< not owned
    FrameworkWrapperBase *m_framework = nullptr; ///< not owned
    tessaline::Timelines m_timelines;
    quint64 m_queryAllGeneration = 0; ///< number of the newest query of all bookmarks
    QTimeZone m_serverTimeZone;       ///< zone of all displayed times
    bool m_hasSettingPermission = false;
    QList<QVariant> m_apiQueryResult; ///< server records
    tessaline::BookmarkList m_allBookmarks;
    QList<QVariant> m_recentBookmarks; ///< display records
    int m_bookmarksPerPage = 50;
    std::shared_ptr<tessaline::TimeFormatter> m_timeFormatter; ///< see timeFormatter()
};
