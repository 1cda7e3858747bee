#pragma once

#include "bench/SampleMessages.h"

#include <QCryptographicHash>
#include <QString>

namespace orvel::bench {

/// A digest of a result, by which the programs show that they did the same work.
class Digest
{
public:
    void add(const QString& text);
    void add(const QByteArray& bytes);
    void add(const sample::MessageStore& store);
    QString getResult() const;

private:
    void add(qint64 number);

    QCryptographicHash hash{QCryptographicHash::Md5};
};

} // namespace orvel::bench
