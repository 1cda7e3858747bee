#include "apps/desk/document/StoredProject.h"

#include "apps/desk/Desk.h"
#include "apps/desk/document/ArchiveValues.h"
#include "apps/desk/document/FieldBookArchive.h"
#include "apps/desk/document/HandArchive.h"
#include "host/files/CFileException.h"
#include "host/files/CQtArchive.h"
#include "levelling/GkfReader.h"

#include <QBuffer>
#include <QCryptographicHash>

namespace orvel::desk {

namespace {

constexpr quint32 kSignature = 0x4F525650; // "ORVP"
constexpr quint32 kVersion = 4;
constexpr quint32 kMostSources = 100000;

/// The file is sound, but holds more than can be worked with.
struct TooManyItems
{};

[[noreturn]] void refuse(const QString& reason)
{
    throw qor::CFileException(qor::CFileException::CorruptFile, reason.toStdWString());
}

void writeParameters(CQtArchive& archive, const levelling::Parameters& parameters)
{
    archive << parameters.sigmaApriori << (parameters.sigmaAct == levelling::SigmaAct::Aposteriori)
            << parameters.toleranceAbsolute;
}

levelling::Parameters readParameters(CQtArchive& archive)
{
    levelling::Parameters parameters;
    bool isAposteriori = false;
    archive >> parameters.sigmaApriori >> isAposteriori >> parameters.toleranceAbsolute;
    parameters.sigmaAct = isAposteriori ? levelling::SigmaAct::Aposteriori : levelling::SigmaAct::Apriori;
    return parameters;
}

LevellingClass readClass(CQtArchive& archive)
{
    qint32 number = 0;
    archive >> number;
    if (number < static_cast<qint32>(LevellingClass::I) ||
        number > static_cast<qint32>(LevellingClass::Technical))
        throw qor::CFileException(qor::CFileException::CorruptFile, std::wstring());
    return static_cast<LevellingClass>(number);
}

template<typename Item>
void writeItems(CQtArchive& archive, const std::vector<std::unique_ptr<Item>>& items)
{
    archive << static_cast<quint32>(items.size());
    for (const auto& item : items)
        item->serialize(archive);
}

template<typename Item>
std::vector<std::unique_ptr<Item>> readItems(CQtArchive& archive)
{
    quint32 count = 0;
    archive >> count;
    if (count > levelling::GkfReader::kMaxEntries)
        throw TooManyItems();
    std::vector<std::unique_ptr<Item>> items;
    for (quint32 i = 0; i < count; ++i) {
        items.push_back(std::make_unique<Item>());
        items.back()->serialize(archive);
    }
    return items;
}

/// What version 2 added, behind all that version 1 has.
void writeAddition(CQtArchive& archive, const Document::Content& content)
{
    archive << content.parameters.confidence;
    for (const auto& point : content.points)
        point->serializeAddition(archive);
    for (const auto& section : content.sections)
        section->serializeAddition(archive);
    archive << static_cast<quint32>(content.observedHeights.size());
    for (const levelling::ObservedHeights& observed : content.observedHeights) {
        archive << static_cast<quint32>(observed.points.size());
        for (const int point : observed.points)
            archive << point;
        for (const double element : observed.covariance)
            archive << element;
    }
}

void readAddition(CQtArchive& archive, Document::Content& content)
{
    archive >> content.parameters.confidence;
    for (const auto& point : content.points)
        point->serializeAddition(archive);
    for (const auto& section : content.sections)
        section->serializeAddition(archive);
    const auto pointCount = static_cast<quint32>(content.points.size());
    content.observedHeights.resize(loadCount(archive, pointCount));
    for (levelling::ObservedHeights& observed : content.observedHeights) {
        observed.points.resize(loadCount(archive, pointCount));
        for (int& point : observed.points)
            archive >> point;
        for (std::size_t i = 0; i < observed.points.size() * observed.points.size(); ++i) {
            double element = 0.0;
            archive >> element;
            observed.covariance.push_back(element);
        }
    }
}

/// What version 3 added, behind all that version 2 has.
void writeFieldData(CQtArchive& archive, const Document::Content& content)
{
    archive << static_cast<quint32>(content.sources.size());
    for (const QString& source : content.sources)
        archive << source;
    for (const auto& point : content.points)
        point->serializeFieldData(archive);
    for (const auto& section : content.sections)
        section->serializeFieldData(archive);
    fieldbookarchive::save(archive, *content.fieldBook);
}

void readFieldData(CQtArchive& archive, Document::Content& content)
{
    for (quint32 rest = loadCount(archive, kMostSources); rest > 0; --rest) {
        QString source;
        archive >> source;
        content.sources.append(source);
    }
    for (const auto& point : content.points)
        point->serializeFieldData(archive);
    for (const auto& section : content.sections)
        section->serializeFieldData(archive);
    content.fieldBook = fieldbookarchive::load(archive);
}

QByteArray writeContent(const StoredProject& project)
{
    const Document::Content& content = project.content;
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    CQtArchive archive(&buffer, CQtArchive::Save);
    archive << project.name << content.description;
    writeParameters(archive, content.parameters);
    archive << static_cast<qint32>(content.levellingClass) << content.nextId;
    writeItems(archive, content.points);
    writeItems(archive, content.sections);
    project.protocol.save(archive);
    writeAddition(archive, content);
    writeFieldData(archive, content);
    ToleranceRules(content.toleranceRules).serialize(archive);
    handarchive::save(archive, content);
    return buffer.data();
}

StoredProject readContent(QByteArray bytes, quint32 version)
{
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    CQtArchive archive(&buffer, CQtArchive::Load);
    StoredProject project;
    archive >> project.name >> project.content.description;
    project.content.parameters = readParameters(archive);
    project.content.levellingClass = readClass(archive);
    archive >> project.content.nextId;
    project.content.points = readItems<LevellingPoint>(archive);
    project.content.sections = readItems<LevellingSection>(archive);
    project.protocol = SavedProtocol::load(archive);
    if (version > 1)
        readAddition(archive, project.content);
    if (version > 2)
        readFieldData(archive, project.content);
    if (version > 3) {
        project.content.toleranceRules.serialize(archive);
        handarchive::load(archive, project.content);
    }
    return project;
}

QByteArray makeChecksum(const QByteArray& content)
{
    return QCryptographicHash::hash(content, QCryptographicHash::Sha256);
}

/// What keeps a file of that kind from being read; empty if nothing does.
QString checkHeader(CQtArchive& archive, quint32& version)
{
    quint32 signature = 0;
    archive >> signature >> version;
    if (signature != kSignature)
        return Desk::tr("это не файл проекта");
    if (version > kVersion)
        return Desk::tr(
                   "файл записан более новой версией программы (формат %1, эта версия понимает формат %2)")
            .arg(QString::number(version), QString::number(kVersion));
    return QString();
}

} // namespace

namespace storedproject {

void write(const StoredProject& project, QIODevice& device)
{
    const QByteArray content = writeContent(project);
    CQtArchive archive(&device, CQtArchive::Save);
    archive << kSignature << kVersion << content << makeChecksum(content);
}

bool isProject(const QByteArray& start)
{
    return start.startsWith("ORVP");
}

StoredProject read(QIODevice& device)
{
    QString problem = Desk::tr("файл проекта повреждён или обрезан");
    try {
        CQtArchive archive(&device, CQtArchive::Load);
        quint32 version = 0;
        const QString headerProblem = checkHeader(archive, version);
        if (!headerProblem.isEmpty()) {
            problem = headerProblem;
        } else {
            QByteArray content;
            QByteArray checksum;
            archive >> content >> checksum;
            if (checksum == makeChecksum(content))
                return readContent(content, version);
        }
    } catch (const TooManyItems&) {
        problem = Desk::tr("в проекте больше %1 пунктов или секций, он не открыт")
                      .arg(QString::number(levelling::GkfReader::kMaxEntries));
    } catch (const qor::CFileException&) {
        // The data ends early: a damaged file like any other.
    }
    refuse(problem);
}

} // namespace storedproject

} // namespace orvel::desk
