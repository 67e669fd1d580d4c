#include "EchoServer.h"

namespace driver {

using namespace Qt::StringLiterals;

standin::Answer EchoServer::execute(const QString &command, const QVariant &, const QString &)
{
    const auto record = [](const QString &id) {
        return serverRecord(id, u"1"_s, u"l"_s, 1000, 2000);
    };
    if (command == u"AddBookmark")
        return {record(u"x"_s)};
    if (command == u"AddBookmarks" || command == u"QueryBookmarkForApi")
        return {QVariantList{record(u"y"_s), QVariantMap(), record(u"x"_s)}};
    if (command.startsWith(u"Delete"_s))
        return {QStringList{u"x"_s}};
    if (command == u"QuerySettingPermission")
        return {true};
    return {QVariantMap{{u"Bookmarks"_s, QVariantList{record(u"x"_s)}}}};
}

} // namespace driver
