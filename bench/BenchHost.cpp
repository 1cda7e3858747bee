#include "bench/BenchHost.h"

#include "bench/BenchFiles.h"
#include "bench/SampleMessages.h"
#include "host/files/WholeFile.h"

#include <QDir>

namespace orvel::bench {

namespace {

COrvel& addProtocol(CProjectModel& model)
{
    sample::registerItemTypes();
    // The model owns its system items.
    auto* protocol = new COrvel(&model, sample::getScheme());
    model.addSystemItem(protocol, {});
    return *protocol;
}

} // namespace

BenchHost::BenchHost()
    : application(sample::getScheme())
    , project(sample::getProjectName())
    , model(&project)
    , protocol(addProtocol(model))
{}

void BenchHost::writeTemplate() const
{
    files::writeAll(QDir(Application::getTempFolder()).absoluteFilePath(QStringLiteral("protocol.html")),
                    "<!DOCTYPE html>\n<html>\n<body>\n<div>\n</div>\n</body>\n</html>\n");
}

} // namespace orvel::bench
