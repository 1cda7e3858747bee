#pragma once

#include "levelling/Adjustment.h"
#include "levelling/Network.h"

#include <functional>
#include <vector>

namespace levelling {

/// A gross error that the measurements show.
struct GrossError
{
    /// It is in one of these sections, the likeliest first. Those behind it explain the measurements so well
    /// that a test of the first against them does not decide.
    std::vector<int> sections;
    /// Of the first section: measured difference less what all others say, mm.
    double size = 0.0;
    /// The test statistic of the first section, as a size, and its limit.
    double statistic = 0.0;
    double limit = 0.0;
    bool isStudentised = false; ///< by the a posteriori sigma0 (Pope's tau)
};

struct GrossErrorSearch
{
    enum class Status {
        Ok,
        Stopped,  ///< on request; there are no results
        Singular, ///< weights too different for the arithmetic; there are no results
    };

    Status status = Status::Ok;
    /// In the order in which they were found, the most striking first.
    std::vector<GrossError> errors;
    /// False if there may be more than the 200 that are looked for.
    bool isComplete = true;
};

/// Looks for gross errors by sequential tests: least squares, the largest of all test statistics against the
/// limit that it exceeds without gross error with the probability 1 - confidence, its section left out, and
/// so on. What was left out comes back if it fits to the rest in the end.
///
/// The statistics are those of adjust(), normalised or studentised as the parameter sigma-act asks. isStopped
/// is asked now and then.
GrossErrorSearch findGrossErrors(const Network& network, const std::function<bool()>& isStopped = {});

/// Looks in the same way for sections that differ by more than the parameter tol-abs from what the others
/// say.
std::vector<ImplausibleSections> findImplausibleSections(const Network& network);

} // namespace levelling
