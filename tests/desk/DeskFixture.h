#pragma once

#include "apps/desk/gui/DeskWindow.h"
#include "host/app/PluginManager.h"
#include "host/app/SDIApplication.h"
#include "host/delegates/ItemDelegateFactory.h"
#include "tests/integration/OpenedUrls.h"

#include <QStringList>
#include <QTemporaryDir>

#include <memory>

namespace orvel::test {

/// An application that keeps its warnings instead of showing them.
class WarningCollector : public SDIApplication
{
public:
    WarningCollector() : SDIApplication(QStringLiteral("orvel")) {}

    /// The warnings so far; they count as seen then.
    QStringList takeWarnings();

protected:
    void showWarning(const QString& message, QObject* parent) override;

private:
    QStringList warnings;
};

/// A folder of settings and of kept data for a test program, made before it looks for any.
class TestHome
{
public:
    TestHome();

private:
    QTemporaryDir folder;
};

/// The desk with its plug-in, a home of its own, and a browser that opens nothing.
struct DeskFixture
{
    DeskFixture();

    /// A shown window with an empty project.
    std::unique_ptr<desk::DeskWindow> makeWindow();
    /// A shown window with an imported network, no run working.
    std::unique_ptr<desk::DeskWindow> makeWindow(const QString& networkFile);
    /// The path of a file in the folder of the test.
    QString path(const QString& name) const { return folder.filePath(name); }

    TestHome home;
    QTemporaryDir folder;
    WarningCollector application;
    ItemDelegateFactory delegateFactory;
    PluginManager plugins;
    OpenedUrls opened;
};

/// The path of a network that comes with the program.
QString samplePath(const QString& name);
/// The path of a network of the tests.
QString testNetworkPath(const QString& name);

/// The texts between bars.
QStringList toList(const char* texts);

/// Triggers the action of a window's menu by its text, without the mark of its mnemonic.
bool triggerAction(const QWidget& window, const QString& text);
/// Whether the action is enabled; false if there is none.
bool isActionEnabled(const QWidget& window, const QString& text);

/// Clicks a button, by its text, of the next message box that asks something. Keeps the question.
class Answer : public QObject
{
    Q_OBJECT

public:
    explicit Answer(const QString& buttonText);

    /// The question that was asked, with what explains it; empty if none was.
    QString getQuestion() const { return question; }

private:
    void look();

    QString button;
    QString question;
};

} // namespace orvel::test
