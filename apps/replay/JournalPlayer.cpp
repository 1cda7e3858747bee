#include "apps/replay/JournalPlayer.h"

#include "Orvel/integration/OrvelProcessMonitor.h"
#include "Orvel/store/COrvel.h"
#include "Orvel/store/SavedProtocol.h"
#include "apps/replay/JournalError.h"
#include "apps/replay/ReplayHost.h"
#include "apps/replay/ReplayRun.h"
#include "host/app/Application.h"
#include "host/enums/EnumData.h"
#include "host/files/CQtArchive.h"
#include "host/files/CTranslater.h"
#include "host/files/Error.h"
#include "host/files/QtFile.h"
#include "host/files/WholeFile.h"

#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QTextStream>

namespace orvel::replay {

namespace {

/// The element that an "item" line adds.
class JournalItem : public CModelElement
{
public:
    explicit JournalItem(int itemType) : type(itemType) {}

    int getType() const override { return type; }

private:
    int type;
};

QString textOf(const JournalLine& line)
{
    return line.getText(QStringLiteral("text"));
}

int typeOf(const JournalLine& line)
{
    return line.getNumber(QStringLiteral("type"));
}

void printLine(const QString& text)
{
    QTextStream stream(stdout);
    stream.setCodec("UTF-8");
    stream << text << '\n';
}

} // namespace

JournalPlayer::JournalPlayer(const JournalFolder& journalFolder) : folder(journalFolder)
{}

JournalPlayer::~JournalPlayer() = default;

JournalPlayer::Command JournalPlayer::findCommand(const QString& name)
{
    static const QHash<QString, Command> commands{
        {QStringLiteral("enum"), &JournalPlayer::registerEnum},
        {QStringLiteral("project"), &JournalPlayer::makeProject},
        {QStringLiteral("item"), &JournalPlayer::addItem},
        {QStringLiteral("remove"), &JournalPlayer::removeItem},
        {QStringLiteral("begin"), &JournalPlayer::beginRun},
        {QStringLiteral("write"), &JournalPlayer::write},
        {QStringLiteral("writeError"), &JournalPlayer::writeError},
        {QStringLiteral("writeWarning"), &JournalPlayer::writeWarning},
        {QStringLiteral("writeMessage"), &JournalPlayer::writeMessage},
        {QStringLiteral("startStage"), &JournalPlayer::startStage},
        {QStringLiteral("finishStage"), &JournalPlayer::finishStage},
        {QStringLiteral("end"), &JournalPlayer::endRun},
        {QStringLiteral("interrupt"), &JournalPlayer::interruptRun},
        {QStringLiteral("add"), &JournalPlayer::addMessage},
        {QStringLiteral("reportTypes"), &JournalPlayer::setReportTypes},
        {QStringLiteral("page"), &JournalPlayer::makePage},
        {QStringLiteral("pageHtml"), &JournalPlayer::makePageHtml},
        {QStringLiteral("itemPage"), &JournalPlayer::makeItemPage},
        {QStringLiteral("data"), &JournalPlayer::copyData},
        {QStringLiteral("loadData"), &JournalPlayer::loadData},
        {QStringLiteral("clear"), &JournalPlayer::clear},
        {QStringLiteral("link"), &JournalPlayer::printLink},
        {QStringLiteral("has"), &JournalPlayer::printHas},
        {QStringLiteral("save"), &JournalPlayer::saveState},
        {QStringLiteral("load"), &JournalPlayer::loadState},
    };
    return commands.value(name, nullptr);
}

void JournalPlayer::play(const JournalLine& line)
{
    const Command command = findCommand(line.getCommand());
    if (!command)
        throw JournalError(QStringLiteral("nothing is called \"%1\"").arg(line.getCommand()));
    try {
        (this->*command)(line);
        refuseWarning();
    } catch (const exceptions::Error& error) {
        throw JournalError(QString::fromStdWString(error.getText()));
    }
}

ReplayHost& JournalPlayer::getHost()
{
    if (!host)
        throw JournalError(QStringLiteral("there is no project yet"));
    return *host;
}

/// Throws when the plug-in has told of a failure that it goes on after, with lines missing.
void JournalPlayer::refuseWarning()
{
    const QString warning = host ? host->takeWarning() : QString();
    if (!warning.isEmpty())
        throw JournalError(warning);
}

COrvel& JournalPlayer::getProtocol()
{
    return getHost().getProtocol();
}

ReplayRun& JournalPlayer::getRun()
{
    if (!run)
        throw JournalError(QStringLiteral("no run is going on"));
    return *run;
}

QString JournalPlayer::getPath(const JournalLine& line, const char* key) const
{
    return folder.locate(line.getText(QString::fromLatin1(key)));
}

void JournalPlayer::registerEnum(const JournalLine& line)
{
    registerEnumData(EnumData(line.getNumber(QStringLiteral("value")),
                              line.getText(QStringLiteral("internal")).toStdString(),
                              line.getText(QStringLiteral("singular")).toStdString(),
                              line.getText(QStringLiteral("plural")).toStdString()));
}

void JournalPlayer::makeProject(const JournalLine& line)
{
    if (host)
        throw JournalError(QStringLiteral("there is a project already"));
    // What the protocol itself puts on pages; the lines are in the language of who recorded them.
    const QString language = line.getText(QStringLiteral("language"), QStringLiteral("ru"));
    if (language == QLatin1String("en"))
        CTranslater::GetInstance().loadTranslation(
            Application::locateData(QStringLiteral("translations/orvel_en.qm")));
    else if (language != QLatin1String("ru"))
        throw JournalError(QStringLiteral("there are no texts in the language \"%1\"").arg(language));
    host = std::make_unique<ReplayHost>(line.getText(QStringLiteral("name")),
                                        line.getText(QStringLiteral("scheme"), QStringLiteral("survey")),
                                        line.getFlag(QStringLiteral("reportGenerator"), false));
}

void JournalPlayer::addItem(const JournalLine& line)
{
    const LONGID id = line.getId(QStringLiteral("id"));
    if (id == 0)
        throw JournalError(QStringLiteral("an item can't have the id 0, which stands for no item"));
    auto item = std::make_unique<JournalItem>(typeOf(line));
    item->setId(id);
    item->setName(line.getText(QStringLiteral("name")));
    if (!getHost().getModel().addItem(std::move(item)))
        throw JournalError(QStringLiteral("there is an item %1 already").arg(id));
}

void JournalPlayer::removeItem(const JournalLine& line)
{
    const LONGID id = line.getId(QStringLiteral("id"));
    if (!getHost().getModel().removeItem(id))
        throw JournalError(QStringLiteral("there is no item %1").arg(id));
}

void JournalPlayer::beginRun(const JournalLine& line)
{
    if (run)
        throw JournalError(QStringLiteral("a run is going on already"));
    run = std::make_unique<ReplayRun>(getHost().getMonitor(), typeOf(line));
}

void JournalPlayer::write(const JournalLine& line)
{
    getRun().getMonitor().write(textOf(line).toStdWString());
}

void JournalPlayer::writeError(const JournalLine& line)
{
    getRun().getMonitor().writeError(textOf(line).toStdWString());
}

void JournalPlayer::writeWarning(const JournalLine& line)
{
    getRun().getMonitor().writeWarning(textOf(line).toStdWString());
}

void JournalPlayer::writeMessage(const JournalLine& line)
{
    getRun().getMonitor().writeMessage(textOf(line).toStdWString());
}

void JournalPlayer::startStage(const JournalLine& line)
{
    getRun().getMonitor().startProtocolStage(textOf(line).toStdWString());
}

void JournalPlayer::finishStage(const JournalLine& /*line*/)
{
    getRun().getMonitor().finishProtocolStage();
}

void JournalPlayer::endRun(const JournalLine& /*line*/)
{
    getRun().end();
    run.reset();
}

void JournalPlayer::interruptRun(const JournalLine& /*line*/)
{
    getRun().interrupt();
    run.reset();
}

void JournalPlayer::addMessage(const JournalLine& line)
{
    const int kind = line.getNumber(QStringLiteral("kind"));
    getProtocol().AddMessageRaw(textOf(line), typeOf(line), static_cast<COVMessage::MessageType>(kind));
}

void JournalPlayer::setReportTypes(const JournalLine& line)
{
    getProtocol().addReportTypes(typeOf(line), line.getNumbers(QStringLiteral("reports")));
}

void JournalPlayer::makePage(const JournalLine& line)
{
    const QString path = getPath(line, "to");
    if (!getProtocol().CreateProtocolFile(typeOf(line), path)) {
        const QString failure =
            QFileInfo(path).isFile()
                ? QStringLiteral("the page can't be written to \"%1\", an earlier one is still there")
                : QStringLiteral("the page can't be written to \"%1\"");
        throw JournalError(failure.arg(path));
    }
    if (const QString warning = getHost().takeWarning(); !warning.isEmpty()) {
        QFile::remove(path);
        throw JournalError(warning);
    }
}

void JournalPlayer::makePageHtml(const JournalLine& line)
{
    QString html;
    getProtocol().CreateProtocolHtml(typeOf(line), html);
    refuseWarning();
    files::writeAll(getPath(line, "to"), html.toUtf8());
}

void JournalPlayer::makeItemPage(const JournalLine& line)
{
    QString html;
    getProtocol().CreateItemHtml(line.getId(QStringLiteral("id")), html);
    refuseWarning();
    files::writeAll(getPath(line, "to"), html.toUtf8());
}

void JournalPlayer::copyData(const JournalLine& line)
{
    const QString dataFile = ProtocolState::read(getProtocol()).dataFilePath;
    if (!QFile::exists(dataFile))
        throw JournalError(QStringLiteral("there is no data file yet"));
    files::writeAll(getPath(line, "to"), files::readAll(dataFile));
}

void JournalPlayer::loadData(const JournalLine& line)
{
    const QByteArray content = files::readAll(getPath(line, "from"));
    ProtocolState state = ProtocolState::read(getProtocol());
    state.dataFilePath = Application::getTmpFileName(QStringLiteral("protocoldata_%1.xml"));
    Application::instance()->registerTmpFile(state.dataFilePath);
    files::writeAll(state.dataFilePath, content);
    state.write(getProtocol());
}

void JournalPlayer::clear(const JournalLine& line)
{
    if (line.has(QStringLiteral("type")))
        getProtocol().ClearProtocolByType(typeOf(line));
    else
        getProtocol().ClearProtocol();
}

void JournalPlayer::printLink(const JournalLine& line)
{
    printLine(QString::fromStdWString(
        getProtocol().GetItemLink(line.getId(QStringLiteral("id")), textOf(line).toStdWString())));
}

void JournalPlayer::printHas(const JournalLine& line)
{
    const bool isMentioned = getProtocol().IsMessages(line.getId(QStringLiteral("id")));
    printLine(isMentioned ? QStringLiteral("true") : QStringLiteral("false"));
}

void JournalPlayer::saveState(const JournalLine& line)
{
    QtFile file(getPath(line, "to"));
    file.open(QIODevice::WriteOnly);
    CQtArchive archive(file.device(), CQtArchive::Save);
    getProtocol().serialize(archive);
    file.close();
}

void JournalPlayer::loadState(const JournalLine& line)
{
    COrvel& protocol = getProtocol();
    QtFile file(getPath(line, "from"));
    file.open(QIODevice::ReadOnly);
    CQtArchive archive(file.device(), CQtArchive::Load);
    const ProtocolState before = ProtocolState::read(protocol);
    try {
        protocol.serialize(archive);
    } catch (const exceptions::Error&) {
        before.write(protocol);
        throw;
    }
    // The next run would write the file whose path stands in the state, whatever that is.
    ProtocolState state = ProtocolState::read(protocol);
    state.dataFilePath = before.dataFilePath;
    state.write(protocol);
}

} // namespace orvel::replay
