#include "apps/desk/document/ProjectFile.h"

#include "apps/common/ProtocolState.h"
#include "apps/desk/Desk.h"
#include "apps/desk/document/ArchiveValues.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/document/LevellingPoint.h"
#include "apps/desk/document/LevellingSection.h"
#include "host/app/Application.h"
#include "host/files/CFileException.h"
#include "host/files/QtFile.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QFile>

namespace projectfile {

namespace {

// A file is signature, version, content, and the content's checksum.
constexpr quint32 kSignature = 0x4F525650; // "ORVP"
constexpr quint32 kVersion = 1;
// What a protocol takes at most.
constexpr quint32 kMaxIds = 1000000;
constexpr quint32 kMaxPages = 100;

/// All that a file holds.
struct StoredProject
{
    QString name;
    Document::Content content;
    ProtocolState protocol;
    QByteArray protocolData; ///< the data file's bytes
};

[[noreturn]] void refuse(const QString& path, const QString& reason)
{
    const QString text = QStringLiteral("%1: %2").arg(path, reason);
    throw qor::CFileException(qor::CFileException::CorruptFile, text.toStdWString());
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
    if (number < static_cast<qint32>(LevellingClass::I) || number > static_cast<qint32>(LevellingClass::IV))
        throw qor::CFileException(qor::CFileException::CorruptFile, std::wstring());
    return static_cast<LevellingClass>(number);
}

void writeProtocol(CQtArchive& archive, const ProtocolState& state)
{
    archive << static_cast<quint32>(state.ids.size());
    for (const LONGID id : state.ids)
        archive << id;
    archive << static_cast<quint32>(state.pages.size());
    for (const auto& [type, page] : state.pages)
        archive << type << page;
}

quint32 readCount(CQtArchive& archive, quint32 limit)
{
    quint32 count = 0;
    archive >> count;
    if (count > limit)
        throw qor::CFileException(qor::CFileException::CorruptFile, std::wstring());
    return count;
}

ProtocolState readProtocol(CQtArchive& archive)
{
    ProtocolState state;
    const quint32 idCount = readCount(archive, kMaxIds);
    for (quint32 i = 0; i < idCount; ++i) {
        LONGID id = 0;
        archive >> id;
        state.ids.insert(id);
    }
    const quint32 pageCount = readCount(archive, kMaxPages);
    for (quint32 i = 0; i < pageCount; ++i) {
        int type = 0;
        QString page;
        archive >> type >> page;
        state.pages.emplace(type, page);
    }
    return state;
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
    std::vector<std::unique_ptr<Item>> items;
    for (quint32 i = 0; i < count; ++i) {
        items.push_back(std::make_unique<Item>());
        items.back()->serialize(archive);
    }
    return items;
}

QByteArray readBytes(const QString& path)
{
    if (!QFile::exists(path))
        return QByteArray();
    QtFile file(path);
    file.open(QIODevice::ReadOnly);
    const QByteArray bytes = file.device()->readAll();
    file.close();
    return bytes;
}

void writeBytes(const QString& path, const QByteArray& bytes)
{
    QtFile file(path);
    file.open(QIODevice::WriteOnly);
    file.device()->write(bytes);
    file.close();
}

QByteArray writeContent(Document& document)
{
    const ProtocolState state = readProtocolState(document.getProtocol());
    const Document::Content content = document.copyContent();
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    CQtArchive archive(&buffer, CQtArchive::Save);
    archive << document.getProject().getName() << content.description;
    writeParameters(archive, content.parameters);
    archive << static_cast<qint32>(content.levellingClass) << content.nextId;
    writeItems(archive, content.points);
    writeItems(archive, content.sections);
    writeProtocol(archive, state);
    archive << readBytes(state.dataFilePath);
    return buffer.data();
}

StoredProject readContent(QByteArray bytes)
{
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    CQtArchive archive(&buffer, CQtArchive::Load);
    StoredProject stored;
    archive >> stored.name >> stored.content.description;
    stored.content.parameters = readParameters(archive);
    stored.content.levellingClass = readClass(archive);
    archive >> stored.content.nextId;
    stored.content.points = readItems<LevellingPoint>(archive);
    stored.content.sections = readItems<LevellingSection>(archive);
    stored.protocol = readProtocol(archive);
    archive >> stored.protocolData;
    return stored;
}

QByteArray makeChecksum(const QByteArray& content)
{
    return QCryptographicHash::hash(content, QCryptographicHash::Sha256);
}

/// What keeps a file of that kind from being read; empty if nothing does.
QString checkHeader(CQtArchive& archive)
{
    quint32 signature = 0;
    quint32 version = 0;
    archive >> signature >> version;
    if (signature != kSignature)
        return Desk::tr("это не файл проекта");
    if (version > kVersion)
        return Desk::tr(
                   "файл записан более новой версией программы (формат %1, эта версия понимает формат %2)")
            .arg(QString::number(version), QString::number(kVersion));
    return QString();
}

StoredProject readProject(const QString& path)
{
    QtFile file(path);
    file.open(QIODevice::ReadOnly);
    QString problem = Desk::tr("файл проекта повреждён или обрезан");
    try {
        CQtArchive archive(file.device(), CQtArchive::Load);
        const QString headerProblem = checkHeader(archive);
        if (!headerProblem.isEmpty()) {
            problem = headerProblem;
        } else {
            QByteArray content;
            QByteArray checksum;
            archive >> content >> checksum;
            if (checksum == makeChecksum(content))
                return readContent(content);
        }
    } catch (const qor::CFileException&) {
        // The data ends early: a damaged file like any other.
    }
    refuse(path, problem);
}

/// Gives the protocol a data file of this program's own, with the saved lines.
void restoreProtocol(Document& document, const StoredProject& stored)
{
    ProtocolState state = stored.protocol;
    for (auto page = state.pages.begin(); page != state.pages.end();)
        page = QFile::exists(page->second) ? std::next(page) : state.pages.erase(page);
    if (!stored.protocolData.isEmpty()) {
        state.dataFilePath = Application::getTmpFileName(QStringLiteral("protocoldata_%1.xml"));
        Application::instance()->registerTmpFile(state.dataFilePath);
        writeBytes(state.dataFilePath, stored.protocolData);
    }
    writeProtocolState(document.getProtocol(), state);
}

} // namespace

void save(Document& document, const QString& path)
{
    const QByteArray content = writeContent(document);
    QtFile file(path);
    file.open(QIODevice::WriteOnly);
    CQtArchive archive(file.device(), CQtArchive::Save);
    archive << kSignature << kVersion << content << makeChecksum(content);
    file.close();
    document.getProject().setFilePath(path);
    document.setModified(false);
}

void load(Document& document, const QString& path)
{
    StoredProject stored = readProject(path);
    if (!document.setContent(std::move(stored.content)))
        refuse(path, Desk::tr("файл проекта повреждён или обрезан"));
    document.getProject().setName(stored.name);
    document.getProject().setFilePath(path);
    restoreProtocol(document, stored);
    document.updateSummary();
    document.setModified(false);
}

} // namespace projectfile
