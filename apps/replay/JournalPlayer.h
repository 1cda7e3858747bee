#pragma once

#include "apps/replay/JournalFolder.h"
#include "apps/replay/JournalLine.h"

#include <QString>

#include <memory>

class COrvel;

namespace orvel::replay {

class ReplayHost;
class ReplayRun;

/// Plays the lines of a journal, one after the other, through the plug-in.
class JournalPlayer
{
public:
    /// @param journalFolder where the files are that the lines name
    explicit JournalPlayer(const JournalFolder& journalFolder);
    ~JournalPlayer();
    JournalPlayer(const JournalPlayer&) = delete;
    JournalPlayer& operator=(const JournalPlayer&) = delete;

    /// Throws `JournalError` when the line can't be played.
    void play(const JournalLine& line);

private:
    using Command = void (JournalPlayer::*)(const JournalLine& line);
    static Command findCommand(const QString& name);

    ReplayHost& getHost();
    COrvel& getProtocol();
    void refuseWarning();
    ReplayRun& getRun();
    /// The file that the line names by that key.
    QString getPath(const JournalLine& line, const char* key) const;

    void registerEnum(const JournalLine& line);
    void makeProject(const JournalLine& line);
    void addItem(const JournalLine& line);
    void removeItem(const JournalLine& line);
    void beginRun(const JournalLine& line);
    void write(const JournalLine& line);
    void writeError(const JournalLine& line);
    void writeWarning(const JournalLine& line);
    void writeMessage(const JournalLine& line);
    void startStage(const JournalLine& line);
    void finishStage(const JournalLine& line);
    void endRun(const JournalLine& line);
    void interruptRun(const JournalLine& line);
    void addMessage(const JournalLine& line);
    void setReportTypes(const JournalLine& line);
    void makePage(const JournalLine& line);
    void makePageHtml(const JournalLine& line);
    void makeItemPage(const JournalLine& line);
    void copyData(const JournalLine& line);
    void loadData(const JournalLine& line);
    void clear(const JournalLine& line);
    void printLink(const JournalLine& line);
    void printHas(const JournalLine& line);
    void saveState(const JournalLine& line);
    void loadState(const JournalLine& line);

    JournalFolder folder;
    std::unique_ptr<ReplayHost> host;
    std::unique_ptr<ReplayRun> run;
};

} // namespace orvel::replay
