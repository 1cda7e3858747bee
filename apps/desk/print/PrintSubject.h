#pragma once

#include "apps/desk/reports/ReportContent.h"

#include <QString>

#include <functional>

namespace orvel::desk {

/// Something that the desk prints.
struct PrintSubject
{
    /// Makes what is printed, in any thread.
    using Maker = std::function<ReportContent()>;

    QString title;
    bool isAvailable = true;
    QString reason; ///< why it is not available
    /// Collects what the maker needs; to be called in the GUI thread.
    std::function<Maker()> prepare;
};

} // namespace orvel::desk
