#include "Orvel/html/HtmlOutput.h"
#include "Orvel/html/TreeMarkup.h"
#include "Orvel/store/COrvel.h"
#include "host/app/Application.h"
#include "host/enums/EnumData.h"
#include "host/files/Error.h"
#include "host/files/QtFile.h"
#include "host/model/CProjectModel.h"
#include "host/reports/ReportsGeneratorItem.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTextStream>

#include <algorithm>

namespace {

namespace tree = orvel::tree;
using orvel::HtmlOutput;

// The stage of an adjustment that holds its results: the one stage that is shown open.
constexpr int kResultStage = 2;

bool hasReportGenerator(const CProjectModel& model)
{
    const std::vector<CModelElement*> items = model.getItems(reports::kReportsGeneratorType);
    return std::any_of(items.begin(), items.end(), [](const CModelElement* item) {
        return dynamic_cast<const reports::ReportsGeneratorItem*>(item) != nullptr;
    });
}

} // namespace

bool COrvel::CreateProtocolHtml(int type, QString& html)
{
    html.clear();
    QString tail;
    ParseHtmlTemplate(html, tail);
    ReadXML();
    GetHtmlProtocolData(type, html);
    html += tail;
    WriteXML();
    return true;
}

bool COrvel::CreateProtocolFile(int type, const QString& path)
{
    if (path.isEmpty())
        return false;
    ReadXML();
    // Written back before the page takes room on the disk.
    const std::optional<QString> failure = dataFilePath.isEmpty() ? std::nullopt : SaveMessages();
    const bool isWritten = WriteProtocolFile(type, path);
    messages.clear();
    if (failure)
        Application::warning(*failure, nullptr);
    return isWritten;
}

bool COrvel::WriteProtocolFile(int type, const QString& path)
{
    QString head;
    QString tail;
    ParseHtmlTemplate(head, tail);
    try {
        QtFile file(path);
        file.open(QIODevice::WriteOnly);
        HtmlOutput html(*file.device());
        html << head;
        GetHtmlProtocolData(type, html);
        html << tail;
        html.flush();
        protocolFiles[type] = path;
        file.close();
        return true;
    } catch (const exceptions::Error&) {
        return false;
    }
}

void COrvel::ParseHtmlTemplate(QString& head, QString& tail) const
{
    QFile file(QDir(Application::getTempFolder()).absoluteFilePath(templateFileName));
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        qWarning("Page template %s: %s", qUtf8Printable(file.fileName()), qUtf8Printable(file.errorString()));
        return;
    }
    head = QTextStream(&file).readAll();
    const int end = head.lastIndexOf(QLatin1String("</div>"), -1, Qt::CaseInsensitive);
    if (end >= 0) {
        tail = head.mid(end);
        head.truncate(end);
    } else {
        head.clear();
    }
}

bool COrvel::GetHtmlProtocolData(int type, QString& html)
{
    HtmlOutput output(html);
    return GetHtmlProtocolData(type, output);
}

bool COrvel::GetHtmlProtocolData(int type, HtmlOutput& html)
{
    MessageList list;
    GetProtocolMessages(type, list, {});

    for (const COVMessage* message : list) {
        if (message->messageType == COVMessage::Title)
            html << QLatin1String("<h1>") << message->text << QLatin1String("</h1>\n");
    }
    AppendServiceBlock(type, list, html);
    for (const COVMessage* message : list) {
        if (message->messageType == COVMessage::Statistics)
            html << QLatin1String("<p>") << message->text << QLatin1String("</p>\n");
    }

    switch (type) {
    case enums::Compile:
        return GetHtmlGroupedData(list, html, true);
    case enums::Adjust:
        AppendStageBlocks(list, html);
        return false;
    default: {
        MessageList lines;
        GetProtocolMessages(type, lines, {COVMessage::Error, COVMessage::Warning, COVMessage::Message});
        GetHtmlList(lines, html);
        return true;
    }
    }
}

void COrvel::AppendServiceBlock(int type, const MessageList& list, HtmlOutput& html) const
{
    html << QLatin1String("<div class='serviceinfoblock'>\n");
    for (const COVMessage* message : list) {
        if (message->messageType == COVMessage::Service)
            html << QLatin1String("<p class='service'>") << message->text << QLatin1String("</p>\n");
    }
    // Without a report generator the block stays open; what follows on the page lies inside it.
    if (!hasReportGenerator(*model))
        return;
    const auto reports = reportTypes.find(type);
    if (reports != reportTypes.end())
        AppendReportLinks(reports->second, html);
    html << QLatin1String("</div>\n");
}

void COrvel::AppendReportLinks(const std::vector<int>& reports, HtmlOutput& html) const
{
    html << QLatin1String("<div class='reportsblock'>\n");
    html << QStringLiteral("<p class='%1'>%2</p>")
                .arg(QStringLiteral("service"), QCoreApplication::translate("Orvel", "Ведомости:"));
    html << QLatin1String("<ul class='service'>");
    for (const int report : reports) {
        const QString reportName = QString::fromStdWString(getEnumData(report).getTextSingular());
        if (!reportName.isEmpty())
            html << GetReportLink(report, reportName);
    }
    html << QLatin1String("</ul>\n"
                          "</div>\n");
}

void COrvel::AppendStageBlocks(const MessageList& list, HtmlOutput& html)
{
    std::map<int, QString> captions;
    for (const COVMessage* message : list) {
        if (message->messageType == COVMessage::Stage)
            captions.emplace(message->stage, message->text);
    }
    MessageGroups<int> byStage;
    GetMessagesByStage(list, byStage);
    byStage.erase(0);

    for (auto& [stage, lines] : byStage) {
        FilterMessages(lines, {}, {COVMessage::Stage});
        html << QLatin1String("<div class='stageblock'>\n");
        tree::openContainer(html);
        tree::openNode(stage == kResultStage ? QLatin1String("IsRoot IsLast ExpandOpen")
                                             : QLatin1String("IsRoot IsLast ExpandClosed"),
                       html);
        tree::appendCaption(captions[stage], lines.size(), html);
        if (stage == kResultStage)
            GetHtmlList(lines, html);
        else
            GetHtmlGroupedData(lines, html, false);
        tree::closeNode(html);
        tree::closeContainer(html);
        html << QLatin1String("</div>\n");
    }
}
