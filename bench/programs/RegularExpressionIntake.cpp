#include "bench/programs/RegularExpressionIntake.h"

#include "host/model/CModelElement.h"
#include "host/model/CProjectModel.h"

namespace orvel::bench {

RegularExpressionIntake::RegularExpressionIntake()
    : anchor(QStringLiteral("<a.*?</a>"), QRegularExpression::DotMatchesEverythingOption)
    , id(QStringLiteral("id=(\\d+)"), QRegularExpression::UseUnicodePropertiesOption)
{
    anchor.optimize();
    id.optimize();
}

COVMessage RegularExpressionIntake::makeMessage(const QString& text, int protocolType,
                                                COVMessage::MessageType kind,
                                                const CProjectModel& model) const
{
    QString html = text;
    html.replace(QLatin1Char('\n'), QLatin1String("<br>"));

    std::vector<LONGID> ids;
    std::vector<int> types;
    bool hasAnchor = false;
    for (auto anchors = anchor.globalMatch(html); anchors.hasNext();) {
        hasAnchor = true;
        const QString link = anchors.next().captured();
        for (auto numbers = id.globalMatch(link); numbers.hasNext();) {
            ids.push_back(numbers.next().capturedRef(1).toLongLong());
            const CModelElement* item = model.findItemAnywhere(ids.back());
            types.push_back(item ? item->getType() : kGeneralItemType);
        }
    }
    if (!hasAnchor) {
        ids.push_back(0);
        types.push_back(kGeneralItemType);
    }
    return COVMessage(protocolType, kind, ids, types, html, 0);
}

} // namespace orvel::bench
