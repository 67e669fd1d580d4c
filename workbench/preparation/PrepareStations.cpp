#include "PrepareStations.h"

#include "ProgressLine.h"

#include <QtCore/QEventLoop>

namespace workbench {

QString prepareStations(stations::StationThread &stations, const Preparation::Plan &plan)
{
    Preparation preparation(stations, plan);
    const ProgressLine progressLine(preparation);
    QEventLoop loop;
    QObject::connect(&preparation, &Preparation::finished, &loop, &QEventLoop::quit);
    preparation.start();
    loop.exec();
    const Preparation::Outcome &outcome = preparation.outcome();
    return outcome.error.isEmpty() ? outcome.defects.join(QLatin1Char('\n')) : outcome.error;
}

} // namespace workbench
