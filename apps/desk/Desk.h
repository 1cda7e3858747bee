#pragma once

#include <QCoreApplication>

/// The translation context of the desk's texts: `Desk::tr("...")`.
struct Desk
{
    Q_DECLARE_TR_FUNCTIONS(Desk)
};
