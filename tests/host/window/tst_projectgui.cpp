#include "host/model/CProjectModel.h"
#include "host/window/GUIExtension.h"
#include "host/window/ProjectGUI.h"

#include <QtTest>

namespace {

using Extensions = std::vector<GUIExtension*>;

/// Asks for the model while it is destroyed.
class LateExtension : public GUIExtension
{
public:
    LateExtension(ProjectGUI* gui, CProjectModel** lastModel)
        : GUIExtension(gui, nullptr)
        , seenModel(lastModel)
    {}

    ~LateExtension() override { *seenModel = getModel(); }

private:
    CProjectModel** seenModel;
};

} // namespace

class TestProjectGUI : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void knowsItsModel();
    void extensionKnowsTheModelAndItsParent();
    void extensionsStandInTheOrderOfAddition();
    void nullIsIgnored();
    void destroyedExtensionDisappears();
    void extensionsAreDestroyedWithTheUserInterface();
    void extensionAddedTwiceIsDestroyedOnce();
    void extensionMayUseTheModelToTheEnd();
};

void TestProjectGUI::knowsItsModel()
{
    CProjectModel model(nullptr);

    QCOMPARE(ProjectGUI(&model).getModel(), &model);
}

void TestProjectGUI::extensionKnowsTheModelAndItsParent()
{
    CProjectModel model(nullptr);
    ProjectGUI gui(&model);
    QObject parent;
    const GUIExtension extension(&gui, &parent);

    QCOMPARE(extension.getModel(), &model);
    QCOMPARE(extension.parent(), &parent);
}

void TestProjectGUI::extensionsStandInTheOrderOfAddition()
{
    ProjectGUI gui(nullptr);
    auto* first = new GUIExtension(&gui, nullptr);
    auto* second = new GUIExtension(&gui, nullptr);
    auto* other = new GUIExtension(&gui, nullptr);
    gui.addExtension(7, second);
    gui.addExtension(8, other);
    gui.addExtension(7, first);

    QCOMPARE(gui.getExtensions(7), Extensions({second, first}));
    QCOMPARE(gui.getExtensions(8), Extensions{other});
    QCOMPARE(gui.getExtensions(9), Extensions());
}

void TestProjectGUI::nullIsIgnored()
{
    ProjectGUI gui(nullptr);
    gui.addExtension(7, nullptr);

    QCOMPARE(gui.getExtensions(7), Extensions());
}

void TestProjectGUI::destroyedExtensionDisappears()
{
    ProjectGUI gui(nullptr);
    auto parent = std::make_unique<QObject>();
    gui.addExtension(7, new GUIExtension(&gui, parent.get()));
    auto* staying = new GUIExtension(&gui, nullptr);
    gui.addExtension(7, staying);
    parent.reset();

    QCOMPARE(gui.getExtensions(7), Extensions{staying});
}

void TestProjectGUI::extensionsAreDestroyedWithTheUserInterface()
{
    QObject parent;
    auto gui = std::make_unique<ProjectGUI>(nullptr);
    const QPointer<GUIExtension> withParent(new GUIExtension(gui.get(), &parent));
    const QPointer<GUIExtension> withoutParent(new GUIExtension(gui.get(), nullptr));
    gui->addExtension(7, withParent);
    gui->addExtension(8, withoutParent);
    gui.reset();

    QVERIFY(withParent.isNull());
    QVERIFY(withoutParent.isNull());
    QVERIFY(parent.children().isEmpty());
}

void TestProjectGUI::extensionAddedTwiceIsDestroyedOnce()
{
    auto gui = std::make_unique<ProjectGUI>(nullptr);
    const QPointer<GUIExtension> extension(new GUIExtension(gui.get(), nullptr));
    gui->addExtension(7, extension);
    gui->addExtension(8, extension);
    gui.reset();

    QVERIFY(extension.isNull());
}

void TestProjectGUI::extensionMayUseTheModelToTheEnd()
{
    CProjectModel model(nullptr);
    CProjectModel* seenModel = nullptr;
    {
        ProjectGUI gui(&model);
        gui.addExtension(7, new LateExtension(&gui, &seenModel));
    }
    QCOMPARE(seenModel, &model);
}

QTEST_GUILESS_MAIN(TestProjectGUI)
#include "tst_projectgui.moc"
