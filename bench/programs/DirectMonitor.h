#pragma once

#include "host/process/IProcessMonitor.h"

class COrvel;

namespace orvel::bench {

/// A monitor without a window: files every line in the protocol at once.
class DirectMonitor : public qor::IProcessMonitor
{
public:
    DirectMonitor(COrvel& targetProtocol, int runType);

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

private:
    COrvel& protocol;
    int protocolType;
    bool hasErrors = false;
};

} // namespace orvel::bench
