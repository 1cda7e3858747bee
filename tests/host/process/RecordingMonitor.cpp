#include "tests/host/process/RecordingMonitor.h"

RecordingMonitor::~RecordingMonitor() = default;

void RecordingMonitor::setPercentage(int percentage)
{
    note("percentage", std::to_wstring(percentage));
}

void RecordingMonitor::startStage(std::wstring name)
{
    note("stage", name);
}

void RecordingMonitor::finishCurrentStage()
{
    note("stage", L"end");
}

void RecordingMonitor::startProtocolStage(std::wstring name)
{
    note("protocol stage", name);
}

void RecordingMonitor::finishProtocolStage()
{
    note("protocol stage", L"end");
}

bool RecordingMonitor::isProcessRunning() const
{
    return true;
}

void RecordingMonitor::setSilent(bool silent)
{
    note("silent", silent ? L"on" : L"off");
}

bool RecordingMonitor::getSilent() const
{
    return false;
}

void RecordingMonitor::pause()
{
    note("pause", L"");
}

void RecordingMonitor::writeError(std::wstring text)
{
    note("error", text);
}

void RecordingMonitor::writeError(std::wstring text, std::wstring detail)
{
    note("error", text, detail);
}

void RecordingMonitor::writeWarning(std::wstring text)
{
    note("warning", text);
}

void RecordingMonitor::writeWarning(std::wstring text, std::wstring detail)
{
    note("warning", text, detail);
}

void RecordingMonitor::writeMessage(std::wstring text)
{
    note("message", text);
}

void RecordingMonitor::writeMessage(std::wstring text, std::wstring detail)
{
    note("message", text, detail);
}

void RecordingMonitor::write(std::wstring text)
{
    note("service", text);
}

void RecordingMonitor::write(std::wstring text, std::wstring detail)
{
    note("service", text, detail);
}

bool RecordingMonitor::wasErrors() const
{
    return false;
}

std::wstring RecordingMonitor::getItemLink(LONGID id, const std::wstring& text)
{
    return L"<a href=\"" + std::to_wstring(id) + L"\">" + text + L"</a>";
}

void RecordingMonitor::note(const char* call, const std::wstring& text)
{
    calls.append(QLatin1String(call) + QLatin1Char(' ') + QString::fromStdWString(text));
}

void RecordingMonitor::note(const char* call, const std::wstring& text, const std::wstring& detail)
{
    note(call, text + L'|' + detail);
}
