#pragma once

#include "levelling/Network.h"

#include <QByteArray>
#include <QStringList>

#include <functional>
#include <vector>

namespace levelling {

/// A network as a file of the gama-local format.
struct GkfText
{
    QByteArray text; ///< UTF-8; empty if the writing was stopped
    /// Points whose names XML cannot hold as they are, ascending, and the names that stand for them.
    std::vector<int> renamedPoints;
    QStringList names; ///< by index of the point
    /// Sections whose weight the file states by a standard deviation though the network has none for them:
    /// without it the length, or no length, would give them another.
    int weightedSections = 0;
};

/// Writes the network as a gama-local file, from which GkfReader reads the same one again: points with
/// heights and roles, sections with differences, lengths and standard deviations, observed heights with their
/// covariances, parameters and description. Numbers have as many digits as they need to be the same again.
/// @param isStopped asked now and then
GkfText writeGkf(const Network& network, const std::function<bool()>& isStopped = {});

} // namespace levelling
