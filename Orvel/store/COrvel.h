#pragma once

#include "Orvel/orvel_export.h"
#include "Orvel/store/COVMessage.h"
#include "Orvel/store/ProtocolTypes.h"
#include "host/model/CModelElement.h"
#include "host/model/IItemLinks.h"

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

class CProjectModel;
class CQtArchive;

namespace orvel {
class HtmlOutput;
}

/// The protocol of one project: every line that its processing runs wrote, by protocol type.
///
/// A run of one type is framed by `ProtocolBegin` and `ProtocolEnd`. Between runs the messages lie in the
/// data file only; a run's begin and every page build read it, and write it back afterwards. One protocol is
/// used by one thread at a time; nothing here takes a lock.
class ORVEL_EXPORT COrvel : public CModelElement
{
public:
    /// A list of messages that the store owns; valid until the store changes.
    using MessageList = std::vector<COVMessage*>;
    /// Messages by a key, ascending; within a key in the order of the list that was grouped.
    template<typename Key>
    using MessageGroups = std::map<Key, MessageList>;

    /// Performs a piece of work and returns when it is done.
    using LongWork = std::function<void(const std::function<void()>&)>;

    /// @name Lifecycle
    /// @{

    /// The protocol of `projectModel`, which must outlive it. `applicationScheme` is the scheme of its links.
    COrvel(CProjectModel* projectModel, const QString& applicationScheme);
    /// Takes over all that @p other has; both share the model and the data file.
    COrvel(const COrvel& other) = default;
    COrvel& operator=(const COrvel& other) = default; ///< As the copy constructor.
    ~COrvel() override;                               ///< The data file stays for the application to remove.

    /// Always `kOrvelItemType`.
    int getType() const override;

    /// Saves or loads the mentioned ids, the page paths and the data file's path; the messages stay in the
    /// data file.
    /// @throws qor::CFileException with code 1 when a stored count is over its limit (1,000,000 ids, 100 page
    /// paths)
    void serialize(CQtArchive& archive) override;

    /// Takes the group names from the enumeration registry and drops all messages.
    void InitProtocol();

    /// Starts a run: reads the data file, drops the type's old messages and resets the stage numbers.
    void ProtocolBegin(int protocolType);
    /// Ends a run: adds the closing lines, rebuilds the set of mentioned ids and writes the data file.
    void ProtocolEnd(int protocolType);

    /// Opens the next stage and writes its heading. Stages do not nest: ignored while one is open.
    void startProtocolStage(const QString& text, int protocolType);
    void finishProtocolStage(); ///< Closes the open stage, if there is one.

    /// Has the data file read and written, and the mentioned ids collected, by `perform`, in whatever thread;
    /// the protocol must not be changed before that returns. An empty one is a plain call, as at first.
    void setLongWork(LongWork perform);

    /// Drops all messages and page paths; the set of mentioned ids stays until it is rebuilt.
    void ClearProtocol();
    void ClearProtocolByType(int protocolType); ///< Drops the messages and the page path of one type.

    /// Sets the report types that the page of `protocolType` offers, replacing those it had.
    void addReportTypes(int protocolType, const std::vector<int>& types);

    /// Whether any message mentioned the item when the set of ids was last rebuilt or loaded.
    bool IsMessages(LONGID id) const;
    /// @}

    /// @name Intake
    /// @{

    /// Files a line under `protocolType` with the open stage. Line breaks become "<br>"; the items are taken
    /// from the links in the text.
    void AddMessageRaw(const QString& text, int protocolType, COVMessage::MessageType type);
    void UpdateIDList(); ///< Rebuilds the set of mentioned ids from the messages in memory.
    /// @}

    /// @name Protocol types
    /// @{

    /// Heading of the group of an item type; empty for a type that has none.
    QString GetItemGroupName(int itemType) const;
    /// @}

    /// @name Pages
    /// @{

    /// Writes the page of `type` into `html`, replacing what it held. Always true.
    bool CreateProtocolHtml(int type, QString& html);
    /// Writes the page of `type` as UTF-8 into the file `path`. False for an empty path or a file that cannot
    /// be written.
    bool CreateProtocolFile(int type, const QString& path);
    /// Writes the page of one item into `html`, replacing what it held. Always true.
    bool CreateItemHtml(LONGID id, QString& html);
    /// @}

    /// @name Links
    /// @{

    /// Link that leads to the item in the application; `text` is inserted as it is.
    std::wstring GetItemLink(LONGID id, const std::wstring& text) const;
    /// The same links as they are now, for use in any thread. Null where they can't be taken over.
    qor::ItemLinksPtr GetItemLinks() const;
    /// Link to the element, or just `text` when there is none.
    std::wstring GetModelElementLink(CModelElement* element, const std::wstring& text) const;
    /// The first link in `messageText` whose mark-up holds "id=" and the id; empty when there is none. Its
    /// visible text, with the ">" before it, goes to `linkText`.
    static QString GetMessageItemLink(const QString& messageText, LONGID id, QString& linkText);
    /// Style class of a message's kind; empty for stage headings and unknown kinds.
    static QString GetMessageStyleClass(const COVMessage& message);
    /// @}

    /// Folder of the installed page template; empty until the plug-in has extended the application.
    static QString s_sysTemplateProtocolPath;

private:
    friend struct OrvelTestAccess;

    // Intake
    void AddMessage(const COVMessage& message);
    void AddMessage(COVMessage&& message);
    void AddTitleInfo(int protocolType);
    int GetItemTypeByID(LONGID id) const;

    // Data file
    bool ReadXML();
    bool WriteXML();
    std::optional<QString> SaveMessages() const;
    QString GetProtocolFilePath(int type);
    void performLongWork(const std::function<void()>& work) const;

    // Selection and grouping: results are appended to what the output holds
    void GetProtocolMessages(int protocolType, MessageList& list, std::set<int> kinds);
    void FilterMessages(MessageList& list, std::set<int> protocolTypes, std::set<int> kinds) const;
    void GetMessageList(const MessageList& list, int unused, COVMessage::MessageType kind, int itemType,
                        MessageList& result);
    void GetMessagesByItemId(const MessageList& list, MessageGroups<LONGID>& groups) const;
    void GetMessagesByItemType(const MessageList& list, MessageGroups<int>& groups) const;
    void GetMessagesByMessageType(const MessageList& list, MessageGroups<int>& groups) const;
    void GetMessagesByStage(const MessageList& list, MessageGroups<int>& groups) const;

    // Protocol types
    QString GetProtocolTitle(int protocolType);

    // Pages: html is appended
    void ParseHtmlTemplate(QString& head, QString& tail) const;
    bool GetHtmlProtocolData(int type, QString& html);
    bool GetHtmlProtocolData(int type, orvel::HtmlOutput& html);
    void AppendServiceBlock(int type, const MessageList& list, orvel::HtmlOutput& html) const;
    void AppendReportLinks(const std::vector<int>& reports, orvel::HtmlOutput& html) const;
    void AppendStageBlocks(const MessageList& list, orvel::HtmlOutput& html);
    bool WriteProtocolFile(int type, const QString& path);
    bool GetHtmlItemData(LONGID id, QString& html);

    // Tree
    bool GetHtmlList(const MessageList& list, QString& html);
    bool GetHtmlList(const MessageList& list, orvel::HtmlOutput& html);
    bool GetHtmlGroupedData(const MessageList& list, QString& html, bool asRoot);
    bool GetHtmlGroupedData(const MessageList& list, orvel::HtmlOutput& html, bool asRoot);
    void AppendItemTypeNode(int itemType, const MessageList& list, orvel::HtmlOutput& html);
    void AppendItemNodes(int itemType, const MessageList& list, orvel::HtmlOutput& html);

    // Links
    QString GetProtocolLink(int type, const QString& text) const;
    QString GetReportLink(int type, const QString& text) const;
    QString GetEncodedProjectName() const;
    QString GetProjectName() const;

    std::map<int, std::vector<int>> reportTypes;
    std::map<int, QString> itemGroupNames;
    QString dataFilePath;
    CProjectModel* model;
    std::map<int, std::vector<COVMessage>> messages;
    std::map<int, QString> protocolFiles;
    std::map<int, std::vector<COVMessage>> spareMessages;
    std::set<LONGID> idList;
    QString templateFileName;
    QString uriScheme;
    int currentStage;
    int nextStage;
    LongWork longWork;
};
