#pragma once

#include "host/process/IProcessMonitor.h"

#include <QStringList>

namespace orvel::test {

/// A monitor that keeps what a run writes: "error:text", "stage:name", "50%".
struct LineCollector : qor::IProcessMonitor
{
    void setPercentage(int percentage) override
    {
        lines.append(QString::number(percentage) + QLatin1Char('%'));
    }
    void startStage(std::wstring /*name*/) override {}
    void finishCurrentStage() override {}
    void startProtocolStage(std::wstring name) override { add("stage:", name); }
    void finishProtocolStage() override { lines.append(QStringLiteral("stage end")); }
    bool isProcessRunning() const override { return isRunning; }
    void setSilent(bool /*silent*/) override {}
    bool getSilent() const override { return false; }
    void pause() override {}
    void writeError(std::wstring text) override { add("error:", text); }
    void writeError(std::wstring text, std::wstring /*detail*/) override { writeError(text); }
    void writeWarning(std::wstring text) override { add("warning:", text); }
    void writeWarning(std::wstring text, std::wstring /*detail*/) override { writeWarning(text); }
    void writeMessage(std::wstring text) override { add("message:", text); }
    void writeMessage(std::wstring text, std::wstring /*detail*/) override { writeMessage(text); }
    void write(std::wstring text) override { add("service:", text); }
    void write(std::wstring text, std::wstring /*detail*/) override { write(text); }
    bool wasErrors() const override { return false; }
    /// "[id:text]"
    std::wstring getItemLink(LONGID id, const std::wstring& text) override
    {
        return L'[' + std::to_wstring(id) + L':' + text + L']';
    }

    QStringList lines;
    bool isRunning = true;

private:
    void add(const char* kind, const std::wstring& text)
    {
        lines.append(QLatin1String(kind) + QString::fromStdWString(text));
    }
};

} // namespace orvel::test
