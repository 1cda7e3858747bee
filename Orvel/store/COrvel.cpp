#include "Orvel/store/COrvel.h"

#include "Orvel/store/ProtocolArchive.h"
#include "host/app/Application.h"
#include "host/enums/EnumData.h"
#include "host/files/CQtArchive.h"
#include "host/files/StringUtils.h"

#include <QCoreApplication>

#include <utility>

namespace {

// Item types whose messages get a group of their own on the page.
constexpr int kGroupedItemTypes[] = {
    kPointItemType, kStationItemType, kSectionItemType, kLineItemType,
    kLoopItemType,  kMarkItemType,    kStaffItemType,   kInstrumentItemType,
};

} // namespace

QString COrvel::s_sysTemplateProtocolPath;

COrvel::COrvel(CProjectModel* projectModel, const QString& applicationScheme)
    : CModelElement(nullptr)
    , model(projectModel)
    , templateFileName(QStringLiteral("protocol.html"))
    , uriScheme(applicationScheme)
    , currentStage(0)
    , nextStage(1)
{
    InitProtocol();
}

COrvel::~COrvel() = default;

int COrvel::getType() const
{
    return kOrvelItemType;
}

void COrvel::serialize(CQtArchive& archive)
{
    if (archive.isSaving()) {
        orvel::protocolarchive::saveIds(archive, idList);
        orvel::protocolarchive::savePaths(archive, protocolFiles);
        archive << dataFilePath;
    } else {
        orvel::protocolarchive::loadIds(archive, idList);
        orvel::protocolarchive::loadPaths(archive, protocolFiles);
        archive >> dataFilePath;
    }
}

void COrvel::InitProtocol()
{
    for (const int itemType : kGroupedItemTypes) {
        const QString plural = QString::fromStdWString(getEnumData(itemType).getTextPlural());
        itemGroupNames[itemType] = utils::toUpperFirst(plural);
    }
    itemGroupNames[kGeneralItemType] = QCoreApplication::translate("Orvel", "Общие");
    ClearProtocol();
}

void COrvel::ProtocolBegin(int protocolType)
{
    if (dataFilePath.isEmpty()) {
        dataFilePath = Application::getTmpFileName(QStringLiteral("protocoldata_%1.xml"));
        Application::instance()->registerTmpFile(dataFilePath);
    }
    ReadXML();
    ClearProtocolByType(protocolType);
    currentStage = 0;
    nextStage = 1;
}

void COrvel::ProtocolEnd(int protocolType)
{
    AddTitleInfo(protocolType);
    UpdateIDList();
    WriteXML();
}

void COrvel::startProtocolStage(const QString& text, int protocolType)
{
    if (currentStage != 0)
        return;
    currentStage = nextStage++;
    AddMessageRaw(text, protocolType, COVMessage::Stage);
}

void COrvel::finishProtocolStage()
{
    currentStage = 0;
}

void COrvel::setLongWork(LongWork perform)
{
    longWork = std::move(perform);
}

void COrvel::ClearProtocol()
{
    messages.clear();
    protocolFiles.clear();
}

void COrvel::ClearProtocolByType(int protocolType)
{
    messages.erase(protocolType);
    protocolFiles.erase(protocolType);
}

void COrvel::addReportTypes(int protocolType, const std::vector<int>& types)
{
    reportTypes[protocolType] = types;
}

bool COrvel::IsMessages(LONGID itemId) const
{
    return idList.count(itemId) != 0;
}

QString COrvel::GetItemGroupName(int itemType) const
{
    const auto found = itemGroupNames.find(itemType);
    return found == itemGroupNames.end() ? QString() : found->second;
}

QString COrvel::GetProtocolTitle(int protocolType)
{
    return QString::fromStdWString(getEnumData(protocolType).getTextSingular());
}

void COrvel::performLongWork(const std::function<void()>& work) const
{
    if (longWork)
        longWork(work);
    else
        work();
}
