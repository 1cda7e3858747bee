#pragma once

#include "apps/desk/document/PackedBytes.h"
#include "apps/desk/document/ProtocolSummary.h"
#include "host/model/LongId.h"

#include <QByteArray>
#include <QString>

#include <optional>
#include <set>

namespace orvel::desk {

/// Keeps the lines of the project's protocols when their data file fails.
///
/// The file lies in a temporary folder. It may be cleaned away, or not be readable just when a run begins or
/// a page is made, and the protocol then goes on with nothing. So its content is kept here, as it was when it
/// was last seen whole, and compared with what is there afterwards.
class ProtocolKeeper
{
public:
    struct Outcome
    {
        bool isWhole = true;    ///< the file holds what it should
        bool isChanged = false; ///< the content is another one now
        QString message;        ///< what the user is to be told; empty when there is nothing
        /// The items that the lines mention, when lines had to be restored.
        std::optional<std::set<LONGID>> mentionedItems;
    };

    /// Takes the content of a data file that was made just now.
    void adopt(const QString& dataFile, const QByteArray& dataContent);

    /// Takes what the file holds now, after the lines that have gone missing are restored. Done before a run
    /// or a page, it has them begin with all that there is.
    /// @param replacedTypes  the protocol types whose lines a run was to replace. The file is not whole when
    /// it
    ///                       is still the one that was there before.
    Outcome check(const QString& dataFile, const std::set<int>& replacedTypes = {});

    /// The data file's content; empty before the first run.
    QByteArray getContent() const { return kept.bytes.unpack(); }
    /// The same, packed.
    const PackedBytes& getBytes() const { return kept.bytes; }
    /// What it holds.
    const ProtocolSummary& getSummary() const { return kept.summary; }

private:
    struct Content
    {
        PackedBytes bytes;
        ProtocolSummary summary;
        bool isCanonical = false; ///< as the protocol writes it, so that its lines can be told apart
    };

    static Content read(QIODevice& device);
    Outcome compare(const QString& dataFile, const std::set<int>& replacedTypes);
    std::optional<std::set<LONGID>> restoreMissing(const QString& dataFile,
                                                   const std::set<int>& replacedTypes, Content& now) const;

    Content kept;
    QString identity; ///< tells the file that was there from one that has replaced it
};

} // namespace orvel::desk
