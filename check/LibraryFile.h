#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QString>

#include <optional>

namespace check {

/// The kind of a library's file: "ELF for x86-64", "PE for x86-64", "no library".
QString formatOf(const QByteArray &content);

/// Why this program could not load any library from the file, or an empty text. Reads no more than
/// headers, and those of regular files only: a pipe or a device may have no end.
QString problemOf(const QString &path);

/// What the dynamic linker reads from an ELF library of 64 bits. Every offset in the file is
/// checked: a damaged file gives less, never a crash.
struct ElfFile
{
    QList<QByteArray> exported;      ///< names of the symbols that others can use
    QList<QByteArray> undefined;     ///< names of those that others must have, weak ones left out
    QList<QByteArray> needed;        ///< libraries
    QList<QByteArray> searchFolders; ///< of DT_RPATH and DT_RUNPATH
    bool isRelro = false;            ///< relocated data becomes read-only
    bool bindsNow = false;           ///< at load, hence all of it
    bool hasExecutableStack = false;
    bool hasWritableCode = false; ///< a segment both writable and executable, or text relocations

    /// Nothing for a file that is not such a library.
    static std::optional<ElfFile> read(const QByteArray &content);
};

} // namespace check
