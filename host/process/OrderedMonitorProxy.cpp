#include "host/process/OrderedMonitorProxy.h"

#include <optional>
#include <utility>

using monitorcalls::WriteLine;

OrderedMonitorProxy::OrderedMonitorProxy(CallQueue& callQueue, LinkQuestions& linkQuestions,
                                         RunControl& runControl, bool silent)
    : calls(callQueue)
    , questions(linkQuestions)
    , control(runControl)
    , silentMode(silent)
{}

OrderedMonitorProxy::~OrderedMonitorProxy() = default;

void OrderedMonitorProxy::setPercentage(int percentage)
{
    control.waitWhilePaused();
    if (latestPercentage.exchange(percentage) != percentage)
        calls.post(monitorcalls::SetPercentage{percentage});
}

void OrderedMonitorProxy::startStage(std::wstring name)
{
    calls.post(monitorcalls::StartStage{std::move(name)});
}

void OrderedMonitorProxy::finishCurrentStage()
{
    calls.post(monitorcalls::FinishStage());
}

void OrderedMonitorProxy::startProtocolStage(std::wstring name)
{
    calls.post(monitorcalls::StartProtocolStage{std::move(name)});
}

void OrderedMonitorProxy::finishProtocolStage()
{
    calls.post(monitorcalls::FinishProtocolStage());
}

bool OrderedMonitorProxy::isProcessRunning() const
{
    return !control.isStopRequested();
}

void OrderedMonitorProxy::setSilent(bool silent)
{
    silentMode = silent;
    calls.post(monitorcalls::SetSilent{silent});
}

bool OrderedMonitorProxy::getSilent() const
{
    return silentMode;
}

void OrderedMonitorProxy::pause()
{
    control.waitWhilePaused();
}

void OrderedMonitorProxy::writeError(std::wstring text)
{
    errorsWritten = true;
    calls.post(WriteLine{LineKind::Error, std::move(text), std::nullopt});
}

void OrderedMonitorProxy::writeError(std::wstring text, std::wstring detail)
{
    errorsWritten = true;
    calls.post(WriteLine{LineKind::Error, std::move(text), std::move(detail)});
}

void OrderedMonitorProxy::writeWarning(std::wstring text)
{
    calls.post(WriteLine{LineKind::Warning, std::move(text), std::nullopt});
}

void OrderedMonitorProxy::writeWarning(std::wstring text, std::wstring detail)
{
    calls.post(WriteLine{LineKind::Warning, std::move(text), std::move(detail)});
}

void OrderedMonitorProxy::writeMessage(std::wstring text)
{
    calls.post(WriteLine{LineKind::Message, std::move(text), std::nullopt});
}

void OrderedMonitorProxy::writeMessage(std::wstring text, std::wstring detail)
{
    calls.post(WriteLine{LineKind::Message, std::move(text), std::move(detail)});
}

void OrderedMonitorProxy::write(std::wstring text)
{
    calls.post(WriteLine{LineKind::Service, std::move(text), std::nullopt});
}

void OrderedMonitorProxy::write(std::wstring text, std::wstring detail)
{
    calls.post(WriteLine{LineKind::Service, std::move(text), std::move(detail)});
}

bool OrderedMonitorProxy::wasErrors() const
{
    return errorsWritten;
}

std::wstring OrderedMonitorProxy::getItemLink(LONGID id, const std::wstring& text)
{
    return questions.ask(id, text);
}
