#include "host/process/MonitorCall.h"

#include <utility>

namespace monitorcalls {

namespace {

class Maker
{
public:
    explicit Maker(qor::IProcessMonitor& targetMonitor) : target(targetMonitor) {}

    void operator()(const SetPercentage& call) const { target.setPercentage(call.percentage); }
    void operator()(StartStage&& call) const { target.startStage(std::move(call.name)); }
    void operator()(const FinishStage& /*call*/) const { target.finishCurrentStage(); }
    void operator()(StartProtocolStage&& call) const { target.startProtocolStage(std::move(call.name)); }
    void operator()(const FinishProtocolStage& /*call*/) const { target.finishProtocolStage(); }
    void operator()(const SetSilent& call) const { target.setSilent(call.silent); }

    void operator()(WriteLine&& line) const
    {
        if (line.detail)
            writeWithDetail(std::move(line));
        else
            writeText(std::move(line));
    }

private:
    void writeText(WriteLine&& line) const
    {
        switch (line.kind) {
        case LineKind::Error:
            return target.writeError(std::move(line.text));
        case LineKind::Warning:
            return target.writeWarning(std::move(line.text));
        case LineKind::Message:
            return target.writeMessage(std::move(line.text));
        case LineKind::Service:
            return target.write(std::move(line.text));
        }
    }

    void writeWithDetail(WriteLine&& line) const
    {
        switch (line.kind) {
        case LineKind::Error:
            return target.writeError(std::move(line.text), std::move(*line.detail));
        case LineKind::Warning:
            return target.writeWarning(std::move(line.text), std::move(*line.detail));
        case LineKind::Message:
            return target.writeMessage(std::move(line.text), std::move(*line.detail));
        case LineKind::Service:
            return target.write(std::move(line.text), std::move(*line.detail));
        }
    }

    qor::IProcessMonitor& target;
};

class CharacterCounter
{
public:
    std::size_t operator()(const StartStage& call) const { return call.name.size(); }
    std::size_t operator()(const StartProtocolStage& call) const { return call.name.size(); }
    std::size_t operator()(const WriteLine& line) const
    {
        return line.text.size() + (line.detail ? line.detail->size() : 0);
    }
    template<class OtherCall>
    std::size_t operator()(const OtherCall& /*call*/) const
    {
        return 0;
    }
};

} // namespace

void make(MonitorCall&& call, qor::IProcessMonitor& target)
{
    std::visit(Maker(target), std::move(call));
}

std::size_t countBytes(const MonitorCall& call)
{
    return sizeof(MonitorCall) + sizeof(wchar_t) * std::visit(CharacterCounter(), call);
}

} // namespace monitorcalls
