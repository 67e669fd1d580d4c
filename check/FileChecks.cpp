#include "Checks.h"
#include "LibraryFile.h"
#include "Trial.h"

#include <QtCore/QFile>
#include <QtCore/QJsonObject>
#include <QtCore/QLibrary>
#include <QtCore/QPluginLoader>
#include <QtCore/QRegularExpression>
#include <QtCore/QVersionNumber>

#include <algorithm>

// Level 1: the file, as far as it can be judged without running it.

namespace check {

using namespace Qt::StringLiterals;

namespace {

QByteArray contentOf(Trial &trial)
{
    QFile file(trial.library());
    if (!file.open(QIODevice::ReadOnly))
        trial.fail(u"expected a readable file, found: "_s + file.errorString());
    return file.readAll();
}

/// The file for checks of what only ELF has; they are skipped for any other.
std::optional<ElfFile> elfFileOf(Trial &trial)
{
    const QByteArray content = contentOf(trial);
    auto file = ElfFile::read(content);
    if (!file)
        trial.skip(u"read from ELF libraries of 64 bits only; this is "_s + formatOf(content));
    return file;
}

QString joined(QList<QByteArray> names)
{
    std::sort(names.begin(), names.end());
    return QString::fromUtf8(names.join(' '));
}

void checkExports(Trial &trial)
{
    const auto file = elfFileOf(trial);
    if (!file)
        return;
    // With symbol versions in use the name of the version is exported as well.
    QList<QByteArray> names = file->exported;
    names.removeAll(QFile::encodeName(trial.library().section(u'/', -1)));
    trial.expect(joined(names) == u"qt_plugin_instance qt_plugin_query_metadata_v2",
                 u"the symbols qt_plugin_instance and qt_plugin_query_metadata_v2"_s,
                 joined(names));
    trial.summarize(u"the two entry points and nothing else"_s);
}

void checkUnresolved(Trial &trial)
{
    const auto file = elfFileOf(trial);
    if (!file)
        return;
    // Asked for in the library itself and in what it names as needed, not in this process: what
    // happens to be here may be missing there.
    QLibrary library(trial.library());
    if (!library.load()) {
        trial.fail(u"expected a library that loads, found: "_s + library.errorString());
        return;
    }
    for (const QByteArray &name : file->undefined)
        trial.expect(library.resolve(name.constData()), u"all symbols in the needed libraries"_s,
                     u"no "_s + QString::fromLatin1(name));
    library.unload();
    trial.summarize(u"%1 symbols, all in the needed libraries"_s.arg(file->undefined.size()));
}

void checkDependencies(Trial &trial)
{
    const auto file = elfFileOf(trial);
    if (!file)
        return;
    static const QRegularExpression known(
        u"^(libQt6(Core|Gui)|libTimeShiftBufferModel|libstdc\\+\\+|libgcc_s|libc|libm|libdl|"
        "libpthread|ld-linux.*)\\.so"_s);
    for (const QByteArray &name : file->needed) {
        const QString text = QString::fromUtf8(name);
        trial.expect(known.match(text).hasMatch(),
                     u"Qt Core, Qt Gui, the timeline model library and the C++ runtime alone"_s,
                     text);
    }
    trial.summarize(u"needs "_s + joined(file->needed));
}

void checkBuildPaths(Trial &trial)
{
    if (const auto file = ElfFile::read(contentOf(trial))) {
        // The loader resolves an empty or relative element against the current folder.
        for (const QByteArray &folder : file->searchFolders) {
            trial.expect((folder + '/').startsWith("$ORIGIN/") || folder.startsWith("${ORIGIN}"),
                         u"search folders that begin with $ORIGIN"_s,
                         folder.isEmpty() ? u"an empty one, which is the current folder"_s
                                          : QString::fromUtf8(folder));
        }
    }
    // Sources and debug files by absolute path; those of system headers tell nothing.
    static const QRegularExpression path(
        u"(?<![\\w.$}-])((/[\\w.+-]+){2,}|[A-Za-z]:[\\\\/][\\w.+\\\\/ -]+)"
        "\\.(cpp|cxx|cc|h|hpp|moc|pdb)(?!\\w)"_s);
    auto match = path.globalMatch(QString::fromLatin1(contentOf(trial)));
    while (match.hasNext()) {
        const QString found = match.next().captured();
        trial.expect(found.startsWith(u"/usr/"), u"no file of the build machine"_s, found);
    }
    trial.summarize(u"no absolute path of a source, no search folder outside of $ORIGIN"_s);
}

void checkHardening(Trial &trial)
{
    const auto file = elfFileOf(trial);
    if (!file)
        return;
    trial.expect(file->isRelro, u"data that is read-only after relocation (-z relro)"_s, u"none"_s);
    trial.expect(file->bindsNow, u"binding at load (-z now)"_s, u"lazy binding"_s);
    trial.expect(!file->hasExecutableStack, u"a stack without code"_s, u"an executable stack"_s);
    trial.expect(!file->hasWritableCode, u"code that is read-only"_s, u"writable code"_s);
    trial.summarize(u"full RELRO, no executable stack, no writable code"_s);
}

void checkMetadata(Trial &trial)
{
    const QJsonObject metadata = QPluginLoader(trial.library()).metaData();
    if (metadata.isEmpty()) {
        trial.fail(u"expected Qt plug-in metadata, found none"_s);
        return;
    }
    trial.compare(u"IID"_s, u"com.MARLUNE.UIFramework.PluginInterface"_s,
                  metadata.value(u"IID"_s).toString());
    trial.compare(u"className"_s, u"Tessaline"_s, metadata.value(u"className"_s).toString());

    const QJsonObject user = metadata.value(u"MetaData"_s).toObject();
    trial.compare(u"keys"_s, u"ClientOnly PluginID"_s, user.keys().join(u' '));
    const QJsonValue clientOnly = user.value(u"ClientOnly"_s);
    trial.expect(clientOnly.isBool() && !clientOnly.toBool(), u"ClientOnly: false"_s,
                 clientOnly.toVariant().toString());
    const QJsonValue id = user.value(u"PluginID"_s);
    trial.compare(u"PluginID"_s, u"2F6394EE90434A7190D7511370AFAE17"_s,
                  id.isString() ? id.toString() : u"no text"_s);
    trial.summarize(u"interface, class and user metadata as hosts look for them"_s);
}

void checkQtVersion(Trial &trial)
{
    const QJsonObject metadata = QPluginLoader(trial.library()).metaData();
    const int version = metadata.value(u"version"_s).toInt();
    const QVersionNumber built(version >> 16, (version >> 8) & 0xff);
    const QVersionNumber running =
        QVersionNumber::fromString(QLatin1String(qVersion())).normalized();
    const QVersionNumber runningMinor(running.majorVersion(), running.minorVersion());
    trial.expect(built.majorVersion() == 6 && built <= runningMinor,
                 u"built with Qt 6, at most "_s + runningMinor.toString(), built.toString());
    if (metadata.value(u"debug"_s).toBool())
        trial.warn(u"expected a release build, found one made for debugging"_s);
    trial.summarize(u"built with Qt %1, running on %2"_s.arg(built.toString(), running.toString()));
}

} // namespace

std::vector<Check> fileChecks()
{
    return {
        {"1.exports", "Only the two entry points of Qt's plug-in protocol leave it", checkExports},
        {"1.unresolved", "Every symbol is in a library that it names as needed", checkUnresolved},
        {"1.dependencies", "It needs no library beyond those agreed", checkDependencies},
        {"1.build-paths", "It tells nothing of the machine it was built on", checkBuildPaths},
        {"1.hardening", "Its memory is protected as far as the linker can", checkHardening},
        {"1.metadata", "Hosts find it: interface, class name, plug-in ID", checkMetadata},
        {"1.qt-version", "The running Qt is able to load it", checkQtVersion},
    };
}

} // namespace check
