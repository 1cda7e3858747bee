#pragma once

#include <QString>

namespace orvel::replay {

/// The folder that a journal reads and writes its files in. A journal may come from anybody, so that none of
/// the names in it leads elsewhere.
class JournalFolder
{
public:
    /// @param folderPath an existing folder; the present one when it is empty
    explicit JournalFolder(const QString& folderPath) : path(folderPath) {}

    /// @param name as it stands in the journal
    /// @return the path of that file
    /// @throws JournalError when the name is absolute, has a "..", or leads out of the folder by a symbolic
    /// link
    QString locate(const QString& name) const;

private:
    bool holds(const QString& folderPath) const;

    QString path;
};

} // namespace orvel::replay
