#pragma once

#include <QString>

namespace orvel::desk {

/// The line of a run whose value is farthest over its limit, errors before warnings.
class WorstLine
{
public:
    /// @param ratio  of the value to its limit
    /// @param lineText  HTML, as it was written
    void take(bool isErrorLine, double ratio, const QString& lineText)
    {
        if (!text.isEmpty() && (isError != isErrorLine ? isError : worstRatio >= ratio))
            return;
        isError = isErrorLine;
        worstRatio = ratio;
        text = lineText;
    }

    /// Empty if no line tells a value and a limit.
    const QString& getText() const { return text; }

private:
    bool isError = false;
    double worstRatio = 0.0;
    QString text;
};

} // namespace orvel::desk
