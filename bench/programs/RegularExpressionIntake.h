#pragma once

#include "Orvel/store/COVMessage.h"

#include <QRegularExpression>

class CProjectModel;

namespace orvel::bench {

/// Intake through `QRegularExpression`, with expressions that are compiled once.
class RegularExpressionIntake
{
public:
    RegularExpressionIntake();

    COVMessage makeMessage(const QString& text, int protocolType, COVMessage::MessageType kind,
                           const CProjectModel& model) const;

private:
    QRegularExpression anchor;
    QRegularExpression id;
};

} // namespace orvel::bench
