#include "tests/support/ProtocolFixture.h"

#include "host/enums/EnumData.h"
#include "host/reports/ReportsGeneratorItem.h"
#include "tests/support/OrvelTestAccess.h"
#include "tests/support/TestFiles.h"

#include <QDir>

namespace {

/// The records that a host has of its item types. They go in before the protocol takes its headings. That of
/// the instruments has no plural text.
void registerItemTypes()
{
    registerEnumData(EnumData(kGeneralItemType, "Undefined", "", ""));
    registerEnumData(EnumData(kPointItemType, "Point", "пункт", "пункты"));
    registerEnumData(EnumData(kStationItemType, "Station", "станция", "станции"));
    registerEnumData(EnumData(kSectionItemType, "Section", "секция", "секции"));
    registerEnumData(EnumData(kLineItemType, "Line", "ход", "ходы"));
    registerEnumData(EnumData(kLoopItemType, "Loop", "полигон", "полигоны"));
    registerEnumData(EnumData(kMarkItemType, "Mark", "марка", "марки"));
    registerEnumData(EnumData(kStaffItemType, "Staff", "рейка", "рейки"));
    registerEnumData(EnumData(kInstrumentItemType, "Instrument", "", ""));
    registerEnumData(EnumData(kForeignItemType, "Foreign", "прочее", "прочие"));
}

std::unique_ptr<COrvel> makeProtocol(CProjectModel& model, const QString& scheme)
{
    registerItemTypes();
    return std::make_unique<COrvel>(&model, scheme);
}

} // namespace

ProtocolFixture::ProtocolFixture(const QString& projectName, const QString& scheme)
    : project(projectName)
    , model(&project)
    , owner(makeProtocol(model, scheme))
    , protocol(*owner)
{}

CModelElement* ProtocolFixture::addItem(LONGID id, int type)
{
    auto item = std::make_unique<TypedElement>(type);
    item->setId(id);
    return model.addItem(std::move(item));
}

void ProtocolFixture::addReportGenerator()
{
    // The model owns its system items.
    model.addSystemItem(new reports::ReportsGeneratorItem, {});
}

void ProtocolFixture::writeTemplate(const QByteArray& content) const
{
    writeFile(tempPath(QStringLiteral("protocol.html")), content);
}

QString ProtocolFixture::tempPath(const QString& fileName) const
{
    return QDir(Application::getTempFolder()).absoluteFilePath(fileName);
}

void ProtocolFixture::addMessages(const std::vector<COVMessage>& list)
{
    for (const COVMessage& message : list)
        OrvelTestAccess::AddMessage(protocol, message);
}

void ProtocolFixture::saveMessages(const std::vector<COVMessage>& list)
{
    OrvelTestAccess::messages(protocol).clear();
    OrvelTestAccess::dataFilePath(protocol) = tempPath(QStringLiteral("protocoldata.xml"));
    addMessages(list);
    if (!OrvelTestAccess::WriteXML(protocol))
        qFatal("The data file of the test was not written");
}
