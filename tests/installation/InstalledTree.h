#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

namespace orvel::test {

/// How a program has ended.
struct Outcome
{
    int exitCode = -1;
    QByteArray output; ///< with what it wrote to stderr
};

/// Runs a program in `folder`, with none of the variables that tell where Orvel is.
Outcome runProgram(const QString& program, const QStringList& arguments, const QString& folder,
                   const QStringList& variables = {});

/// What the build tree installs, moved from where it was installed to.
class InstalledTree
{
public:
    /// Installs and moves. Ends the program if that fails.
    InstalledTree();

    /// A path below the installation's folder.
    QString path(const QString& name) const;
    /// A path in a folder beside the installation, which holds nothing at first.
    QString work(const QString& name) const;

private:
    QTemporaryDir folder;
};

} // namespace orvel::test
