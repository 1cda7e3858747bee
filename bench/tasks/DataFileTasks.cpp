#include "bench/tasks/DataFileTasks.h"

#include "bench/BenchFiles.h"
#include "bench/BenchHost.h"
#include "bench/Digest.h"
#include "bench/programs/MachineLimit.h"
#include "bench/programs/PlainProtocol.h"
#include "bench/programs/PugiDataFile.h"
#include "bench/programs/StreamDataFile.h"
#include "host/files/QtFile.h"
#include "host/files/WholeFile.h"
#include "tests/support/OrvelTestAccess.h"

namespace orvel::bench {

namespace {

using sample::MessageStore;
using ReadFunction = MessageStore (*)(QIODevice& device);
using WriteFunction = void (*)(const MessageStore& store, QIODevice& device);

constexpr int kType = enums::Compile;

QString getStoreDigest(const MessageStore& store)
{
    Digest digest;
    digest.add(store);
    return digest.getResult();
}

class OrvelRead : public Task
{
public:
    explicit OrvelRead(const QString& path) { OrvelTestAccess::dataFilePath(host.protocol) = path; }

    void run() override { OrvelTestAccess::ReadXML(host.protocol); }
    QString getDigest() override { return getStoreDigest(OrvelTestAccess::messages(host.protocol)); }

private:
    BenchHost host;
};

class DomRead : public Task
{
public:
    explicit DomRead(const QString& path) : protocol(host.model, path) {}

    void run() override { protocol.readDataFile(); }
    QString getDigest() override { return getStoreDigest(protocol.messages); }

private:
    BenchHost host;
    PlainProtocol protocol;
};

class LibraryRead : public Task
{
public:
    LibraryRead(ReadFunction readFunction, const QString& filePath) : read(readFunction), path(filePath) {}

    void run() override
    {
        QtFile file(path);
        file.open(QIODevice::ReadOnly);
        store = read(*file.device());
        file.close();
    }
    QString getDigest() override { return getStoreDigest(store); }

private:
    ReadFunction read;
    QString path;
    MessageStore store;
};

class LimitRead : public Task
{
public:
    explicit LimitRead(const QString& filePath)
        : path(filePath)
        , texts(limit::findTexts(files::readAll(path)))
    {}

    void run() override { messages = limit::readDataFile(path, texts); }

private:
    QString path;
    std::vector<limit::TextPlace> texts;
    std::vector<COVMessage> messages;
};

/// The base of the writers: what they wrote is read back for the digest.
class WriteTask : public Task
{
public:
    explicit WriteTask(const TaskRequest& request)
        : path(getWorkPath(request, QStringLiteral("xml")))
        , store(sample::makeMessages(kType, request.size))
    {}

    QString getDigest() override
    {
        QtFile file(path);
        file.open(QIODevice::ReadOnly);
        return getStoreDigest(stream::readDataFile(*file.device()));
    }

protected:
    const QString path;
    MessageStore store;
};

class OrvelWrite : public WriteTask
{
public:
    explicit OrvelWrite(const TaskRequest& request) : WriteTask(request)
    {
        OrvelTestAccess::dataFilePath(host.protocol) = path;
        OrvelTestAccess::messages(host.protocol) = std::move(store);
    }

    void run() override { OrvelTestAccess::WriteXML(host.protocol); }

private:
    BenchHost host;
};

class DomWrite : public WriteTask
{
public:
    explicit DomWrite(const TaskRequest& request) : WriteTask(request), protocol(host.model, path)
    {
        protocol.messages = std::move(store);
    }

    void run() override { protocol.writeDataFile(); }

private:
    BenchHost host;
    PlainProtocol protocol;
};

class LibraryWrite : public WriteTask
{
public:
    LibraryWrite(WriteFunction writeFunction, const TaskRequest& request)
        : WriteTask(request)
        , write(writeFunction)
    {}

    void run() override
    {
        QtFile file(path);
        file.open(QIODevice::WriteOnly);
        write(store, *file.device());
        file.close();
        store.clear();
    }

private:
    WriteFunction write;
};

class LimitWrite : public WriteTask
{
public:
    explicit LimitWrite(const TaskRequest& request)
        : WriteTask(request)
        , dataFile(files::readAll(getDataFilePath(request.folder, kType, request.size)))
        , texts(limit::findTexts(dataFile))
    {}

    void run() override { limit::writeDataFile(store[kType], dataFile, texts, path); }

private:
    QByteArray dataFile;
    std::vector<limit::TextPlace> texts;
};

} // namespace

std::unique_ptr<Task> makeReadTask(const TaskRequest& request)
{
    const QString path = getDataFilePath(request.folder, kType, request.size);
    if (request.program == QLatin1String("orvel"))
        return std::make_unique<OrvelRead>(path);
    if (request.program == QLatin1String("dom"))
        return std::make_unique<DomRead>(path);
    if (request.program == QLatin1String("qxmlstream"))
        return std::make_unique<LibraryRead>(stream::readDataFile, path);
    if (request.program == QLatin1String("pugixml"))
        return std::make_unique<LibraryRead>(pugidata::readDataFile, path);
    return std::make_unique<LimitRead>(path);
}

std::unique_ptr<Task> makeWriteTask(const TaskRequest& request)
{
    if (request.program == QLatin1String("orvel"))
        return std::make_unique<OrvelWrite>(request);
    if (request.program == QLatin1String("dom"))
        return std::make_unique<DomWrite>(request);
    if (request.program == QLatin1String("qxmlstream"))
        return std::make_unique<LibraryWrite>(stream::writeDataFile, request);
    if (request.program == QLatin1String("pugixml"))
        return std::make_unique<LibraryWrite>(pugidata::writeDataFile, request);
    return std::make_unique<LimitWrite>(request);
}

} // namespace orvel::bench
