#include "Orvel/store/COrvel.h"
#include "tests/reference/DomDataFile.h"
#include "tests/support/MessageText.h"
#include "tests/support/OrvelTestAccess.h"
#include "tests/support/ProtocolFixture.h"
#include "tests/support/TestFiles.h"

#include <QBuffer>
#include <QDomDocument>
#include <QtTest>

#include <map>
#include <optional>
#include <random>

using Access = OrvelTestAccess;

namespace {

/// The data file of the messages as the DOM writes it.
QByteArray domFile(const Access::MessageStore& store)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    reference::writeDataFile(store, buffer);
    return buffer.data();
}

/// The message of an "li"; nothing for a damaged one, over which reading never gets.
std::optional<COVMessage> domMessage(const QDomElement& li)
{
    bool isProtocolType = false;
    bool isMessageType = false;
    const int protocolType = li.attribute(QStringLiteral("ptype")).toInt(&isProtocolType);
    const int messageType = li.attribute(QStringLiteral("mtype")).toInt(&isMessageType);
    const QDomElement mess = li.firstChildElement(QStringLiteral("mess"));
    QDomNode section = mess.firstChild();
    if (!isProtocolType || !isMessageType || !section.isCDATASection())
        return std::nullopt;

    COVMessage message(protocolType, messageType, std::vector<LONGID>(), std::vector<int>(), QString(),
                       mess.attribute(QStringLiteral("sid")).toInt());
    for (; section.isCDATASection(); section = section.nextSibling())
        message.text += section.toCDATASection().data();
    const QDomNodeList items = li.elementsByTagName(QStringLiteral("item"));
    for (int i = 0; i < items.size(); ++i) {
        bool isId = false;
        bool isType = false;
        const LONGID id = items.at(i).toElement().attribute(QStringLiteral("iid")).toLongLong(&isId);
        const int type = items.at(i).toElement().attribute(QStringLiteral("itype")).toInt(&isType);
        if (isId && isType) {
            message.itemIds.push_back(id);
            message.itemTypes.push_back(type);
        }
    }
    return message;
}

/// What reading a file gives: "true" or "false" and the messages; "endless" for one with a damaged "li".
QStringList domReading(const QByteArray& content)
{
    QDomDocument document;
    const QDomElement root = document.setContent(content) ? document.documentElement() : QDomElement();
    if (root.tagName() != QLatin1String("messagelist"))
        return {QStringLiteral("false")};
    Access::MessageStore store;
    for (QDomElement li = root.firstChildElement(QStringLiteral("li")); !li.isNull();
         li = li.nextSiblingElement(QStringLiteral("li"))) {
        const std::optional<COVMessage> message = domMessage(li);
        if (!message)
            return {QStringLiteral("endless")};
        store[message->protocolType].push_back(*message);
    }
    return QStringList(QStringLiteral("true")) + describe(store);
}

/// What the protocol makes of the file, in the same form.
QStringList reading(ProtocolFixture& f, const QByteArray& content)
{
    Access::dataFilePath(f.protocol) = f.tempPath(QStringLiteral("data.xml"));
    writeFile(Access::dataFilePath(f.protocol), content);
    const bool result = Access::ReadXML(f.protocol);
    return QStringList(result ? QStringLiteral("true") : QStringLiteral("false")) +
           describe(Access::messages(f.protocol));
}

class Generator
{
public:
    int number(int first, int last) { return std::uniform_int_distribution<int>(first, last)(engine); }

    template<typename List>
    auto oneOf(const List& list)
    {
        return list[static_cast<decltype(list.size())>(number(0, static_cast<int>(list.size()) - 1))];
    }

    /// Messages whose texts XML can carry.
    std::vector<COVMessage> messages()
    {
        std::vector<COVMessage> list;
        for (int count = number(0, 6); count > 0; --count)
            list.push_back(message());
        return list;
    }

    /// The file with one or two small damages.
    QByteArray damaged(QByteArray content)
    {
        for (int count = number(1, 2); count > 0; --count)
            damage(content);
        return content;
    }

private:
    COVMessage message()
    {
        static const std::vector<int> numbers = {0,  1,  -1, 7,  305510145, 305510146, kGeneralItemType,
                                                 10, 99, -8, 40, 2147483647};
        std::vector<LONGID> ids;
        std::vector<int> types;
        for (int count = number(0, 3); count > 0; --count) {
            ids.push_back(LONGID(oneOf(numbers)) * oneOf(numbers));
            types.push_back(oneOf(numbers));
        }
        return COVMessage(oneOf(numbers), number(0, 6), ids, types, text(), number(0, 2));
    }

    QString text()
    {
        static const QStringList pieces = {
            QStringLiteral("a"),       QStringLiteral("Невязка"),
            QStringLiteral(" "),       QStringLiteral("\n"),
            QStringLiteral("\r\n"),    QStringLiteral("\t"),
            QStringLiteral("]]>"),     QStringLiteral("]"),
            QStringLiteral("]]"),      QStringLiteral(">"),
            QStringLiteral("&lt;"),    QStringLiteral("<b>"),
            QStringLiteral("</mess>"), QStringLiteral("<!["),
            QStringLiteral("😀"),       QStringLiteral("\uFEFF"),
            QStringLiteral("\uFFFD"),  QString(QChar(0)),
            QString(QChar(0x1B)),      QStringLiteral("<a href=\"id=1\">"),
        };
        QString result;
        for (int count = number(0, 8); count > 0; --count)
            result += oneOf(pieces);
        return result;
    }

    void damage(QByteArray& content)
    {
        static const std::vector<QByteArray> pieces = {" ",
                                                       "\n",
                                                       "\r",
                                                       "\t",
                                                       "\"",
                                                       "<",
                                                       ">",
                                                       "&",
                                                       "/",
                                                       "0",
                                                       "-",
                                                       "+",
                                                       "9",
                                                       "x",
                                                       "]]>",
                                                       "<![CDATA[",
                                                       "&amp;",
                                                       "<item/>",
                                                       "<!-- -->",
                                                       "<li/>",
                                                       "<b></b>",
                                                       "\xFF",
                                                       "\xC3",
                                                       "\xD0\x9F",
                                                       "\xEF\xBB\xBF",
                                                       "\xEF\xBF\xBF",
                                                       "\xED\xA0\x80",
                                                       QByteArray(1, '\0'),
                                                       "sid=\"0\"",
                                                       "<mess><![CDATA[t]]></mess>"};
        const int at = number(0, content.size());
        const int length = number(1, number(1, 30));
        switch (number(0, 12) % 5) {
        case 0:
            content.remove(at, length);
            break;
        case 1:
            content.insert(at, oneOf(pieces));
            break;
        case 2:
            content.replace(at, length, oneOf(pieces));
            break;
        case 3:
            content.insert(number(0, content.size()), content.mid(at, length));
            break;
        default:
            content.truncate(at);
        }
    }

    std::mt19937 engine{19851126};
};

} // namespace

class TestDataFileDom : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsWhatTheDomWrites();
    void readsDamagedFilesAsTheDomDoes();
};

void TestDataFileDom::readsWhatTheDomWrites()
{
    Generator generator;
    ProtocolFixture f;
    for (int i = 0; i < 1000; ++i) {
        Access::MessageStore store;
        for (const COVMessage& message : generator.messages())
            store[message.protocolType].push_back(message);
        const QStringList wanted = QStringList(QStringLiteral("true")) + describe(store);
        QByteArray content = domFile(store);
        QCOMPARE(reading(f, content), wanted);
        // In a form that means the same.
        content.replace("    <li ", "\t<li\n");
        QCOMPARE(reading(f, content), wanted);
    }
}

void TestDataFileDom::readsDamagedFilesAsTheDomDoes()
{
    Generator generator;
    ProtocolFixture f;
    std::map<QString, int> outcomes;
    for (int i = 0; i < 8000; ++i) {
        Access::MessageStore store;
        for (const COVMessage& message : generator.messages())
            store[message.protocolType].push_back(message);
        const QByteArray content = generator.damaged(domFile(store));
        const QStringList wanted = domReading(content);
        ++outcomes[wanted.first()];
        if (wanted.first() != QLatin1String("endless"))
            QVERIFY2(reading(f, content) == wanted, content.constData());
    }
    // The files must be worth the comparison.
    QVERIFY(outcomes[QStringLiteral("true")] > 1000);
    QVERIFY(outcomes[QStringLiteral("false")] > 1000);
}

QTEST_GUILESS_MAIN(TestDataFileDom)
#include "tst_datafiledom.moc"
