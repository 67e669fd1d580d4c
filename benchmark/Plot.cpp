#include "Plot.h"

#include "Report.h"

#include <QtCore/QPointF>
#include <QtCore/QXmlStreamWriter>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr int Columns = 2;
constexpr double Width = 420, Height = 260, Margin = 46, Legend = 40;
// Powers of ten: 1 µs to 100 s in milliseconds, a thousand to a million bookmarks.
constexpr double LowestTime = -3, HighestTime = 5, LowestSize = 3, HighestSize = 6;

const char *const colours[] = {"#d6336c", "#495057", "#1c7ed6", "#0ca678", "#f59f00", "#adb5bd"};

QPointF place(double size, double milliseconds)
{
    const double x = (std::log10(size) - LowestSize) / (HighestSize - LowestSize);
    const double y = (std::log10(milliseconds) - LowestTime) / (HighestTime - LowestTime);
    return {Margin + x * (Width - 1.5 * Margin), Height - Margin - y * (Height - 1.8 * Margin)};
}

class Svg
{
public:
    explicit Svg(QByteArray *bytes)
        : m_xml(bytes)
    {
        m_xml.setAutoFormatting(true);
    }

    void begin(double width, double height)
    {
        m_xml.writeStartElement(u"svg"_s);
        m_xml.writeDefaultNamespace(u"http://www.w3.org/2000/svg"_s);
        m_xml.writeAttribute(u"viewBox"_s, u"0 0 %1 %2"_s.arg(width).arg(height));
        m_xml.writeAttribute(u"font-family"_s, u"sans-serif"_s);
        m_xml.writeAttribute(u"font-size"_s, u"11"_s);
        element(u"rect"_s,
                {{u"width"_s, u"100%"_s}, {u"height"_s, u"100%"_s}, {u"fill"_s, u"#fff"_s}});
    }
    void beginGroup(double x, double y)
    {
        m_xml.writeStartElement(u"g"_s);
        m_xml.writeAttribute(u"transform"_s, u"translate(%1 %2)"_s.arg(x).arg(y));
    }
    void end() { m_xml.writeEndElement(); }

    void line(QPointF from, QPointF to)
    {
        element(u"path"_s,
                {{u"d"_s, u"M%1 %2L%3 %4"_s.arg(from.x()).arg(from.y()).arg(to.x()).arg(to.y())},
                 {u"stroke"_s, u"#e9ecef"_s}});
    }
    void curve(const QStringList &points, const QString &colour)
    {
        element(u"polyline"_s, {{u"points"_s, points.join(u' ')},
                                {u"fill"_s, u"none"_s},
                                {u"stroke"_s, colour},
                                {u"stroke-width"_s, u"2"_s}});
    }
    void text(QPointF at, const QString &text, const QString &anchor = u"start"_s,
              const QString &colour = u"#212529"_s)
    {
        m_xml.writeStartElement(u"text"_s);
        m_xml.writeAttribute(u"x"_s, QString::number(at.x()));
        m_xml.writeAttribute(u"y"_s, QString::number(at.y()));
        m_xml.writeAttribute(u"text-anchor"_s, anchor);
        m_xml.writeAttribute(u"fill"_s, colour);
        m_xml.writeCharacters(text);
        m_xml.writeEndElement();
    }

private:
    void element(const QString &name, const QList<std::pair<QString, QString>> &attributes)
    {
        m_xml.writeEmptyElement(name);
        for (const auto &[key, value] : attributes)
            m_xml.writeAttribute(key, value);
    }

    QXmlStreamWriter m_xml;
};

void drawAxes(Svg &svg)
{
    const QStringList timeTexts{u"1 µs"_s,  u"10 µs"_s, u"0.1 ms"_s, u"1 ms"_s, u"10 ms"_s,
                                u"0.1 s"_s, u"1 s"_s,   u"10 s"_s,   u"100 s"_s};
    for (int i = 0; i < timeTexts.size(); ++i) {
        const double time = std::pow(10, LowestTime + i);
        const QPointF left = place(1e3, time);
        svg.line(left, place(1e6, time));
        svg.text(left + QPointF(-4, 4), timeTexts.at(i), u"end"_s);
    }
    const QStringList sizeTexts{u"1,000"_s, u"10,000"_s, u"100,000"_s, u"1,000,000"_s};
    for (int i = 0; i < sizeTexts.size(); ++i) {
        const double size = std::pow(10, LowestSize + i);
        const QPointF bottom = place(size, std::pow(10, LowestTime));
        svg.line(bottom, place(size, std::pow(10, HighestTime)));
        svg.text(bottom + QPointF(0, 16), sizeTexts.at(i), u"middle"_s);
    }
}

} // namespace

QByteArray plot(const Report &report)
{
    QByteArray bytes;
    Svg svg(&bytes);
    const QStringList jobs = report.jobs();
    const qsizetype rows = (jobs.size() + Columns - 1) / Columns;
    svg.begin(Columns * Width, double(rows) * Height + Legend);

    const QStringList implementations = report.implementations();
    const auto colourOf = [](qsizetype i) {
        return QString::fromLatin1(colours[size_t(i) % std::size(colours)]);
    };
    double x = Margin;
    for (qsizetype i = 0; i < implementations.size(); ++i) {
        svg.text({x, 24}, u"— "_s + implementations.at(i), u"start"_s, colourOf(i));
        x += 40 + 6.2 * double(implementations.at(i).size());
    }

    for (qsizetype j = 0; j < jobs.size(); ++j) {
        const qsizetype row = j / Columns;
        svg.beginGroup(double(j % Columns) * Width, Legend + double(row) * Height);
        svg.text({Margin, 22}, jobs.at(j));
        drawAxes(svg);
        for (qsizetype i = 0; i < implementations.size(); ++i) {
            QStringList points;
            const QMap<int, double> times = report.times(jobs.at(j), implementations.at(i));
            for (auto time = times.cbegin(); time != times.cend(); ++time) {
                const QPointF point = place(time.key(), *time);
                points.append(u"%1,%2"_s.arg(point.x()).arg(point.y()));
            }
            svg.curve(points, colourOf(i));
        }
        svg.end();
    }
    svg.end();
    return bytes;
}
