#include "Comparison.h"

#include <algorithm>

namespace workbench {

namespace {

QString counted(qsizetype number, const QString &noun)
{
    return QStringLiteral("%1 %2%3").arg(number).arg(noun,
                                                     number == 1 ? QString() : QStringLiteral("s"));
}

} // namespace

QString Difference::text() const
{
    const QString place = otherLine > 0 ? QStringLiteral(" in line %1").arg(otherLine) : QString();
    return QStringLiteral("expected %1, found %2%3").arg(expected, found, place);
}

QString Difference::foldedText() const
{
    return followers > 0
               ? QStringLiteral("%1; %2 more that follow from it").arg(text()).arg(followers)
               : text();
}

void Comparison::add(const Difference &difference)
{
    if (difference.cause >= 0 && difference.cause < differences.size())
        ++differences[difference.cause].followers;
    differences.append(difference);
}

int Comparison::exitCode() const
{
    if (!error.isEmpty())
        return 2;
    return differences.isEmpty() && badLines.isEmpty() && !isEmpty() ? 0 : 1;
}

QString Comparison::result() const
{
    const auto following =
        std::count_if(differences.cbegin(), differences.cend(),
                      [](const Difference &difference) { return difference.cause >= 0; });
    const QString more =
        following > 0 ? QStringLiteral(" (%1 more that follow)").arg(following) : QString();
    return counted(differences.size() - following, QStringLiteral("difference")) + more +
           QLatin1String(", ") + counted(badLines.size(), QStringLiteral("bad line"));
}

QString Comparison::summary() const
{
    const QString compared = otherFile.isEmpty()
                                 ? QStringLiteral("%1 inputs given, %2 outputs compared: %3.")
                                 : QStringLiteral("%1 inputs and %2 outputs compared: %3.");
    return compared.arg(inputs).arg(outputs).arg(result());
}

QStringList Comparison::remarks() const
{
    QStringList lines;
    for (const QString &note : notes)
        lines.append(QStringLiteral("%1: %2").arg(file, note));
    for (const Recording::BadLine &bad : badLines)
        lines.append(QStringLiteral("%1:%2: %3").arg(bad.file).arg(bad.number).arg(bad.reason));
    if (isEmpty() && error.isEmpty())
        lines.append(
            QStringLiteral("%1: nothing was compared, as no line of it can be used").arg(file));
    return lines;
}

QStringList Comparison::report() const
{
    if (!error.isEmpty())
        return {error};
    QStringList lines = remarks();
    for (const Difference &difference : differences) {
        if (difference.cause < 0)
            lines.append(QStringLiteral("%1:%2: %3")
                             .arg(file)
                             .arg(difference.line)
                             .arg(difference.foldedText()));
    }
    lines.append(summary());
    return lines;
}

} // namespace workbench
