#include "apps/desk/runs/PlanExport.h"

#include "apps/desk/runs/NumberTexts.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>

#include <algorithm>
#include <cmath>

namespace orvel::desk {

namespace planexport {

namespace {

constexpr int kDecimals = 4;
constexpr int kHeightDecimals = 3;

/// Without the digits that the arithmetic has added.
double rounded(double metres)
{
    const double scale = std::pow(10.0, kDecimals);
    return std::round(metres * scale) / scale;
}

QJsonValue toJson(const std::optional<double>& number)
{
    return number ? QJsonValue(rounded(*number)) : QJsonValue(QJsonValue::Null);
}

QJsonArray toCoordinates(const tacheometry::Position& position)
{
    QJsonArray coordinates{rounded(*position.y), rounded(*position.x)};
    if (position.height)
        coordinates.append(rounded(*position.height));
    return coordinates;
}

QByteArray toFeature(const QString& geometryType, const QJsonArray& coordinates,
                     const QJsonObject& properties)
{
    const QJsonObject geometry{{QStringLiteral("type"), geometryType},
                               {QStringLiteral("coordinates"), coordinates}};
    const QJsonObject feature{{QStringLiteral("type"), QStringLiteral("Feature")},
                              {QStringLiteral("geometry"), geometry},
                              {QStringLiteral("properties"), properties}};
    return QJsonDocument(feature).toJson(QJsonDocument::Compact);
}

QByteArray toFeature(const PlanPoint& point)
{
    return toFeature(QStringLiteral("Point"), toCoordinates(point.position),
                     {{QStringLiteral("name"), point.name},
                      {QStringLiteral("given"), point.isGiven},
                      {QStringLiteral("x_m"), toJson(point.position.x)},
                      {QStringLiteral("y_m"), toJson(point.position.y)},
                      {QStringLiteral("height_m"), toJson(point.position.height)},
                      {QStringLiteral("sigma_mm"), toJson(point.sigma)}});
}

QByteArray toFeature(const PlanSection& section, const Plan& plan)
{
    const PlanPoint& from = plan.points[static_cast<std::size_t>(section.from)];
    const PlanPoint& to = plan.points[static_cast<std::size_t>(section.to)];
    return toFeature(
        QStringLiteral("LineString"), {toCoordinates(from.position), toCoordinates(to.position)},
        {{QStringLiteral("name"), section.name},
         {QStringLiteral("from"), from.name},
         {QStringLiteral("to"), to.name},
         {QStringLiteral("height_difference_m"), section.difference},
         {QStringLiteral("length_km"), section.length ? QJsonValue(*section.length) : QJsonValue()}});
}

/// The pairs of group codes and values that a drawing is made of.
class DxfWriter
{
public:
    void add(int code, const QByteArray& value)
    {
        text += QByteArray::number(code).rightJustified(3) + '\n' + value + '\n';
    }
    void add(int code, double value) { add(code, numbers::plain(value, kDecimals).toLatin1()); }
    void add(int code, int value) { add(code, QByteArray::number(value)); }

    /// A place, whose codes lie ten apart: east, north, up.
    void addPlace(int code, const tacheometry::Position& position)
    {
        add(code, *position.y);
        add(code + 10, *position.x);
        add(code + 20, position.height.value_or(0.0));
    }

    void beginSection(const char* name)
    {
        add(0, "SECTION");
        add(2, name);
    }
    void beginEntity(const char* type, const char* layer)
    {
        add(0, type);
        add(8, layer);
    }

    const QByteArray& getText() const { return text; }

private:
    QByteArray text;
};

/// A name as a drawing may hold it: none of its characters is an order to the program that shows it.
QByteArray toDxfText(const QString& name)
{
    QByteArray text;
    for (int i = 0; i < name.size(); ++i) {
        const QChar character = name.at(i);
        const bool isPlain = character.unicode() >= 0x20 && character.unicode() < 0x7F &&
                             character != QLatin1Char('\\') && character != QLatin1Char('^');
        const bool isOrder =
            character == QLatin1Char('%') &&
            ((i > 0 && name.at(i - 1) == character) || (i + 1 < name.size() && name.at(i + 1) == character));
        if (isPlain && !isOrder)
            text += character.toLatin1();
        else
            text += "\\U+" + QByteArray::number(character.unicode(), 16).toUpper().rightJustified(4, '0');
    }
    return text;
}

struct Extent
{
    double minX = 0.0;
    double maxX = 0.0;
    double minY = 0.0;
    double maxY = 0.0;
};

Extent findExtent(const Plan& plan)
{
    Extent extent;
    bool isFirst = true;
    for (const PlanPoint& point : plan.points) {
        const double x = *point.position.x;
        const double y = *point.position.y;
        extent.minX = isFirst ? x : std::min(extent.minX, x);
        extent.maxX = isFirst ? x : std::max(extent.maxX, x);
        extent.minY = isFirst ? y : std::min(extent.minY, y);
        extent.maxY = isFirst ? y : std::max(extent.maxY, y);
        isFirst = false;
    }
    return extent;
}

void addHeader(DxfWriter& dxf, const Extent& extent)
{
    dxf.beginSection("HEADER");
    dxf.add(9, "$ACADVER");
    dxf.add(1, "AC1009");
    dxf.add(9, "$EXTMIN");
    dxf.addPlace(10, {extent.minX, extent.minY, std::nullopt});
    dxf.add(9, "$EXTMAX");
    dxf.addPlace(10, {extent.maxX, extent.maxY, std::nullopt});
    dxf.add(0, "ENDSEC");
}

void addLayers(DxfWriter& dxf)
{
    struct Layer
    {
        const char* name;
        int colour;
    };
    constexpr Layer layers[] = {{"POINTS", 1}, {"NAMES", 7}, {"HEIGHTS", 3}, {"SECTIONS", 5}};
    dxf.beginSection("TABLES");
    dxf.add(0, "TABLE");
    dxf.add(2, "LAYER");
    dxf.add(70, static_cast<int>(std::size(layers)));
    for (const Layer& layer : layers) {
        dxf.add(0, "LAYER");
        dxf.add(2, layer.name);
        dxf.add(70, 0);
        dxf.add(62, layer.colour);
        dxf.add(6, "CONTINUOUS");
    }
    dxf.add(0, "ENDTAB");
    dxf.add(0, "ENDSEC");
}

void addText(DxfWriter& dxf, const char* layer, const tacheometry::Position& place, double size,
             const QByteArray& text)
{
    dxf.beginEntity("TEXT", layer);
    dxf.addPlace(10, place);
    dxf.add(40, size);
    dxf.add(1, text);
}

void addPoint(DxfWriter& dxf, const PlanPoint& point, double textSize)
{
    dxf.beginEntity("POINT", "POINTS");
    dxf.addPlace(10, point.position);
    tacheometry::Position beside = point.position;
    beside.y = *beside.y + textSize / 2.0;
    beside.x = *beside.x + textSize / 2.0;
    addText(dxf, "NAMES", beside, textSize, toDxfText(point.name));
    if (!point.position.height)
        return;
    beside.x = *beside.x - 2.0 * textSize;
    addText(dxf, "HEIGHTS", beside, textSize,
            numbers::plain(*point.position.height, kHeightDecimals).toLatin1());
}

} // namespace

QByteArray toGeoJson(const Plan& plan)
{
    QByteArray text =
        "{\"type\":\"FeatureCollection\",\n"
        "\"coordinateReferenceSystem\":{\"type\":\"local\",\"axes\":[\"east\",\"north\",\"up\"],"
        "\"unit\":\"m\",\"note\":\"not longitude and latitude on WGS 84\"},\n"
        "\"features\":[";
    const char* separator = "\n";
    for (const PlanPoint& point : plan.points) {
        text += separator + toFeature(point);
        separator = ",\n";
    }
    for (const PlanSection& section : plan.sections) {
        text += separator + toFeature(section, plan);
        separator = ",\n";
    }
    return text + "\n]}\n";
}

QByteArray toDxf(const Plan& plan)
{
    constexpr double textsAcross = 200.0;
    constexpr double smallestText = 0.1;
    constexpr double largestText = 5.0;
    const Extent extent = findExtent(plan);
    const double width = std::max(extent.maxX - extent.minX, extent.maxY - extent.minY);
    const double textSize = std::min(std::max(width / textsAcross, smallestText), largestText);
    DxfWriter dxf;
    addHeader(dxf, extent);
    addLayers(dxf);
    dxf.beginSection("ENTITIES");
    for (const PlanPoint& point : plan.points)
        addPoint(dxf, point, textSize);
    for (const PlanSection& section : plan.sections) {
        dxf.beginEntity("LINE", "SECTIONS");
        dxf.addPlace(10, plan.points[static_cast<std::size_t>(section.from)].position);
        dxf.addPlace(11, plan.points[static_cast<std::size_t>(section.to)].position);
    }
    dxf.add(0, "ENDSEC");
    dxf.add(0, "EOF");
    return dxf.getText();
}

} // namespace planexport

} // namespace orvel::desk
