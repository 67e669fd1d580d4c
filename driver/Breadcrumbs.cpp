#include "Breadcrumbs.h"

#include <QtCore/QFile>

#include <algorithm>
#include <cstring>

namespace driver {

namespace {

constexpr qsizetype Steps = 4;
constexpr qsizetype StepSize = 160;

/// A mapped file: one byte with the number of the next slot, then a ring of slots. A slot has one
/// step as a NUL-terminated text.
struct Breadcrumbs
{
    QFile file;
    char *mapped = nullptr;
    qsizetype next = 0;
};

Breadcrumbs &breadcrumbs()
{
    static Breadcrumbs theBreadcrumbs;
    return theBreadcrumbs;
}

} // namespace

void openBreadcrumbFile(const QString &file)
{
    Breadcrumbs &crumbs = breadcrumbs();
    crumbs.file.setFileName(file);
    if (crumbs.file.open(QIODevice::ReadWrite) && crumbs.file.resize(1 + Steps * StepSize))
        crumbs.mapped = reinterpret_cast<char *>(crumbs.file.map(0, 1 + Steps * StepSize));
}

void leaveBreadcrumb(const QString &step)
{
    Breadcrumbs &crumbs = breadcrumbs();
    if (!crumbs.mapped)
        return;
    const QByteArray text = step.left(StepSize).toUtf8();
    const qsizetype length = std::min(text.size(), StepSize - 1);
    char *const slot = crumbs.mapped + 1 + crumbs.next * StepSize;
    std::memcpy(slot, text.constData(), size_t(length));
    slot[length] = '\0';
    crumbs.next = (crumbs.next + 1) % Steps;
    crumbs.mapped[0] = char(crumbs.next);
}

QStringList readBreadcrumbs(const QString &name)
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
