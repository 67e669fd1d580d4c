#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QString>

#include <optional>

namespace check {

/// @param content the file, or its beginning
/// @return format and processor of a library: "ELF for x86-64", "PE for x86-64" or "no library"
QString formatOf(const QByteArray &content);

/// Checks whether this program can load a library from the file. Rejects pipes and devices, whose
/// content may be endless.
/// @return the problem; empty if there is none
QString problemOf(const QString &path);

/// The entries of a 64-bit ELF library that matter to the dynamic linker. Offsets that lie outside
/// of a damaged file are ignored.
struct ElfFile
{
    QList<QByteArray> exported;      ///< names of the defined global symbols
    QList<QByteArray> undefined;     ///< names of the undefined symbols, without weak ones
    QList<QByteArray> needed;        ///< file names of required libraries
    QList<QByteArray> searchFolders; ///< elements of DT_RPATH and DT_RUNPATH
    bool isRelro = false;            ///< relocated data becomes read-only
    bool bindsNow = false;           ///< all symbols are resolved at load
    bool hasExecutableStack = false;
    bool hasWritableCode = false; ///< a segment both writable and executable, or text relocations

    /// @return nullopt if the content is not a 64-bit ELF file
    static std::optional<ElfFile> read(const QByteArray &content);
};

} // namespace check
