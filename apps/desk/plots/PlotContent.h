#pragma once

#include "Orvel/store/COVMessage.h"
#include "apps/desk/document/NetworkSnapshot.h"
#include "apps/desk/document/ToleranceRules.h"

#include <QHash>
#include <QPointF>
#include <QString>

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace orvel::desk {

/// What can be pointed at in a plot: a measurement, a loop, or a bar of a histogram.
struct PlotMark
{
    QPointF place;
    LONGID item = 0; ///< that it leads to; 0 for none
    bool isBad = false;
    std::size_t number = 0; ///< among what the marks were made of, in whichever order that was
};

using PlotCurve = std::vector<QPointF>;

/// All that a plot shows.
struct PlotContent
{
    QString title;
    QString xTitle;
    QString yTitle;
    QString emptyText; ///< what to do where there are no marks
    /// By their place from left to right.
    std::vector<PlotMark> marks;
    double barWidth = 0.0; ///< of the marks; 0 if they are points
    /// Limits, or what the bars should be like.
    std::vector<PlotCurve> curves;
    /// What a mark is, in words, by its number: few of a hundred thousand are ever asked for.
    std::function<QString(std::size_t number)> describe;
};

namespace plots {

/// The plots, in their order.
enum Kind { NormalisedResiduals, ResidualsByLength, Misclosures, Discrepancies };
constexpr std::size_t kCount = 4;
constexpr std::array<Kind, kCount> kKinds{NormalisedResiduals, ResidualsByLength, Misclosures, Discrepancies};

/// A section with what an adjustment gave.
struct Residual
{
    LONGID section = 0;
    QString name;
    std::optional<double> length;     ///< km
    double residual = 0.0;            ///< mm
    std::optional<double> normalised; ///< none if nothing checks the section
};

/// What plots are made of, for another thread.
struct Source
{
    std::vector<Residual> residuals;
    QHash<LONGID, COVMessage::MessageType> worstOfItem; ///< what the protocols say of items
    std::shared_ptr<const NetworkSnapshot> snapshot;
    SurveyRules rules;

    /// An error of the protocols is about it.
    bool isBad(const Residual& residual) const
    {
        return worstOfItem.value(residual.section, COVMessage::Message) == COVMessage::Error;
    }
};

// Bars of normalised residuals: so wide, and so many; the outermost hold all that lies beyond.
constexpr double kBarWidth = 0.5;
constexpr int kBarCount = 20;

/// What a plot shows, to be made in any thread.
///
/// @param isStopped  asked now and then; nobody takes what a stopped one gives
PlotContent make(Kind kind, const std::shared_ptr<const Source>& source,
                 const std::function<bool()>& isStopped = {});

} // namespace plots

} // namespace orvel::desk
