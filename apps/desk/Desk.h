#pragma once

#include <QCoreApplication>

namespace orvel::desk {

/// The translation context of the desk's texts: `Desk::tr("...")`.
struct Desk
{
    Q_DECLARE_TR_FUNCTIONS(Desk)
};

} // namespace orvel::desk
