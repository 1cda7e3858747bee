#pragma once

#include "apps/desk/document/NetworkSnapshot.h"
#include "apps/desk/runs/WorstLine.h"
#include "host/process/IProcessMonitor.h"

#include <QString>

#include <cstddef>

namespace orvel::desk {

/// Writes the lines of a run: points and sections as links, texts of files escaped.
///
/// Texts that go into a line with others are put there by one QString::arg() of several arguments: names may
/// hold "%1".
class RunLines
{
public:
    /// So many items are named in one line.
    static constexpr std::size_t kListLimit = 50;

    /// All outlive the lines.
    /// @param worstLine  gets the worst of the lines that are written with a ratio, if somebody asks for it
    RunLines(qor::IProcessMonitor& runMonitor, const NetworkSnapshot& networkSnapshot,
             WorstLine* worstLine = nullptr);

    /// Text of a file as part of a line: shown as these characters, and read by nobody as a link.
    static QString escape(const QString& text);

    /// Link to the point with its name.
    QString point(int index);
    /// Link to the section with its name.
    QString section(int index);
    /// Link to an item of the project, whether the network of the run has it or not.
    QString item(LONGID id, const QString& name) { return link(id, name); }

    /// Links to several of them. A long list is cut off and says so.
    QString listPoints(const std::vector<int>& points);
    QString listSections(const std::vector<int>& sections);
    /// The points of a way, one after the other.
    /// @param limit so many are named before it is cut off
    QString listWay(const std::vector<int>& points, std::size_t limit = kListLimit);

    /// An error line, and so on. The text is HTML.
    void error(const QString& text);
    void warning(const QString& text);
    void message(const QString& text);
    void service(const QString& text);
    /// An error about a value over its limit.
    /// @param ratio  of the value to the limit
    void error(const QString& text, double ratio);
    void warning(const QString& text, double ratio);

    /// Whether the run should go on.
    bool isRunning() const { return monitor.isProcessRunning(); }
    /// Tells how much of the work is done.
    void setProgress(std::size_t done, std::size_t all);

private:
    QString link(LONGID id, const QString& text);

    qor::IProcessMonitor& monitor;
    const NetworkSnapshot& snapshot;
    WorstLine* worst;
};

} // namespace orvel::desk
