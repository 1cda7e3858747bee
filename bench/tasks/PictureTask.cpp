#include "bench/tasks/PictureTask.h"

#include "apps/desk/picture/Layout.h"
#include "apps/desk/picture/NetworkPicture.h"
#include "apps/desk/picture/PicturePanel.h"
#include "apps/desk/picture/PictureView.h"
#include "bench/Clocks.h"
#include "bench/DeskHost.h"
#include "bench/StallWatch.h"
#include "tests/levelling/SyntheticNetwork.h"

#include <QCoreApplication>
#include <QImage>

#include <functional>

namespace orvel::bench {

namespace {

class PictureTask : public Task
{
public:
    explicit PictureTask(const TaskRequest& request)
    {
        constexpr double sectionsPerPoint = 2.5;
        host.document->setNetwork(test::networks::synthetic(
            request.size, static_cast<int>(sectionsPerPoint * static_cast<double>(request.size))));
        view.resize(1000, 700);
    }

    void run() override
    {
        desk::picture::PlanGraph graph;
        runStep(QStringLiteral("graph"), [&] { graph = desk::picture::PlanGraph::of(*host.document); });
        desk::picture::Layout layout;
        runStep(QStringLiteral("layout"),
                [&] { layout = *desk::picture::layOut(graph, [] { return false; }); });
        runStep(QStringLiteral("open"),
                [&] { view.setPicture(desk::picture::NetworkPicture::make(*host.document, layout), false); });
        runStep(QStringLiteral("frame_whole"), [this] { paint(); });
        runStep(QStringLiteral("hover"), [this] { view.findItemAt(QPointF(500, 350)); });
        runStep(QStringLiteral("select"),
                [this] { view.setCurrentItem(host.document->getSections().back()->getId()); });
        constexpr int stepsPerFrame = 4;
        for (const char* name : {"frame_2x", "frame_6x", "frame_15x"}) {
            for (int step = 0; step < stepsPerFrame; ++step)
                view.zoomIn();
            runStep(QString::fromLatin1(name), [this] { paint(); });
        }
        runPanel();
    }

    std::vector<Stall> getStalls() const override { return stalls; }

private:
    void paint()
    {
        QImage image(view.size(), QImage::Format_ARGB32_Premultiplied);
        view.render(&image);
    }

    /// What the panel takes of the window's thread.
    void runPanel()
    {
        runPanelStep(QStringLiteral("panel_open"), [this] {
            panel = std::make_unique<desk::picture::PicturePanel>(*host.document);
            panel->resize(1000, 700);
            panel->show();
        });
        runPanelStep(QStringLiteral("panel_lines"), [this] { Q_EMIT host.document->summaryChanged(); });
        panel.reset();
        runPanelStep(QStringLiteral("panel_leave"), [this] {
            panel = std::make_unique<desk::picture::PicturePanel>(*host.document);
            panel->show();
            // Places begin to be sought.
            for (int turn = 0; turn < 10; ++turn)
                QCoreApplication::processEvents();
            panel.reset();
        });
    }

    /// A step is what the user does, and all that follows of it until the panel shows the result.
    void runPanelStep(const QString& name, const std::function<void()>& step)
    {
        stalls.push_back(stallWatch.watch(name, step, [this] { return panel && panel->isWorking(); }));
    }

    void runStep(const QString& name, const std::function<void()>& step)
    {
        const double start = clocks::getSteady();
        const double startCpu = clocks::getProcessCpu();
        step();
        stalls.push_back({name, clocks::getSteady() - start, clocks::getProcessCpu() - startCpu});
    }

    DeskHost host;
    desk::picture::PictureView view;
    std::unique_ptr<desk::picture::PicturePanel> panel;
    StallWatch stallWatch;
    std::vector<Stall> stalls;
};

} // namespace

std::unique_ptr<Task> makePictureTask(const TaskRequest& request)
{
    return std::make_unique<PictureTask>(request);
}

} // namespace orvel::bench
