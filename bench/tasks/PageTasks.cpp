#include "bench/tasks/PageTasks.h"

#include "bench/BenchFiles.h"
#include "bench/BenchHost.h"
#include "bench/Digest.h"
#include "bench/programs/MachineLimit.h"
#include "bench/programs/PlainProtocol.h"
#include "bench/programs/StreamDataFile.h"
#include "host/files/QtFile.h"
#include "host/files/WholeFile.h"
#include "tests/support/OrvelTestAccess.h"

namespace orvel::bench {

namespace {

constexpr LONGID kItem = 1;

/// A data file of the program's own: the DOM writes the attributes in another order every time, and what one
/// program wrote must not be what another has to read.
QString copyDataFile(int type, const TaskRequest& request)
{
    const QString path = getWorkPath(request, QStringLiteral("xml"));
    files::writeAll(path, files::readAll(getDataFilePath(request.folder, type, request.size)));
    return path;
}

QString getDataFileDigest(const QString& path)
{
    QtFile file(path);
    file.open(QIODevice::ReadOnly);
    Digest digest;
    digest.add(stream::readDataFile(*file.device()));
    return digest.getResult();
}

/// A page in a file. The data file holds the same messages afterwards.
class PageTask : public Task
{
public:
    PageTask(int runType, const TaskRequest& request)
        : type(runType)
        , dataFile(copyDataFile(type, request))
        , page(getWorkPath(request, QStringLiteral("html")))
    {
        host.writeTemplate();
        OrvelTestAccess::dataFilePath(host.protocol) = dataFile;
    }

    QString getDigest() override
    {
        Digest digest;
        digest.add(files::readAll(page));
        return digest.getResult() + getDataFileDigest(dataFile);
    }

protected:
    const int type;
    const QString dataFile;
    const QString page;
    BenchHost host;
};

class OrvelPage : public PageTask
{
public:
    using PageTask::PageTask;

    void run() override { host.protocol.CreateProtocolFile(type, page); }
};

class DomPage : public PageTask
{
public:
    using PageTask::PageTask;

    void run() override { protocol.createProtocolFile(type, page); }

private:
    PlainProtocol protocol{host.model, dataFile};
};

class LimitPage : public PageTask
{
public:
    LimitPage(int runType, const TaskRequest& request) : PageTask(runType, request)
    {
        host.protocol.CreateProtocolHtml(type, html);
    }

    void run() override { limit::writePage(html, page); }

private:
    QString html;
};

class ItemPageTask : public Task
{
public:
    explicit ItemPageTask(const TaskRequest& request)
        : dataFile(copyDataFile(enums::Compile, request))
        , protocol(host.model, dataFile)
    {
        host.writeTemplate();
        OrvelTestAccess::dataFilePath(host.protocol) = dataFile;
    }

    QString getDigest() override
    {
        Digest digest;
        digest.add(html);
        return digest.getResult() + getDataFileDigest(dataFile);
    }

protected:
    const QString dataFile;
    BenchHost host;
    PlainProtocol protocol;
    QString html;
};

class OrvelItemPage : public ItemPageTask
{
public:
    using ItemPageTask::ItemPageTask;

    void run() override { host.protocol.CreateItemHtml(kItem, html); }
};

class DomItemPage : public ItemPageTask
{
public:
    using ItemPageTask::ItemPageTask;

    void run() override { html = protocol.createItemHtml(kItem); }
};

std::unique_ptr<Task> makeTask(int type, const TaskRequest& request)
{
    if (request.program == QLatin1String("orvel"))
        return std::make_unique<OrvelPage>(type, request);
    if (request.program == QLatin1String("dom"))
        return std::make_unique<DomPage>(type, request);
    return std::make_unique<LimitPage>(type, request);
}

} // namespace

std::unique_ptr<Task> makePageTask(const TaskRequest& request)
{
    return makeTask(enums::Compile, request);
}

std::unique_ptr<Task> makeStagedPageTask(const TaskRequest& request)
{
    return makeTask(enums::Adjust, request);
}

std::unique_ptr<Task> makeItemPageTask(const TaskRequest& request)
{
    if (request.program == QLatin1String("orvel"))
        return std::make_unique<OrvelItemPage>(request);
    return std::make_unique<DomItemPage>(request);
}

} // namespace orvel::bench
