#include "levelling/GkfReader.h"

#include <QFile>

#include <Eigen/Dense>

#include <algorithm>
#include <cmath>
#include <memory>
#include <thread>
#include <utility>

namespace levelling {

namespace {

// Far beyond everything on Earth and still harmless when squared and summed.
constexpr double kLargestNumber = 1e9;
constexpr double kSmallestPositive = 1e-9;
// Their matrix is full: each height more takes memory and time for all others.
constexpr std::size_t kMostObservedHeights = 2000;
constexpr std::size_t kSectionsBetweenQuestions = 4096;

template<typename Text>
std::optional<double> toNumber(const Text& text)
{
    bool ok = false;
    const double number = text.trimmed().toDouble(&ok);
    if (!ok || !std::isfinite(number) || std::abs(number) > kLargestNumber)
        return std::nullopt;
    return number;
}

template<typename Text>
std::optional<double> toPositiveNumber(const Text& text)
{
    const std::optional<double> number = toNumber(text);
    return number && *number >= kSmallestPositive ? number : std::nullopt;
}

bool namesHeight(const QString& coordinates)
{
    return coordinates.contains(QLatin1Char('z'), Qt::CaseInsensitive);
}

/// Takes the numbers of a text that comes in pieces.
class NumberFields
{
public:
    explicit NumberFields(std::function<void(const QString&)> takeField) : take(std::move(takeField)) {}

    void add(const QStringRef& piece)
    {
        for (const QChar character : piece) {
            if (character.isSpace())
                finish();
            else
                field += character;
        }
    }

    void finish()
    {
        if (!field.isEmpty())
            take(field);
        field.resize(0);
    }

private:
    std::function<void(const QString&)> take;
    QString field;
};

/// Finds the place of each stored number of a symmetric band matrix: its upper half, row by row.
class BandPlace
{
public:
    BandPlace(qint64 matrixDim, qint64 matrixBand) : dim(matrixDim), band(matrixBand) {}

    qint64 getRow() const { return row; }
    qint64 getColumn() const { return row + offset; }
    /// Behind the last number.
    bool isEnd() const { return row >= dim; }

    void advance()
    {
        if (offset < std::min(band, dim - row - 1)) {
            ++offset;
        } else {
            ++row;
            offset = 0;
        }
    }

private:
    qint64 dim;
    qint64 band;
    qint64 row = 0;
    qint64 offset = 0;
};

} // namespace

GkfResult GkfReader::readFile(const QString& path, const std::function<bool()>& isStopped)
{
    QFile file(path);
    file.open(QIODevice::ReadOnly);
    return readFile(file, isStopped);
}

GkfResult GkfReader::readFile(QFile& file, const std::function<bool()>& isStopped)
{
    GkfResult result;
    if (file.isOpen())
        result = read(file, isStopped);
    if (file.error() != QFileDevice::NoError) {
        result = GkfResult();
        result.fatal = Problem{ProblemKind::FileNotReadable, Severity::Fatal, 0, {file.errorString()}};
    }
    return result;
}

GkfResult GkfReader::read(QIODevice& device, const std::function<bool()>& isStopped)
{
    GkfReader reader(device, isStopped);
    reader.readDocument();
    return std::move(reader.result);
}

GkfReader::GkfReader(QIODevice& device, const std::function<bool()>& isStopped)
    : input(device, {kLargestFile, kLongestPiece, kLongestNumbers}, isStopped)
    , xml(&input)
{
    // What stands for more than it is would be no measure of the memory that it needs.
    constexpr int longestExpansion = 256;
    xml.setEntityExpansionLimit(longestExpansion);
}

void GkfReader::readDocument()
{
    if (readNextStartElement()) {
        if (xml.name() != QLatin1String("gama-local")) {
            result.fatal =
                Problem{ProblemKind::WrongRoot, Severity::Fatal, xml.lineNumber(), {xml.name().toString()}};
            return;
        }
        while (readNextStartElement()) {
            if (xml.name() == QLatin1String("network"))
                readNetwork();
            else
                skipUnknownElement(QStringLiteral("gama-local"));
        }
    }
    // What follows the root element must be well-formed as well.
    while (!xml.atEnd())
        readNext();
    if (input.isStopped()) {
        dropAll();
        return;
    }

    if (input.isExceeded())
        stop(ProblemKind::FileTooLarge, kLargestFile >> 20);
    else if (input.isPieceTooLong())
        stop(ProblemKind::PieceTooLong,
             {QString::number(kLongestPiece >> 10), QString::number(kLongestNumbers >> 20)});
    if (!xml.hasError()) {
        completeSigmas();
        checkPoints();
        completeObservedHeights();
    }
    if (xml.hasError() || limitProblem) {
        const Problem malformed{
            ProblemKind::MalformedXml, Severity::Fatal, xml.lineNumber(), {xml.errorString()}};
        result = GkfResult();
        result.fatal = limitProblem.value_or(malformed);
        return;
    }
    if (result.network.sections.empty())
        addProblem(ProblemKind::NoSections, Severity::Error, 0);
    std::stable_sort(result.problems.begin(), result.problems.end(),
                     [](const Problem& a, const Problem& b) { return a.line < b.line; });
}

QXmlStreamReader::TokenType GkfReader::readNext()
{
    input.beginPiece();
    xml.readNext();
    if (xml.isStartElement()) {
        ++depth;
        checkElement();
    } else if (xml.isEndElement()) {
        --depth;
    }
    return xml.tokenType();
}

bool GkfReader::readNextStartElement()
{
    while (readNext() != QXmlStreamReader::Invalid) {
        if (xml.isStartElement())
            return true;
        if (xml.isEndElement() || xml.isEndDocument())
            return false;
    }
    return false;
}

void GkfReader::skipCurrentElement()
{
    readText([](const QStringRef&) {});
}

void GkfReader::readText(const std::function<void(const QStringRef&)>& take)
{
    const int around = depth - 1;
    while (depth > around && readNext() != QXmlStreamReader::Invalid) {
        if (xml.isCharacters() || xml.isEntityReference())
            take(xml.text());
    }
}

void GkfReader::checkElement()
{
    if (depth > kMaxDepth)
        stop(ProblemKind::NestedTooDeeply, kMaxDepth);
    const QXmlStreamAttributes attributes = xml.attributes();
    for (const QXmlStreamAttribute& attribute : attributes) {
        if (attribute.value().size() > kLongestAttribute) {
            stop(ProblemKind::AttributeTooLong,
                 {attribute.name().toString(), QString::number(kLongestAttribute)});
            return;
        }
    }
}

void GkfReader::stop(ProblemKind kind, const QStringList& arguments)
{
    if (limitProblem)
        return;
    limitProblem = Problem{kind, Severity::Fatal, xml.lineNumber(), arguments};
    xml.raiseError();
}

void GkfReader::dropAll()
{
    // Many names take a while to free, and whoever stops shall not wait for it.
    std::thread([result = std::move(result), index = std::move(indexOfPoint),
                 roles = std::move(pointsWithRole)] {
    }).detach();
    result = GkfResult();
    result.isStopped = true;
}

void GkfReader::checkEntries(std::size_t pending)
{
    const Network& network = result.network;
    if (network.points.size() + network.sections.size() + pending > kMaxEntries)
        stop(ProblemKind::TooManyEntries, kMaxEntries);
}

void GkfReader::readNetwork()
{
    while (readNextStartElement()) {
        if (xml.name() == QLatin1String("description"))
            readDescription();
        else if (xml.name() == QLatin1String("parameters"))
            readParameters();
        else if (xml.name() == QLatin1String("points-observations"))
            readPointsObservations();
        else
            skipUnknownElement(QStringLiteral("network"));
    }
}

void GkfReader::readDescription()
{
    QString text;
    readText([&](const QStringRef& piece) {
        text += piece;
        if (text.size() > kLongestDescription)
            stop(ProblemKind::TextTooLong,
                 {QStringLiteral("description"), QString::number(kLongestDescription)});
    });
    result.network.description = text.trimmed();
}

void GkfReader::readParameters()
{
    Parameters& parameters = result.network.parameters;
    if (const auto sigma = parameter(QLatin1String("sigma-apr")))
        parameters.sigmaApriori = *sigma;
    if (const auto tolerance = parameter(QLatin1String("tol-abs")))
        parameters.toleranceAbsolute = *tolerance;

    if (const auto confidence = parameter(QLatin1String("conf-pr"))) {
        if (*confidence < 1.0)
            parameters.confidence = *confidence;
        else
            addProblem(ProblemKind::ParameterUnusable, Severity::Warning, xml.lineNumber(),
                       {QStringLiteral("conf-pr"), attribute(QLatin1String("conf-pr"))});
    }
    const QString sigmaAct = attribute(QLatin1String("sigma-act"));
    if (sigmaAct == QLatin1String("apriori"))
        parameters.sigmaAct = SigmaAct::Apriori;
    else if (sigmaAct == QLatin1String("aposteriori"))
        parameters.sigmaAct = SigmaAct::Aposteriori;
    else if (!sigmaAct.isNull())
        addProblem(ProblemKind::ParameterUnusable, Severity::Warning, xml.lineNumber(),
                   {QStringLiteral("sigma-act"), sigmaAct});
    skipContent();
}

void GkfReader::readPointsObservations()
{
    while (readNextStartElement()) {
        if (xml.name() == QLatin1String("point"))
            readPoint();
        else if (xml.name() == QLatin1String("height-differences"))
            readHeightDifferences();
        else if (xml.name() == QLatin1String("coordinates"))
            readCoordinates();
        else if (xml.name() == QLatin1String("obs") || xml.name() == QLatin1String("vectors"))
            readOtherObservations();
        else
            skipUnknownElement(QStringLiteral("points-observations"));
    }
}

void GkfReader::readPoint()
{
    const qint64 line = xml.lineNumber();
    const QString id = attribute(QLatin1String("id"));
    if (id.isEmpty()) {
        addProblem(ProblemKind::PointWithoutId, Severity::Error, line);
        skipContent();
        return;
    }
    Point& point = result.network.points[static_cast<std::size_t>(pointIndex(id, line))];
    if (point.declared)
        addProblem(ProblemKind::PointRepeated, Severity::Warning, line, {id, QString::number(point.line)});
    point.declared = true;
    point.line = line;

    const QString heightText = attribute(QLatin1String("z"));
    if (const auto height = toNumber(heightText))
        point.height = height;
    else if (!heightText.isNull())
        addProblem(ProblemKind::HeightUnusable, Severity::Error, line, {id, heightText});

    const bool fixed = namesHeight(attribute(QLatin1String("fix")));
    const QString adjustedText = attribute(QLatin1String("adj"));
    const bool adjusted = namesHeight(adjustedText);
    if (fixed && adjusted)
        addProblem(ProblemKind::PointFixedAndAdjusted, Severity::Warning, line, {id});
    if (fixed || adjusted) {
        point.fixed = fixed;
        // A capital letter marks what carries the datum of a free network.
        point.constrained = !fixed && adjustedText.contains(QLatin1Char('Z'));
        pointsWithRole.insert(id);
    }
    skipContent();
}

void GkfReader::readHeightDifferences()
{
    std::vector<PendingSection> sections;
    while (readNextStartElement()) {
        if (xml.name() == QLatin1String("dh")) {
            sections.push_back(readSection());
            checkEntries(sections.size());
        } else if (xml.name() == QLatin1String("cov-mat")) {
            readCovariance(sections);
        } else {
            skipUnknownElement(QStringLiteral("height-differences"));
        }
    }
    std::size_t added = 0;
    for (const PendingSection& section : sections) {
        if (added++ % kSectionsBetweenQuestions == 0 && input.checkStop())
            return;
        addSection(section);
    }
}

GkfReader::PendingSection GkfReader::readSection()
{
    PendingSection section;
    section.line = xml.lineNumber();
    section.from = pointAttribute(QLatin1String("from"));
    section.to = pointAttribute(QLatin1String("to"));
    const QString valueText = attribute(QLatin1String("val"));
    section.value = toNumber(valueText);
    if (!section.value)
        section.valueText = valueText;
    section.distance = positiveAttribute(QLatin1String("dist"), ProblemKind::DistanceUnusable, section);
    section.stdev = positiveAttribute(QLatin1String("stdev"), ProblemKind::StdevUnusable, section);
    skipContent();
    return section;
}

GkfReader::Covariance GkfReader::readMatrix(qint64 size,
                                            const std::function<void(qint64, qint64, const QString&)>& take)
{
    Covariance covariance;
    covariance.line = xml.lineNumber();
    covariance.dimText = attribute(QLatin1String("dim"));
    covariance.bandText = attribute(QLatin1String("band"));
    bool dimOk = false;
    bool bandOk = false;
    const qint64 dim = covariance.dimText.toInt(&dimOk);
    const qint64 band = covariance.bandText.toInt(&bandOk);

    qint64 numbers = 0;
    BandPlace place(size, band);
    NumberFields fields([&](const QString& field) {
        if (++numbers > kMaxCovariances)
            stop(ProblemKind::TooManyCovariances, kMaxCovariances);
        if (!place.isEnd())
            take(place.getRow(), place.getColumn(), field);
        place.advance();
    });
    readText([&](const QStringRef& piece) { fields.add(piece); });
    fields.finish();
    covariance.isComplete = dimOk && bandOk && dim == size && band >= 0 && band < dim &&
                            numbers == dim * (band + 1) - band * (band + 1) / 2;
    return covariance;
}

void GkfReader::readCovariance(std::vector<PendingSection>& sections)
{
    QStringList variances;
    qint64 correlations = 0;
    const auto take = [&](qint64 row, qint64 column, const QString& field) {
        if (row == column)
            variances.append(field);
        else if (toNumber(field) != 0.0)
            ++correlations;
    };
    const Covariance covariance = readMatrix(static_cast<qint64>(sections.size()), take);
    if (!covariance.isComplete) {
        addProblem(ProblemKind::CovarianceUnusable, Severity::Error, covariance.line,
                   {covariance.dimText, covariance.bandText, QString::number(sections.size())});
        return;
    }
    for (std::size_t row = 0; row < sections.size(); ++row) {
        PendingSection& section = sections[row];
        const QString& text = variances[static_cast<int>(row)];
        section.variance = toPositiveNumber(text);
        if (!section.variance)
            addProblem(ProblemKind::VarianceUnusable, Severity::Error, section.line,
                       {section.from, section.to, text});
    }
    if (correlations > 0)
        addProblem(ProblemKind::CorrelationsIgnored, Severity::Warning, covariance.line,
                   {QString::number(correlations)});
}

void GkfReader::readCoordinates()
{
    const qint64 line = xml.lineNumber();
    std::vector<PendingHeight> heights;
    qint64 rows = 0;
    Covariance covariance;
    struct Element
    {
        qint64 row;
        qint64 column;
        double value;
    };
    std::vector<Element> elements;
    bool areNumbers = true;
    while (readNextStartElement()) {
        if (xml.name() == QLatin1String("point")) {
            heights.push_back(readObservedPoint(rows));
            checkEntries(heights.size());
        } else if (xml.name() == QLatin1String("cov-mat")) {
            elements.clear();
            covariance = readMatrix(rows, [&](qint64 row, qint64 column, const QString& field) {
                const std::optional<double> number = toNumber(field);
                areNumbers = areNumbers && number;
                if (number && *number != 0.0)
                    elements.push_back({row, column, *number});
            });
        } else {
            skipUnknownElement(QStringLiteral("coordinates"));
        }
    }
    heights.erase(std::remove_if(heights.begin(), heights.end(),
                                 [](const PendingHeight& height) { return height.point < 0; }),
                  heights.end());
    if (heights.empty() || xml.hasError())
        return;
    const std::size_t count = heights.size();
    std::vector<double> matrix(
        areNumbers && covariance.isComplete && count <= kMostObservedHeights ? count * count : 0);
    QHash<qint64, std::size_t> placeOfRow;
    for (std::size_t place = 0; place < count; ++place)
        placeOfRow.insert(heights[place].row, place);
    for (const Element& element : elements) {
        const auto row = placeOfRow.constFind(element.row);
        const auto column = placeOfRow.constFind(element.column);
        if (!matrix.empty() && row != placeOfRow.constEnd() && column != placeOfRow.constEnd())
            matrix[*row * count + *column] = matrix[*column * count + *row] = element.value;
    }
    const auto size = static_cast<Eigen::Index>(count);
    if (matrix.empty() ||
        Eigen::Map<const Eigen::MatrixXd>(matrix.data(), size, size).llt().info() != Eigen::Success) {
        addProblem(ProblemKind::ObservedWithoutCovariance, Severity::Error,
                   covariance.line > 0 ? covariance.line : line,
                   {covariance.dimText, covariance.bandText, QString::number(count)});
        return;
    }
    addObservedHeights(heights, matrix);
}

GkfReader::PendingHeight GkfReader::readObservedPoint(qint64& rows)
{
    PendingHeight height;
    height.line = xml.lineNumber();
    height.point = -1;
    for (const char* coordinate : {"x", "y"})
        rows += xml.attributes().hasAttribute(QLatin1String(coordinate)) ? 1 : 0;
    const QString id = attribute(QLatin1String("id"));
    const QString heightText = attribute(QLatin1String("z"));
    if (id.isEmpty()) {
        addProblem(ProblemKind::PointWithoutId, Severity::Error, height.line);
    } else if (!heightText.isNull()) {
        height.point = pointIndex(id, height.line);
        height.height = toNumber(heightText);
        height.row = rows;
        Point& point = result.network.points[static_cast<std::size_t>(height.point)];
        if (!point.declared)
            point.line = height.line;
        point.declared = true;
        point.fixed = point.fixed || namesHeight(attribute(QLatin1String("fix")));
        pointsWithRole.insert(id);
    }
    rows += heightText.isNull() ? 0 : 1;
    skipContent();
    return height;
}

void GkfReader::addObservedHeights(const std::vector<PendingHeight>& heights,
                                   const std::vector<double>& covariance)
{
    std::vector<std::size_t> taken;
    for (std::size_t place = 0; place < heights.size(); ++place) {
        if (!heights[place].height) {
            addProblem(ProblemKind::ObservedHeightMissing, Severity::Error, heights[place].line,
                       {result.network.points[static_cast<std::size_t>(heights[place].point)].id});
            return;
        }
        Point& point = result.network.points[static_cast<std::size_t>(heights[place].point)];
        if (point.observed) {
            addProblem(ProblemKind::ObservedPointRepeated, Severity::Warning, heights[place].line,
                       {point.id});
            continue;
        }
        point.observed = true;
        observedValues.insert(heights[place].point, *heights[place].height);
        taken.push_back(place);
    }
    ObservedHeights observed;
    for (const std::size_t row : taken) {
        observed.points.push_back(heights[row].point);
        for (const std::size_t column : taken)
            observed.covariance.push_back(covariance[row * heights.size() + column]);
    }
    if (!observed.points.empty())
        result.network.observedHeights.push_back(std::move(observed));
}

void GkfReader::completeObservedHeights()
{
    // Only now is known what any tag of the points says.
    std::vector<ObservedHeights> groups;
    for (const ObservedHeights& read : result.network.observedHeights) {
        ObservedHeights kept;
        for (std::size_t row = 0; row < read.points.size(); ++row) {
            Point& point = result.network.points[static_cast<std::size_t>(read.points[row])];
            if (point.fixed) {
                point.observed = false;
                addProblem(ProblemKind::ObservedPointFixed, Severity::Warning, point.line, {point.id});
                continue;
            }
            point.height = observedValues.value(read.points[row]);
            kept.points.push_back(read.points[row]);
            for (std::size_t column = 0; column < read.points.size(); ++column) {
                if (!result.network.points[static_cast<std::size_t>(read.points[column])].fixed)
                    kept.covariance.push_back(read.covariance[row * read.points.size() + column]);
            }
        }
        if (!kept.points.empty())
            groups.push_back(std::move(kept));
    }
    result.network.observedHeights = std::move(groups);
}

void GkfReader::readOtherObservations()
{
    const QString clusterFrom = attribute(QLatin1String("from"));
    while (readNextStartElement()) {
        // The covariances of observations that are left out carry no information of their own.
        if (xml.name() != QLatin1String("cov-mat")) {
            const QString from = attribute(QLatin1String("from"));
            addProblem(
                ProblemKind::OtherObservation, Severity::Error, xml.lineNumber(),
                {xml.name().toString(), from.isNull() ? clusterFrom : from, attribute(QLatin1String("to"))});
        }
        skipCurrentElement();
    }
}

void GkfReader::skipUnknownElement(const QString& parent)
{
    addProblem(ProblemKind::UnknownElement, Severity::Warning, xml.lineNumber(),
               {xml.name().toString(), parent});
    skipCurrentElement();
}

void GkfReader::skipContent()
{
    const QString parent = xml.name().toString();
    while (readNextStartElement())
        skipUnknownElement(parent);
}

void GkfReader::addSection(const PendingSection& pending)
{
    const QStringList ends{pending.from, pending.to};
    const auto refuse = [&](ProblemKind kind, const QStringList& arguments) {
        addProblem(kind, Severity::Error, pending.line, arguments);
    };
    if (pending.from.isEmpty() || pending.to.isEmpty()) {
        refuse(ProblemKind::SectionWithoutPoint, ends);
        return;
    }
    if (pending.from == pending.to) {
        refuse(ProblemKind::SectionSameEnds, ends);
        return;
    }
    if (!pending.value && pending.valueText.isEmpty()) {
        refuse(ProblemKind::SectionValueMissing, ends);
        return;
    }
    if (!pending.value) {
        refuse(ProblemKind::SectionWithoutValue, ends + QStringList(pending.valueText));
        return;
    }
    Section section;
    section.difference = *pending.value;
    section.distance = pending.distance;
    section.stdev = pending.variance ? std::sqrt(*pending.variance) : pending.stdev;
    section.line = pending.line;
    if (!section.stdev && !section.distance) {
        refuse(ProblemKind::SectionWithoutWeight, ends);
        return;
    }
    section.from = pointIndex(pending.from, pending.line);
    section.to = pointIndex(pending.to, pending.line);
    result.network.sections.push_back(section);
}

int GkfReader::pointIndex(const QString& id, qint64 line)
{
    const auto known = indexOfPoint.constFind(id);
    if (known != indexOfPoint.constEnd())
        return *known;

    const auto index = static_cast<int>(result.network.points.size());
    Point point;
    point.id = id;
    point.line = line;
    result.network.points.push_back(point);
    indexOfPoint.insert(id, index);
    checkEntries(0);
    return index;
}

void GkfReader::completeSigmas()
{
    for (Section& section : result.network.sections)
        section.sigma = section.stdev ? *section.stdev
                                      : result.network.parameters.sigmaApriori * std::sqrt(*section.distance);
}

void GkfReader::checkPoints()
{
    for (Point& point : result.network.points) {
        if (!point.declared) {
            addProblem(ProblemKind::PointUndeclared, Severity::Warning, point.line, {point.id});
        } else if (!pointsWithRole.contains(point.id)) {
            addProblem(ProblemKind::PointWithoutRole, Severity::Warning, point.line, {point.id});
        } else if (point.fixed && !point.height) {
            point.fixed = false;
            addProblem(ProblemKind::FixedPointWithoutHeight, Severity::Error, point.line, {point.id});
        }
    }
}

void GkfReader::addProblem(ProblemKind kind, Severity severity, qint64 line, const QStringList& arguments)
{
    if (result.problems.size() == kMaxProblems)
        stop(ProblemKind::TooManyProblems, kMaxProblems);
    else
        result.problems.push_back(Problem{kind, severity, line, arguments});
}

QString GkfReader::attribute(QLatin1String name) const
{
    const QStringRef value = xml.attributes().value(name);
    return value.isNull() ? QString() : value.trimmed().toString();
}

QString GkfReader::pointAttribute(QLatin1String name) const
{
    const QString id = attribute(name);
    const auto known = indexOfPoint.constFind(id);
    return known == indexOfPoint.constEnd() ? id : known.key();
}

std::optional<double> GkfReader::positiveAttribute(QLatin1String name, ProblemKind kind,
                                                   const PendingSection& section)
{
    const QString text = attribute(name);
    const std::optional<double> number = toPositiveNumber(text);
    if (!number && !text.isNull())
        addProblem(kind, Severity::Error, section.line, {section.from, section.to, text});
    return number;
}

std::optional<double> GkfReader::parameter(QLatin1String name)
{
    const QString text = attribute(name);
    const std::optional<double> number = toPositiveNumber(text);
    if (!number && !text.isNull())
        addProblem(ProblemKind::ParameterUnusable, Severity::Warning, xml.lineNumber(), {name, text});
    return number;
}

} // namespace levelling
