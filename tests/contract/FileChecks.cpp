#include "CheckContext.h"
#include "Checks.h"
#include "LibraryFile.h"

#include <QtCore/QFile>
#include <QtCore/QJsonObject>
#include <QtCore/QLibrary>
#include <QtCore/QPluginLoader>
#include <QtCore/QRegularExpression>
#include <QtCore/QVersionNumber>

#include <algorithm>

// Level 1: the library file. The plug-in object is not created.

namespace check {

using namespace Qt::StringLiterals;

namespace {

QByteArray contentOf(CheckContext &context)
{
    QFile file(context.library());
    if (!file.open(QIODevice::ReadOnly))
        context.fail(u"expected a readable file, found: "_s + file.errorString());
    return file.readAll();
}

/// @return the library as an ELF file; nullopt for another format, for which the check is skipped
std::optional<ElfFile> elfFileOf(CheckContext &context)
{
    const QByteArray content = contentOf(context);
    auto file = ElfFile::read(content);
    if (!file)
        context.skip(u"this check reads only 64-bit ELF libraries, and this is "_s +
                     formatOf(content));
    return file;
}

QString joined(QList<QByteArray> names)
{
    std::sort(names.begin(), names.end());
    return QString::fromUtf8(names.join(' '));
}

void checkExports(CheckContext &context)
{
    const auto file = elfFileOf(context);
    if (!file)
        return;
    // The linker also exports the file name, as the name of the base version.
    QList<QByteArray> names = file->exported;
    names.removeAll(QFile::encodeName(context.library().section(u'/', -1)));
    context.expect(joined(names) == u"qt_plugin_instance qt_plugin_query_metadata_v2",
                   u"the symbols qt_plugin_instance and qt_plugin_query_metadata_v2"_s,
                   joined(names));
    context.summarize(u"exports only the two entry points"_s);
}

void checkUnresolved(CheckContext &context)
{
    const auto file = elfFileOf(context);
    if (!file)
        return;
    // Searches only the library and the libraries that it names as needed: a symbol that another
    // library of this process defines may be missing in the client.
    QLibrary library(context.library());
    if (!library.load()) {
        context.fail(u"expected a library that loads, found: "_s + library.errorString());
        return;
    }
    for (const QByteArray &name : file->undefined)
        context.expect(library.resolve(name.constData()), u"all symbols in the needed libraries"_s,
                       u"no "_s + QString::fromLatin1(name));
    library.unload();
    context.summarize(
        u"the needed libraries define all %1 undefined symbols"_s.arg(file->undefined.size()));
}

void checkDependencies(CheckContext &context)
{
    const auto file = elfFileOf(context);
    if (!file)
        return;
    static const QRegularExpression known(
        u"^(libQt6(Core|Gui)|libTimeShiftBufferModel|libstdc\\+\\+|libgcc_s|libc|libm|libdl|"
        "libpthread|ld-linux.*)\\.so"_s);
    for (const QByteArray &name : file->needed) {
        const QString text = QString::fromUtf8(name);
        context.expect(known.match(text).hasMatch(),
                       u"only Qt Core, Qt Gui, the timeline model library and the C++ runtime"_s,
                       text);
    }
    context.summarize(u"needs "_s + joined(file->needed));
}

void checkBuildPaths(CheckContext &context)
{
    if (const auto file = ElfFile::read(contentOf(context))) {
        // The loader resolves an empty or relative folder against the current folder.
        for (const QByteArray &folder : file->searchFolders) {
            context.expect((folder + '/').startsWith("$ORIGIN/") || folder.startsWith("${ORIGIN}"),
                           u"search folders that begin with $ORIGIN"_s,
                           folder.isEmpty() ? u"an empty folder, which means the current folder"_s
                                            : QString::fromUtf8(folder));
        }
    }
    // Absolute paths of sources and debug files. Paths of system headers are harmless.
    static const QRegularExpression path(
        u"(?<![\\w.$}-])((/[\\w.+-]+){2,}|[A-Za-z]:[\\\\/][\\w.+\\\\/ -]+)"
        "\\.(cpp|cxx|cc|h|hpp|moc|pdb)(?!\\w)"_s);
    auto match = path.globalMatch(QString::fromLatin1(contentOf(context)));
    while (match.hasNext()) {
        const QString found = match.next().captured();
        context.expect(found.startsWith(u"/usr/"), u"no path of the build machine"_s, found);
    }
    context.summarize(u"no path of a source file, no search folder outside of $ORIGIN"_s);
}

void checkHardening(CheckContext &context)
{
    const auto file = elfFileOf(context);
    if (!file)
        return;
    context.expect(file->isRelro, u"data that is read-only after relocation (-z relro)"_s,
                   u"writable data"_s);
    context.expect(file->bindsNow, u"symbols resolved at load (-z now)"_s, u"lazy binding"_s);
    context.expect(!file->hasExecutableStack, u"a stack that is not executable"_s,
                   u"an executable stack"_s);
    context.expect(!file->hasWritableCode, u"read-only code"_s, u"writable code"_s);
    context.summarize(u"full RELRO, no executable stack, no writable code"_s);
}

void checkMetadata(CheckContext &context)
{
    const QJsonObject metadata = QPluginLoader(context.library()).metaData();
    if (metadata.isEmpty()) {
        context.fail(u"expected Qt plug-in metadata, found none"_s);
        return;
    }
    context.compare(u"IID"_s, u"com.MARLUNE.UIFramework.PluginInterface"_s,
                    metadata.value(u"IID"_s).toString());
    context.compare(u"className"_s, u"Tessaline"_s, metadata.value(u"className"_s).toString());

    const QJsonObject user = metadata.value(u"MetaData"_s).toObject();
    context.compare(u"keys"_s, u"ClientOnly PluginID"_s, user.keys().join(u' '));
    const QJsonValue clientOnly = user.value(u"ClientOnly"_s);
    context.expect(clientOnly.isBool() && !clientOnly.toBool(), u"ClientOnly: false"_s,
                   clientOnly.toVariant().toString());
    const QJsonValue id = user.value(u"PluginID"_s);
    context.compare(u"PluginID"_s, u"2F6394EE90434A7190D7511370AFAE17"_s,
                    id.isString() ? id.toString() : u"a value that is not a text"_s);
    context.summarize(u"interface, class name and plug-in ID are correct"_s);
}

void checkMetadataBytes(CheckContext &context)
{
    QLibrary library(context.library());
    using Query = QPluginMetaData (*)();
    const auto query = reinterpret_cast<Query>(library.resolve("qt_plugin_query_metadata_v2"));
    if (!context.expect(query, u"the entry point qt_plugin_query_metadata_v2"_s, u"none"_s))
        return;
    const QPluginMetaData blob = query();
    QByteArray found(static_cast<const char *>(blob.data), qsizetype(blob.size));
    const auto hex = [](const char *bytes) { return QByteArray::fromHex(bytes); };
    QByteArray expected = hex("01 06 00 00 bf 02 78 27") +
                          "com.MARLUNE.UIFramework.PluginInterface" + hex("03 69") + "Tessaline" +
                          hex("04 a2 6a") + "ClientOnly" + hex("f4 68") + "PluginID" +
                          hex("78 20") + "2F6394EE90434A7190D7511370AFAE17" + hex("ff");
    // Ignore the minor version of Qt and the flag of a debug build.
    found.replace(2, 2, QByteArray(2, '\0'));
    // Some compilers round the size up to their alignment.
    constexpr qsizetype MaxPadding = 4;
    if (found.size() > expected.size() && found.size() <= expected.size() + MaxPadding)
        expected.append(found.size() - expected.size(), '\0');
    context.compare(u"metadata"_s, QString::fromLatin1(expected.toHex(' ')),
                    QString::fromLatin1(found.toHex(' ')));
    library.unload();
    context.summarize(u"all %1 bytes are correct"_s.arg(expected.size()));
}

void checkQtVersion(CheckContext &context)
{
    const QJsonObject metadata = QPluginLoader(context.library()).metaData();
    const int version = metadata.value(u"version"_s).toInt();
    const QVersionNumber built(version >> 16, (version >> 8) & 0xff);
    const QVersionNumber running =
        QVersionNumber::fromString(QLatin1String(qVersion())).normalized();
    const QVersionNumber runningMinor(running.majorVersion(), running.minorVersion());
    context.expect(built.majorVersion() == 6 && built <= runningMinor,
                   u"built with Qt 6, at most "_s + runningMinor.toString(), built.toString());
    if (metadata.value(u"debug"_s).toBool())
        context.warn(u"expected a release build, found a debug build"_s);
    context.summarize(
        u"built with Qt %1, running on %2"_s.arg(built.toString(), running.toString()));
}

} // namespace

std::vector<Check> fileChecks()
{
    return {
        {"1.exports", "The library exports only the entry points of Qt's plug-in protocol",
         checkExports},
        {"1.unresolved", "The needed libraries define every undefined symbol", checkUnresolved},
        {"1.dependencies",
         "The library needs only Qt Core, Qt Gui, the timeline model and the C++ runtime",
         checkDependencies},
        {"1.build-paths", "The library contains no path of the build machine", checkBuildPaths},
        {"1.hardening", "The linker's memory protection is switched on", checkHardening},
        {"1.metadata", "The metadata has the interface, class name and plug-in ID", checkMetadata},
        {"1.metadata-bytes",
         "The metadata is correct byte by byte, because hosts scan the file for it",
         checkMetadataBytes},
        {"1.qt-version", "The library was not built with a newer Qt than the running one",
         checkQtVersion},
    };
}

} // namespace check
