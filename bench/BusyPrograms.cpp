#include "bench/BusyPrograms.h"

#include <QThread>

namespace orvel::bench {

BusyPrograms::BusyPrograms()
{
    for (int i = 0; i < QThread::idealThreadCount(); ++i) {
        programs.push_back(std::make_unique<QProcess>());
        // It ends by itself when the benchmark dies and nobody holds its input open any more.
        programs.back()->start(
            QStringLiteral("/bin/sh"),
            {QStringLiteral("-c"), QStringLiteral("(while :; do :; done) & read end; kill $!")});
        if (!programs.back()->waitForStarted())
            qFatal("Cannot start /bin/sh");
    }
}

BusyPrograms::~BusyPrograms()
{
    for (const auto& program : programs) {
        program->closeWriteChannel();
        program->waitForFinished();
    }
}

} // namespace orvel::bench
