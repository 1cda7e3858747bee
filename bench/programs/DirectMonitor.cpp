#include "bench/programs/DirectMonitor.h"

#include "Orvel/store/COrvel.h"

namespace orvel::bench {

DirectMonitor::DirectMonitor(COrvel& targetProtocol, int runType)
    : protocol(targetProtocol)
    , protocolType(runType)
{}

void DirectMonitor::setPercentage(int)
{}

void DirectMonitor::startStage(std::wstring)
{}

void DirectMonitor::finishCurrentStage()
{}

void DirectMonitor::startProtocolStage(std::wstring name)
{
    protocol.startProtocolStage(QString::fromStdWString(name), protocolType);
}

void DirectMonitor::finishProtocolStage()
{
    protocol.finishProtocolStage();
}

bool DirectMonitor::isProcessRunning() const
{
    return true;
}

void DirectMonitor::setSilent(bool)
{}

bool DirectMonitor::getSilent() const
{
    return true;
}

void DirectMonitor::pause()
{}

void DirectMonitor::writeError(std::wstring text)
{
    hasErrors = true;
    protocol.AddMessageRaw(QString::fromStdWString(text), protocolType, COVMessage::Error);
}

void DirectMonitor::writeError(std::wstring text, std::wstring)
{
    writeError(std::move(text));
}

void DirectMonitor::writeWarning(std::wstring text)
{
    protocol.AddMessageRaw(QString::fromStdWString(text), protocolType, COVMessage::Warning);
}

void DirectMonitor::writeWarning(std::wstring text, std::wstring)
{
    writeWarning(std::move(text));
}

void DirectMonitor::writeMessage(std::wstring text)
{
    protocol.AddMessageRaw(QString::fromStdWString(text), protocolType, COVMessage::Message);
}

void DirectMonitor::writeMessage(std::wstring text, std::wstring)
{
    writeMessage(std::move(text));
}

void DirectMonitor::write(std::wstring text)
{
    protocol.AddMessageRaw(QString::fromStdWString(text), protocolType, COVMessage::Service);
}

void DirectMonitor::write(std::wstring text, std::wstring)
{
    write(std::move(text));
}

bool DirectMonitor::wasErrors() const
{
    return hasErrors;
}

std::wstring DirectMonitor::getItemLink(LONGID id, const std::wstring& text)
{
    return protocol.GetItemLink(id, text);
}

} // namespace orvel::bench
