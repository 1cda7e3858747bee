#pragma once

#include "bench/SampleMessages.h"

#include <QString>

#include <map>
#include <set>
#include <vector>

class CProjectModel;

namespace orvel::bench {

/// A protocol that does what the library does in the plainest way: data file through a DOM document, links by
/// regular expressions, lists filtered in place, pages put together piece by piece. The measure of what the
/// library's own ways are worth.
class PlainProtocol
{
public:
    PlainProtocol(CProjectModel& projectModel, const QString& dataFile);

    void readDataFile();
    void writeDataFile();

    void addMessage(const QString& text, int protocolType, COVMessage::MessageType kind);

    void createProtocolFile(int protocolType, const QString& path);
    QString createItemHtml(LONGID id);

    sample::MessageStore messages;

private:
    using List = std::vector<const COVMessage*>;
    template<typename Key>
    using Groups = std::map<Key, List>;

    QString makeProtocolPage(int protocolType) const;
    void appendStageBlocks(const List& list, QString& html) const;
    void appendGroupedData(const List& list, bool asRoot, QString& html) const;
    void appendItemTypeNode(int itemType, const List& list, QString& html) const;
    void appendItemNodes(int itemType, const List& list, QString& html) const;
    void appendItemData(LONGID id, QString& html) const;

    CProjectModel& model;
    QString dataFilePath;
};

} // namespace orvel::bench
