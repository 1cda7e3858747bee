#pragma once

#include "host/model/ItemTypes.h"

#include <QString>

#include <vector>

namespace orvel::desk {

/// Types of the reports; what else there is to know of them stands in DeskReports.
constexpr int kHeightCatalogue = 0x2C071401;
constexpr int kResidualList = 0x2C071402;
constexpr int kLineList = 0x2C071403;
constexpr int kSectionBook = 0x2C071404;

/// The protocol types of the desk's runs, in the order of its menus.
std::vector<int> getProtocolTypes();

/// The digit that shows the protocol of such a type together with Ctrl.
int getTypeDigit(int protocolType);

/// Registers the display texts of the desk's items and reports and of the protocol types, in the language
/// that is installed. A protocol takes the names of its groups when it is made, so this comes before the
/// first project.
void registerDeskTypes();

/// The display text of one of these types: "Уравнивание", "секция".
QString getTypeText(int type);

} // namespace orvel::desk
