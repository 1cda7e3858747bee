#pragma once

#include "Orvel/store/COrvel.h"
#include "host/app/SDIApplication.h"
#include "host/model/CCommonTervoModel.h"
#include "host/model/CProject.h"

#include <QString>

namespace orvel::bench {

/// An application with one project, as much of a host as a protocol needs.
struct BenchHost
{
    BenchHost();

    /// Puts a small page template where the protocol looks for it.
    void writeTemplate() const;

    SDIApplication application;
    CProject project;
    CCommonTervoModel model;
    COrvel& protocol; ///< belongs to the model
};

} // namespace orvel::bench
