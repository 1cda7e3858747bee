#include "host/model/CProject.h"

#include <QtTest>

class TestCProject : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void newProjectHasItsNameAndNoFile();
    void nameAndFileCanBeChanged();
};

void TestCProject::newProjectHasItsNameAndNoFile()
{
    const CProject project(QStringLiteral("Линия 3"));

    QCOMPARE(project.getName(), QStringLiteral("Линия 3"));
    QCOMPARE(project.getFilePath(), QString());
}

void TestCProject::nameAndFileCanBeChanged()
{
    CProject project(QStringLiteral("old"));
    project.setName(QStringLiteral("new"));
    project.setFilePath(QStringLiteral("/data/new.prj"));

    QCOMPARE(project.getName(), QStringLiteral("new"));
    QCOMPARE(project.getFilePath(), QStringLiteral("/data/new.prj"));
}

QTEST_GUILESS_MAIN(TestCProject)
#include "tst_cproject.moc"
