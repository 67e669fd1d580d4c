#include "LibraryFile.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QtEndian>

#include <algorithm>

namespace check {

namespace {

// Names as in the ELF standard, without its prefixes.
constexpr quint32 SegmentLoad = 1;
constexpr quint32 SegmentDynamic = 2;
constexpr quint32 SegmentGnuStack = 0x6474e551;
constexpr quint32 SegmentGnuRelro = 0x6474e552;
constexpr quint32 Executable = 1;
constexpr quint32 Writable = 2;
constexpr quint32 SectionDynamicSymbols = 11;

enum DynamicTag : quint64 {
    TagNull = 0,
    TagNeeded = 1,
    TagStringTable = 5,
    TagRpath = 15,
    TagTextRelocations = 22,
    TagBindNow = 24,
    TagRunpath = 29,
    TagFlags = 30,
    TagFlags1 = 0x6ffffffb,
};

constexpr char Bits64LittleEndian[] = "\x7f"
                                      "ELF\x02\x01";

constexpr quint64 FlagTextRelocations = 4;
constexpr quint64 FlagBindNow = 8;
constexpr quint64 Flag1Now = 1;

constexpr qsizetype SegmentSize = 56;
constexpr qsizetype SectionSize = 64;
constexpr qsizetype DynamicSize = 16;
constexpr qsizetype SymbolSize = 24;

/// Reads little-endian numbers and texts at offsets. Outside of the file numbers are 0 and texts
/// are empty.
class Bytes
{
public:
    explicit Bytes(const QByteArray &content)
        : m_content(content)
    {
    }

    template <typename Number>
    Number at(quint64 offset) const
    {
        const auto size = quint64(m_content.size());
        if (offset > size || size - offset < sizeof(Number))
            return 0;
        return qFromLittleEndian<Number>(m_content.constData() + offset);
    }

    quint64 size() const { return quint64(m_content.size()); }

    QByteArray textAt(quint64 offset) const
    {
        if (offset >= quint64(m_content.size()))
            return {};
        const auto start = qsizetype(offset);
        const qsizetype end = m_content.indexOf('\0', start);
        return m_content.mid(start, end < 0 ? -1 : end - start);
    }

private:
    const QByteArray &m_content;
};

/// Names the difference of an ELF header from a 64-bit little-endian one; empty if there is none.
QString headerNote(const QByteArray &content)
{
    const QByteArray classAndOrder = content.mid(4, 2);
    if (classAndOrder == "\x02\x01")
        return {};
    if (classAndOrder == "\x01\x01")
        return QStringLiteral(" (32 bits)");
    if (classAndOrder == "\x01\x02" || classAndOrder == "\x02\x02")
        return QStringLiteral(" (big-endian)");
    return QStringLiteral(" (damaged header)");
}

QString machineOf(quint32 elfMachine, quint32 peMachine)
{
    struct Machine
    {
        quint32 elf;
        quint32 pe;
        const char *name;
    };
    static constexpr Machine machines[] = {
        {62, 0x8664, "x86-64"}, {183, 0xaa64, "ARM64"}, {3, 0x14c, "x86"}, {40, 0x1c4, "ARM"}};
    for (const Machine &machine : machines) {
        if (machine.elf == elfMachine || machine.pe == peMachine)
            return QLatin1String(machine.name);
    }
    return QStringLiteral("another machine");
}

struct Segment
{
    quint32 type;
    quint32 flags;
    quint64 offset;
    quint64 address;
    quint64 size;
};

QList<Segment> segmentsOf(const Bytes &bytes)
{
    QList<Segment> segments;
    const auto table = bytes.at<quint64>(32);
    const auto count = bytes.at<quint16>(56);
    for (quint64 i = 0; i < count; ++i) {
        const quint64 entry = table + i * SegmentSize;
        segments.append({bytes.at<quint32>(entry), bytes.at<quint32>(entry + 4),
                         bytes.at<quint64>(entry + 8), bytes.at<quint64>(entry + 16),
                         bytes.at<quint64>(entry + 32)});
    }
    return segments;
}

/// Returns true if all parts that the ELF headers name lie inside the file. The dynamic linker does
/// not check this, and reading a page beyond the end of the file raises SIGBUS.
bool isComplete(const QByteArray &content)
{
    const Bytes bytes(content);
    const auto contains = [&](quint64 offset, quint64 size) {
        return offset <= bytes.size() && size <= bytes.size() - offset;
    };
    const QList<Segment> segments = segmentsOf(bytes);
    return contains(bytes.at<quint64>(32), bytes.at<quint16>(56) * quint64(SegmentSize)) &&
           contains(bytes.at<quint64>(40), bytes.at<quint16>(60) * quint64(SectionSize)) &&
           std::all_of(segments.cbegin(), segments.cend(), [&](const Segment &segment) {
               return contains(segment.offset, segment.size);
           });
}

/// Converts an address of the loaded library to an offset in the file.
quint64 offsetOf(const QList<Segment> &segments, quint64 address)
{
    for (const Segment &segment : segments) {
        if (segment.type == SegmentLoad && address >= segment.address &&
            address - segment.address < segment.size)
            return segment.offset + (address - segment.address);
    }
    return ~quint64(0);
}

void readDynamic(ElfFile &file, const Bytes &bytes, const QList<Segment> &segments,
                 const Segment &dynamic)
{
    QList<quint64> needed;
    QList<quint64> folders;
    quint64 strings = ~quint64(0);
    for (quint64 i = 0; i < std::min(dynamic.size, bytes.size()) / DynamicSize; ++i) {
        const auto tag = bytes.at<quint64>(dynamic.offset + i * DynamicSize);
        const auto value = bytes.at<quint64>(dynamic.offset + i * DynamicSize + 8);
        if (tag == TagNull)
            break;
        if (tag == TagNeeded)
            needed.append(value);
        else if (tag == TagRpath || tag == TagRunpath)
            folders.append(value);
        else if (tag == TagStringTable)
            strings = offsetOf(segments, value);
        file.bindsNow = file.bindsNow || tag == TagBindNow ||
                        (tag == TagFlags && (value & FlagBindNow)) ||
                        (tag == TagFlags1 && (value & Flag1Now));
        file.hasWritableCode = file.hasWritableCode || tag == TagTextRelocations ||
                               (tag == TagFlags && (value & FlagTextRelocations));
    }
    for (const quint64 name : std::as_const(needed))
        file.needed.append(bytes.textAt(strings + name));
    for (const quint64 list : std::as_const(folders))
        file.searchFolders += bytes.textAt(strings + list).split(':');
}

void readSymbols(ElfFile &file, const Bytes &bytes)
{
    const auto table = bytes.at<quint64>(40);
    const auto count = bytes.at<quint16>(60);
    for (quint64 i = 0; i < count; ++i) {
        const quint64 section = table + i * SectionSize;
        if (bytes.at<quint32>(section + 4) != SectionDynamicSymbols)
            continue;
        const auto symbols = bytes.at<quint64>(section + 24);
        const auto size = bytes.at<quint64>(section + 32);
        const auto link = bytes.at<quint32>(section + 40);
        const auto strings = bytes.at<quint64>(table + link * SectionSize + 24);
        for (quint64 read = 0; read < std::min(size, bytes.size()); read += SymbolSize) {
            const quint64 symbol = symbols + read;
            const QByteArray name = bytes.textAt(strings + bytes.at<quint32>(symbol));
            const int binding = bytes.at<quint8>(symbol + 4) >> 4;
            const bool isLocal = binding == 0;
            const bool isWeak = binding == 2;
            const bool isDefined = bytes.at<quint16>(symbol + 6) != 0;
            if (isLocal || name.isEmpty())
                continue;
            if (isDefined)
                file.exported.append(name);
            else if (!isWeak)
                file.undefined.append(name);
        }
    }
}

QString formatOfThisProgram()
{
    QFile file(QCoreApplication::applicationFilePath());
    return file.open(QIODevice::ReadOnly) ? formatOf(file.read(4096)) : QString();
}

} // namespace

QString formatOf(const QByteArray &content)
{
    const Bytes bytes(content);
    if (content.startsWith("\x7f"
                           "ELF"))
        return QLatin1String("ELF for ") + machineOf(bytes.at<quint16>(18), ~0U) +
               headerNote(content);
    const auto peHeader = bytes.at<quint32>(0x3c);
    if (content.startsWith("MZ") && bytes.at<quint32>(peHeader) == 0x4550) // "PE", two zeros
        return QLatin1String("PE for ") + machineOf(~0U, bytes.at<quint16>(quint64(peHeader) + 4));
    return QStringLiteral("no library");
}

QString problemOf(const QString &path)
{
    const QFileInfo info(path);
    if (!info.exists())
        return QStringLiteral("the file does not exist");
    if (!info.isFile())
        return QStringLiteral("expected a regular file");
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return file.errorString();
    if (file.size() == 0)
        return QStringLiteral("the file is empty");
    constexpr qint64 maxSize = qint64(1) << 30; // the checks load the file into memory
    if (file.size() > maxSize)
        return QStringLiteral("the file is larger than 1 GiB");
    const uchar *const start = file.map(0, file.size());
    if (!start)
        return file.errorString();
    const auto content =
        QByteArray::fromRawData(reinterpret_cast<const char *>(start), file.size());
    const QString format = formatOf(content);
    const QString expected = formatOfThisProgram();
    if (format != expected)
        return QStringLiteral("expected %1, found %2").arg(expected, format);
    if (content.startsWith(Bits64LittleEndian) && !isComplete(content))
        return QStringLiteral("the file is cut off after %1 bytes").arg(file.size());
    return {};
}

std::optional<ElfFile> ElfFile::read(const QByteArray &content)
{
    if (!content.startsWith(Bits64LittleEndian))
        return std::nullopt;
    const Bytes bytes(content);
    const QList<Segment> segments = segmentsOf(bytes);
    ElfFile file;
    file.hasExecutableStack = true; // the default without a segment PT_GNU_STACK
    for (const Segment &segment : segments) {
        const bool isExecutable = segment.flags & Executable;
        if (segment.type == SegmentDynamic)
            readDynamic(file, bytes, segments, segment);
        else if (segment.type == SegmentGnuStack)
            file.hasExecutableStack = isExecutable;
        else if (segment.type == SegmentGnuRelro)
            file.isRelro = true;
        else if (segment.type == SegmentLoad && isExecutable && (segment.flags & Writable))
            file.hasWritableCode = true;
    }
    readSymbols(file, bytes);
    return file;
}

} // namespace check
