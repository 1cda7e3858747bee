#include "bench/Digest.h"

namespace orvel::bench {

void Digest::add(const QString& text)
{
    add(static_cast<qint64>(text.size()));
    hash.addData(reinterpret_cast<const char*>(text.constData()),
                 text.size() * static_cast<int>(sizeof(QChar)));
}

void Digest::add(const QByteArray& bytes)
{
    hash.addData(bytes);
}

void Digest::add(const sample::MessageStore& store)
{
    for (const auto& [protocolType, list] : store) {
        add(qint64{protocolType});
        add(static_cast<qint64>(list.size()));
        for (const COVMessage& message : list) {
            add(qint64{message.protocolType});
            add(qint64{message.messageType});
            add(qint64{message.stage});
            for (const LONGID id : message.itemIds)
                add(id);
            for (const int type : message.itemTypes)
                add(qint64{type});
            add(message.text);
        }
    }
}

QString Digest::getResult() const
{
    return QString::fromLatin1(hash.result().toHex());
}

void Digest::add(qint64 number)
{
    hash.addData(reinterpret_cast<const char*>(&number), sizeof(number));
}

} // namespace orvel::bench
