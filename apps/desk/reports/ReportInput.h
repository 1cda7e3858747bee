#pragma once

#include "apps/desk/document/LevellingPoint.h"
#include "apps/desk/document/LevellingSection.h"
#include "apps/desk/document/NetworkSnapshot.h"
#include "apps/desk/document/ToleranceRules.h"

#include <QDate>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

namespace orvel::desk {

class Document;

/// All that reports are made of: a copy, so that they can be made in any thread.
struct ReportInput
{
    struct Point
    {
        QString name;
        bool isFixed = false;
        std::optional<LevellingPoint::Result> result;
    };

    struct Section
    {
        LONGID id = 0;
        QString name;
        levelling::Section measured;
        std::optional<LevellingSection::Result> result;
        bool isOff = false; ///< by hand: runs know nothing of it
        QString offReason;  ///< may be empty
    };

    /// To be called in the thread of the document.
    static ReportInput gather(const Document& document, const QDate& today);

    QDate date;
    QString project;
    QString file; ///< its name, without the folder; empty for a project without a file
    SurveyRules rules;
    std::shared_ptr<const NetworkSnapshot> snapshot; ///< of what runs compute with
    std::vector<Point> points;
    std::vector<Section> sections; ///< those that are switched off, too
    bool isOutdated = false;       ///< the results belong to another state of the network
    QStringList handChanges;       ///< what was changed by hand, a line each
};

} // namespace orvel::desk
