// Intake: the ids and types of a line are those that the regular expressions find, and the link of an item is
// the first one that they find with its id.

#include "tests/fuzz/Finding.h"
#include "tests/reference/RegExpLinks.h"
#include "tests/support/OrvelTestAccess.h"
#include "tests/support/ProtocolFixture.h"

#include <QCoreApplication>

namespace {

ProtocolFixture* fixture = nullptr;

constexpr int kType = 305510145;

/// The link as the words of its description say, without the scanner.
QString findLink(const QString& text, LONGID id)
{
    for (const QString& anchor : reference::findAnchors(text)) {
        if (anchor.contains(QStringLiteral("id=%1").arg(id)))
            return anchor;
    }
    return QString();
}

void checkIntake(const QString& line)
{
    COrvel& protocol = fixture->protocol;
    protocol.ClearProtocol();
    protocol.AddMessageRaw(line, kType, COVMessage::Error);
    const COVMessage& message = OrvelTestAccess::messages(protocol)[kType].at(0);

    QString text = line;
    text.replace(QStringLiteral("\n"), QStringLiteral("<br>"));
    mustHold(message.text == text, "the text is the line with its breaks");

    std::vector<LONGID> ids{0};
    if (!reference::findAnchors(text).isEmpty())
        ids = reference::findIds(text);
    mustHold(message.itemIds == ids, "the ids are those of the regular expressions");
    mustHold(message.itemTypes.size() == ids.size(), "every id has a type");
    for (std::size_t i = 0; i < ids.size(); ++i)
        mustHold(message.itemTypes[i] == (ids[i] == 5 ? kPointItemType : kGeneralItemType),
                 "the types are those of the model");
    for (const LONGID id : {LONGID(5), LONGID(0), ids.empty() ? LONGID(1) : ids.front()}) {
        QString linkText;
        mustHold(COrvel::GetMessageItemLink(text, id, linkText) == findLink(text, id),
                 "the link is the first with the id");
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    new QCoreApplication(*argc, *argv);
    fixture = new ProtocolFixture;
    fixture->addItem(5, kPointItemType);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    const QString text = QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<int>(size));
    checkIntake(text);
    return 0;
}
