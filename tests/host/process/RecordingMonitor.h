#pragma once

#include "host/process/IProcessMonitor.h"

#include <QStringList>

/// A monitor that notes every call that arrives, one text per call: "error text", "error text|detail",
/// "stage name", "stage end", "percentage 5".
class RecordingMonitor : public qor::IProcessMonitor
{
public:
    ~RecordingMonitor() override;

    void setPercentage(int percentage) override;
    void startStage(std::wstring name) override;
    void finishCurrentStage() override;
    void startProtocolStage(std::wstring name) override;
    void finishProtocolStage() override;
    bool isProcessRunning() const override;
    void setSilent(bool silent) override;
    bool getSilent() const override;
    void pause() override;
    void writeError(std::wstring text) override;
    void writeError(std::wstring text, std::wstring detail) override;
    void writeWarning(std::wstring text) override;
    void writeWarning(std::wstring text, std::wstring detail) override;
    void writeMessage(std::wstring text) override;
    void writeMessage(std::wstring text, std::wstring detail) override;
    void write(std::wstring text) override;
    void write(std::wstring text, std::wstring detail) override;
    bool wasErrors() const override;
    std::wstring getItemLink(LONGID id, const std::wstring& text) override;

    QStringList calls;

private:
    void note(const char* call, const std::wstring& text);
    void note(const char* call, const std::wstring& text, const std::wstring& detail);
};
