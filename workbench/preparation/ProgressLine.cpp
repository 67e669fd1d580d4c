#include "ProgressLine.h"

#include "Preparation.h"

#include <cstdio>

namespace workbench {

ProgressLine::ProgressLine(const Preparation &preparation, QObject *parent)
    : QObject(parent)
    , m_preparation(preparation)
{
    connect(&preparation, &Preparation::progressed, this, &ProgressLine::printProgress);
    connect(&preparation, &Preparation::finished, this, &ProgressLine::printEnd);
}

void ProgressLine::printProgress()
{
    if (m_preparation.progress() <= 0)
        return;
    m_begun = true;
    std::fprintf(stderr, "\r%s: %d %%", qPrintable(m_preparation.activity()),
                 int(100 * m_preparation.progress()));
}

void ProgressLine::printEnd()
{
    if (m_begun)
        std::fprintf(stderr, "\n");
    for (const QString &text : {m_preparation.report(), m_preparation.summary()}) {
        if (!text.isEmpty())
            std::fprintf(stderr, "%s\n", qPrintable(text));
    }
}

} // namespace workbench
