#pragma once

#include "host/model/LongId.h"

#include <QByteArray>
#include <QJsonObject>
#include <QString>

#include <vector>

namespace orvel::replay {

/// One line of a journal: what to do, and the arguments by name.
///
/// The getters throw `JournalError` when the argument is missing or is not of the kind asked for.
class JournalLine
{
public:
    /// Throws `JournalError` when `json` is not a JSON object with a text under "do".
    explicit JournalLine(const QByteArray& json);

    QString getCommand() const;

    bool has(const QString& key) const;
    QString getText(const QString& key) const;
    QString getText(const QString& key, const QString& fallback) const;
    bool getFlag(const QString& key, bool fallback) const;
    /// An integer of 32 bits.
    int getNumber(const QString& key) const;
    std::vector<int> getNumbers(const QString& key) const;
    /// A text of decimal digits, since 64 bits don't fit a JSON number.
    LONGID getId(const QString& key) const;

private:
    QJsonValue getValue(const QString& key) const;

    QJsonObject object;
};

} // namespace orvel::replay
