#pragma once

#include "apps/desk/runs/DeskRun.h"

#include <QString>

#include <vector>

namespace orvel::desk {

/// A processing of the project's network, as menu, command line and help offer it.
struct RunKind
{
    int protocolType = 0;
    QString name;       ///< on the command line
    QString menuText;   ///< with the mark of its mnemonic
    QString shortcut;   ///< "F5"
    QString statusTip;  ///< what it does, in a few words
    QString optionText; ///< what it does, behind its name in --help
    QString help;       ///< what it does and what its protocol tells
    DeskRun (*make)(Document& document) = nullptr;
};

namespace runs {

/// The kinds of run in the order of the menu.
std::vector<RunKind> getKinds();

/// Makes the run of that kind, which there is.
DeskRun make(int protocolType, Document& document);

} // namespace runs

} // namespace orvel::desk
