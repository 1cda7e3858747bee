#include "levelling/GkfWriter.h"

#include <QBuffer>
#include <QLocale>
#include <QSet>
#include <QXmlStreamWriter>

#include <algorithm>
#include <cmath>

namespace levelling {

namespace {

constexpr std::size_t kEntriesBetweenQuestions = 4096;

/// The shortest text that is read as the same number.
QString toText(double value)
{
    return QString::number(value, 'g', QLocale::FloatingPointShortest);
}

/// XML has no place for these, not even escaped.
bool isForbidden(const QString& text, int index)
{
    const QChar character = text.at(index);
    if (character.isHighSurrogate())
        return index + 1 == text.size() || !text.at(index + 1).isLowSurrogate();
    if (character.isLowSurrogate())
        return index == 0 || !text.at(index - 1).isHighSurrogate();
    return character < QLatin1Char(' ') ? !QStringLiteral("\t\n\r").contains(character)
                                        : character.unicode() >= 0xFFFE;
}

QString replaceForbidden(QString text)
{
    for (int index = 0; index < text.size(); ++index) {
        if (isForbidden(text, index))
            text[index] = QChar::ReplacementCharacter;
    }
    return text;
}

/// Numbers of a symmetric matrix beside its diagonal that are needed to hold all that are not 0.
std::size_t findBand(const ObservedHeights& observed)
{
    const std::size_t size = observed.points.size();
    std::size_t band = 0;
    for (std::size_t row = 0; row < size; ++row) {
        for (std::size_t column = row + band + 1; column < size; ++column) {
            if (observed.covariance[row * size + column] != 0.0)
                band = column - row;
        }
    }
    return band;
}

class Writer
{
public:
    Writer(const Network& givenNetwork, const std::function<bool()>& stopQuestion)
        : network(givenNetwork)
        , isStopped(stopQuestion)
        , buffer(&result.text)
        , xml(&buffer)
    {}

    GkfText write()
    {
        buffer.open(QIODevice::WriteOnly);
        xml.setAutoFormatting(true);
        xml.setAutoFormattingIndent(2);
        chooseNames();
        xml.writeStartDocument();
        xml.writeStartElement(QStringLiteral("gama-local"));
        xml.writeDefaultNamespace(QStringLiteral("http://www.gnu.org/software/gama/gama-local"));
        xml.writeStartElement(QStringLiteral("network"));
        writeDescription();
        writeParameters();
        xml.writeStartElement(QStringLiteral("points-observations"));
        const bool isWhole = writePoints() && writeSections();
        for (const ObservedHeights& observed : network.observedHeights)
            writeObservedHeights(observed);
        xml.writeEndDocument();
        buffer.close();
        if (!isWhole)
            result.text.clear();
        return std::move(result);
    }

private:
    /// A reader drops spaces around a name.
    void chooseNames()
    {
        QSet<QString> taken;
        for (const Point& point : network.points)
            taken.insert(point.id);
        for (std::size_t index = 0; index < network.points.size(); ++index) {
            const QString& id = network.points[index].id;
            QString name = replaceForbidden(id.trimmed());
            if (name != id) {
                const QString stem = name;
                for (int number = 2; name.isEmpty() || taken.contains(name); ++number)
                    name = QStringLiteral("%1_%2").arg(stem, QString::number(number));
                taken.insert(name);
                result.renamedPoints.push_back(static_cast<int>(index));
            }
            result.names.append(name);
        }
    }

    void attribute(const char* name, const QString& value)
    {
        xml.writeAttribute(QString::fromLatin1(name), value);
    }

    void writeDescription()
    {
        if (network.description.isEmpty())
            return;
        xml.writeStartElement(QStringLiteral("description"));
        const QStringList pieces = replaceForbidden(network.description).split(QLatin1Char('\r'));
        xml.writeCharacters(pieces.constFirst());
        for (int piece = 1; piece < pieces.size(); ++piece) {
            // A carriage return as it is would be read as a line feed.
            xml.writeEntityReference(QStringLiteral("#13"));
            xml.writeCharacters(pieces[piece]);
        }
        xml.writeEndElement();
    }

    void writeParameters()
    {
        const Parameters& parameters = network.parameters;
        xml.writeEmptyElement(QStringLiteral("parameters"));
        attribute("sigma-apr", toText(parameters.sigmaApriori));
        attribute("conf-pr", toText(parameters.confidence));
        attribute("tol-abs", toText(parameters.toleranceAbsolute));
        attribute("sigma-act", parameters.sigmaAct == SigmaAct::Apriori ? QStringLiteral("apriori")
                                                                        : QStringLiteral("aposteriori"));
    }

    bool mayGoOn(std::size_t done) const
    {
        return done % kEntriesBetweenQuestions != 0 || !isStopped || !isStopped();
    }

    bool writePoints()
    {
        for (std::size_t index = 0; index < network.points.size(); ++index) {
            if (!mayGoOn(index))
                return false;
            const Point& point = network.points[index];
            xml.writeEmptyElement(QStringLiteral("point"));
            attribute("id", result.names[static_cast<int>(index)]);
            if (point.height)
                attribute("z", toText(*point.height));
            if (point.fixed)
                attribute("fix", QStringLiteral("z"));
            else
                attribute("adj", point.constrained ? QStringLiteral("Z") : QStringLiteral("z"));
        }
        return true;
    }

    bool writeSections()
    {
        xml.writeStartElement(QStringLiteral("height-differences"));
        for (std::size_t index = 0; index < network.sections.size(); ++index) {
            if (!mayGoOn(index))
                return false;
            writeSection(network.sections[index]);
        }
        xml.writeEndElement();
        return true;
    }

    void writeSection(const Section& section)
    {
        xml.writeEmptyElement(QStringLiteral("dh"));
        attribute("from", result.names[section.from]);
        attribute("to", result.names[section.to]);
        attribute("val", toText(section.difference));
        if (section.distance)
            attribute("dist", toText(*section.distance));
        const bool isWeightOfLength = section.distance && section.sigma == network.parameters.sigmaApriori *
                                                                               std::sqrt(*section.distance);
        if (section.stdev) {
            attribute("stdev", toText(*section.stdev));
        } else if (!isWeightOfLength) {
            attribute("stdev", toText(section.sigma));
            ++result.weightedSections;
        }
    }

    void writeObservedHeights(const ObservedHeights& observed)
    {
        xml.writeStartElement(QStringLiteral("coordinates"));
        for (const int index : observed.points) {
            xml.writeEmptyElement(QStringLiteral("point"));
            attribute("id", result.names[index]);
            attribute("z", toText(*network.points[static_cast<std::size_t>(index)].height));
        }
        const std::size_t size = observed.points.size();
        const std::size_t band = findBand(observed);
        xml.writeStartElement(QStringLiteral("cov-mat"));
        attribute("dim", QString::number(size));
        attribute("band", QString::number(band));
        QString text;
        for (std::size_t row = 0; row < size; ++row) {
            for (std::size_t column = row; column < std::min(size, row + band + 1); ++column)
                text += toText(observed.covariance[row * size + column]) +
                        (column + 1 < std::min(size, row + band + 1) ? QLatin1Char(' ') : QLatin1Char('\n'));
        }
        xml.writeCharacters(text);
        xml.writeEndElement();
        xml.writeEndElement();
    }

    const Network& network;
    const std::function<bool()>& isStopped;
    GkfText result;
    QBuffer buffer;
    QXmlStreamWriter xml;
};

} // namespace

GkfText writeGkf(const Network& network, const std::function<bool()>& isStopped)
{
    return Writer(network, isStopped).write();
}

} // namespace levelling
