#include "bench/tasks/IntakeTasks.h"

#include "bench/BenchHost.h"
#include "bench/Digest.h"
#include "bench/SampleMessages.h"
#include "bench/programs/MachineLimit.h"
#include "bench/programs/PlainProtocol.h"
#include "bench/programs/RegularExpressionIntake.h"
#include "tests/support/OrvelTestAccess.h"

namespace orvel::bench {

namespace {

constexpr int kType = enums::Compile;

class IntakeTask : public Task
{
public:
    IntakeTask(std::vector<QString> textLines, int lineCount) : lines(std::move(textLines))
    {
        sample::addPoints(lineCount, host.model);
    }

    QString getDigest() override
    {
        Digest digest;
        digest.add(getMessages());
        return digest.getResult();
    }

protected:
    virtual const sample::MessageStore& getMessages() = 0;

    template<typename Function>
    void forEachLine(Function addLine) const
    {
        int number = 0;
        for (const QString& line : lines)
            addLine(line, sample::getKind(number++));
    }

    BenchHost host;
    const std::vector<QString> lines;
};

class OrvelIntake : public IntakeTask
{
public:
    using IntakeTask::IntakeTask;

    void run() override
    {
        forEachLine([this](const QString& line, COVMessage::MessageType kind) {
            host.protocol.AddMessageRaw(line, kType, kind);
        });
    }

protected:
    const sample::MessageStore& getMessages() override { return OrvelTestAccess::messages(host.protocol); }
};

class DomIntake : public IntakeTask
{
public:
    using IntakeTask::IntakeTask;

    void run() override
    {
        forEachLine([this](const QString& line, COVMessage::MessageType kind) {
            protocol.addMessage(line, kType, kind);
        });
    }

protected:
    const sample::MessageStore& getMessages() override { return protocol.messages; }

private:
    PlainProtocol protocol{host.model, QString()};
};

class RegularExpressionTask : public IntakeTask
{
public:
    using IntakeTask::IntakeTask;

    void run() override
    {
        forEachLine([this](const QString& line, COVMessage::MessageType kind) {
            store[kType].push_back(intake.makeMessage(line, kType, kind, host.model));
        });
    }

protected:
    const sample::MessageStore& getMessages() override { return store; }

private:
    RegularExpressionIntake intake;
    sample::MessageStore store;
};

class LimitIntake : public Task
{
public:
    explicit LimitIntake(std::vector<QString> textLines) : lines(std::move(textLines)) {}

    void run() override { messages = limit::addLines(lines); }

private:
    const std::vector<QString> lines;
    std::vector<COVMessage> messages;
};

std::unique_ptr<Task> makeTask(const QString& program, std::vector<QString> lines, int lineCount)
{
    if (program == QLatin1String("orvel"))
        return std::make_unique<OrvelIntake>(std::move(lines), lineCount);
    if (program == QLatin1String("dom"))
        return std::make_unique<DomIntake>(std::move(lines), lineCount);
    if (program == QLatin1String("qregularexpression"))
        return std::make_unique<RegularExpressionTask>(std::move(lines), lineCount);
    return std::make_unique<LimitIntake>(std::move(lines));
}

} // namespace

std::unique_ptr<Task> makeIntakeTask(const TaskRequest& request)
{
    return makeTask(request.program, sample::makeLines(request.size), request.size);
}

std::unique_ptr<Task> makeHostileTask(const TaskRequest& request)
{
    return makeTask(request.program, {sample::makeHostileLine(request.size)}, 1);
}

} // namespace orvel::bench
