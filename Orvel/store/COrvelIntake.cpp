#include "Orvel/store/COrvel.h"
#include "Orvel/store/LinkScanner.h"
#include "host/enums/EnumData.h"
#include "host/model/CCommonTervoModel.h"
#include "host/model/CProject.h"
#include "host/model/CProjectModel.h"
#include "host/model/IItemManager.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QVarLengthArray>

#include <algorithm>

namespace {

using Ids = QVarLengthArray<LONGID, 8>; // on the stack: few lines link more items

/// The ids in the links of `html`, in their order; nothing when there is no link at all.
std::optional<Ids> findLinkedIds(QStringView html)
{
    auto anchor = orvel::links::findAnchor(html, 0);
    if (!anchor)
        return std::nullopt;
    Ids ids;
    for (; anchor; anchor = orvel::links::findAnchor(html, anchor->end)) {
        const QStringView link = html.mid(anchor->begin, anchor->end - anchor->begin);
        for (auto digits = orvel::links::findIdDigits(link, 0); digits;
             digits = orvel::links::findIdDigits(link, digits->end))
            ids.append(link.mid(digits->begin, digits->end - digits->begin).toLongLong());
    }
    return ids;
}

/// `text` with "<br>" for its line breaks. Linear, which QString::replace is not; and most lines have none.
QString convertLineBreaks(const QString& text)
{
    const QLatin1Char lineBreak('\n');
    return text.contains(lineBreak) ? text.split(lineBreak).join(QLatin1String("<br>")) : text;
}

} // namespace

void COrvel::AddMessageRaw(const QString& text, int protocolType, COVMessage::MessageType type)
{
    const QString html = convertLineBreaks(text);
    COVMessage message(protocolType, type, std::vector<LONGID>(), std::vector<int>(), html, currentStage);
    // A text that was made of a std::wstring has room for twice its length, and so would all that are kept.
    if (message.text.capacity() > message.text.size() + message.text.size() / 4)
        message.text.squeeze();
    if (const std::optional<Ids> ids = findLinkedIds(html)) {
        // A text with links but without a single id in them refers to nothing, not even to "no item".
        message.itemIds.assign(ids->begin(), ids->end());
        message.itemTypes.reserve(message.itemIds.size());
        for (const LONGID itemId : *ids)
            message.itemTypes.push_back(GetItemTypeByID(itemId));
    } else {
        message.itemIds.push_back(0);
        message.itemTypes.push_back(kGeneralItemType);
    }
    AddMessage(std::move(message));
}

void COrvel::AddMessage(const COVMessage& message)
{
    messages[message.protocolType].push_back(message);
}

void COrvel::AddMessage(COVMessage&& message)
{
    messages[message.protocolType].push_back(std::move(message));
}

void COrvel::AddTitleInfo(int protocolType)
{
    const auto addLine = [this, protocolType](COVMessage::MessageType type, const QString& text) {
        AddMessage(COVMessage(protocolType, type, 0, kGeneralItemType, text, 0));
    };

    const QString title = GetProtocolTitle(protocolType);
    if (!title.isEmpty())
        addLine(COVMessage::Title, title);
    addLine(COVMessage::Service,
            QDateTime::currentDateTime().toString(QStringLiteral("dd.MM.yyyy hh:mm:ss")));
    addLine(COVMessage::Service,
            QCoreApplication::translate("Orvel", "Проект: %1").arg(GetProjectName(), 0, QLatin1Char(' ')));
}

void COrvel::UpdateIDList()
{
    std::set<LONGID> mentioned;
    performLongWork([this, &mentioned] {
        // Sorted first: a set is built from ascending ids many times faster than from any.
        std::vector<LONGID> ids;
        for (const auto& [protocolType, list] : messages) {
            for (const COVMessage& message : list)
                ids.insert(ids.end(), message.itemIds.begin(), message.itemIds.end());
        }
        std::sort(ids.begin(), ids.end());
        ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
        mentioned = std::set<LONGID>(ids.begin(), ids.end());
    });
    // Whoever paints may ask for it meanwhile.
    idList.swap(mentioned);
}

QString COrvel::GetProjectName() const
{
    const CProject* project = model->getProject();
    return project ? project->getName() : QString();
}

int COrvel::GetItemTypeByID(LONGID itemId) const
{
    if (const CModelElement* element = model->findItemAnywhere(itemId))
        return element->getType();
    const auto* tervoModel = dynamic_cast<const CCommonTervoModel*>(model);
    if (!tervoModel)
        return kGeneralItemType;
    const tervo::IItemManager* manager = tervoModel->getTervoObject();
    const tervo::IItem* item = manager ? manager->findItem(itemId) : nullptr;
    return item ? static_cast<int>(item->getType()) : kGeneralItemType;
}
