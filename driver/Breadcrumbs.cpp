#include "Breadcrumbs.h"

#include <QtCore/QFile>

#include <algorithm>
#include <cstring>

namespace driver {

namespace {

constexpr qsizetype Steps = 4;
constexpr qsizetype StepSize = 160;

/// The steps as texts that end with a zero, at the slots of a ring; the next slot comes first.
struct Breadcrumbs
{
    QFile file;
    char *ring = nullptr;
    qsizetype next = 0;
};

Breadcrumbs &breadcrumbs()
{
    static Breadcrumbs theBreadcrumbs;
    return theBreadcrumbs;
}

} // namespace

void keepBreadcrumbsIn(const QString &file)
{
    Breadcrumbs &prints = breadcrumbs();
    prints.file.setFileName(file);
    if (prints.file.open(QIODevice::ReadWrite) && prints.file.resize(1 + Steps * StepSize))
        prints.ring = reinterpret_cast<char *>(prints.file.map(0, 1 + Steps * StepSize));
}

void leaveBreadcrumb(const QString &step)
{
    Breadcrumbs &prints = breadcrumbs();
    if (!prints.ring)
        return;
    const QByteArray text = step.left(StepSize).toUtf8();
    const qsizetype length = std::min(text.size(), StepSize - 1);
    char *const slot = prints.ring + 1 + prints.next * StepSize;
    std::memcpy(slot, text.constData(), size_t(length));
    slot[length] = '\0';
    prints.next = (prints.next + 1) % Steps;
    prints.ring[0] = char(prints.next);
}

QStringList breadcrumbsIn(const QString &name)
{
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray content = file.readAll();
    QStringList steps;
    for (qsizetype i = 0; i < Steps && content.size() == 1 + Steps * StepSize; ++i) {
        const qsizetype slot = (content.at(0) + i) % Steps;
        const QString step = QString::fromUtf8(content.constData() + 1 + slot * StepSize);
        if (!step.isEmpty())
            steps.append(step);
    }
    return steps;
}

} // namespace driver
