#include "levelling/GrossErrors.h"

#include "levelling/ApproximateHeights.h"
#include "levelling/NormalEquations.h"
#include "levelling/Quantiles.h"
#include "levelling/SectionGraph.h"
#include "levelling/SectionSeries.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

namespace levelling {

namespace {

// Below this redundancy a residual is only rounding.
constexpr double kLeastRedundancy = 1e-6;
// So many sections are left out of the equations one by one; then the equations are solved anew.
constexpr std::size_t kUpdates = 50;
constexpr std::size_t kLookAhead = 10;
// Statistics that differ by less, in parts of themselves, are equal.
constexpr double kEqual = 1e-6;
// More are not looked for: where there are so many, it is the standard deviations that are wrong.
constexpr std::size_t kMostErrors = 200;
// A statistic over sigma0 means nothing where sigma0 is only rounding.
constexpr double kLeastSigma0 = 1e-6;

/// Scaled residuals and their cofactors, while sections are left out one after the other.
///
/// With residuals in units of their measurement's sigma, R their cofactors: leaving out section k changes
/// residuals to v - R_k v_k / r and cofactors to R - R_k R_k' / r, where r = R_kk.
class ResidualSpace
{
public:
    ResidualSpace(const SectionGraph& sectionGraph, const std::vector<std::optional<double>>& heights,
                  const std::vector<bool>& leftOut)
        : graph(sectionGraph)
        , equations(sectionGraph, heights, leftOut)
    {
        isSolved = equations.getUnknownCount() > 0 && equations.solve();
        if (!isSolved)
            return;
        equations.invert();
        const std::vector<Section>& sections = graph.getNetwork().sections;
        residuals.assign(sections.size(), 0.0);
        cofactors.assign(sections.size(), 0.0);
        for (std::size_t index = 0; index < sections.size(); ++index) {
            if (!equations.contains(static_cast<int>(index)))
                continue;
            const Section& section = sections[index];
            residuals[index] = equations.getResidual(section) / section.sigma;
            cofactors[index] =
                1.0 - equations.getDifferenceVariance(section) / (section.sigma * section.sigma);
        }
    }

    bool isUsable() const { return isSolved; }
    std::size_t countUpdates() const { return updates.size(); }
    const NormalEquations& getEquations() const { return equations; }
    double getResidual(std::size_t section) const { return residuals[section]; }
    double getCofactor(std::size_t section) const { return std::max(cofactors[section], 0.0); }
    bool isChecked(std::size_t section) const { return cofactors[section] > kLeastRedundancy; }

    /// 0 for a section that nothing checks.
    double getNormalised(std::size_t section) const
    {
        return isChecked(section) ? residuals[section] / std::sqrt(cofactors[section]) : 0.0;
    }

    void leaveOut(std::size_t left)
    {
        std::vector<double> column = getInfluence(left);
        for (double& element : column)
            element = -element;
        column[left] += 1.0;
        for (const std::vector<double>& update : updates) {
            const double factor = update[left];
            for (std::size_t index = 0; index < column.size(); ++index)
                column[index] -= update[index] * factor;
        }
        const double root = std::sqrt(column[left]);
        const double normalised = residuals[left] / root;
        for (std::size_t index = 0; index < column.size(); ++index) {
            column[index] /= root;
            residuals[index] -= column[index] * normalised;
            cofactors[index] -= column[index] * column[index];
        }
        cofactors[left] = 0.0;
        updates.push_back(std::move(column));
    }

    /// How a scaled error of 1 in that section, whether it takes part or not, moves the scaled differences of
    /// all that take part.
    std::vector<double> getInfluence(std::size_t moved) const
    {
        const Network& network = graph.getNetwork();
        const Section& source = network.sections[moved];
        std::vector<double> pull(network.points.size(), 0.0);
        pull[static_cast<std::size_t>(source.to)] += 1.0 / source.sigma;
        pull[static_cast<std::size_t>(source.from)] -= 1.0 / source.sigma;
        const std::vector<double> moves = equations.applyInverse(pull);
        std::vector<double> influence(network.sections.size(), 0.0);
        for (std::size_t index = 0; index < influence.size(); ++index) {
            const Section& section = network.sections[index];
            if (equations.contains(static_cast<int>(index)) || index == moved)
                influence[index] = (moves[static_cast<std::size_t>(section.to)] -
                                    moves[static_cast<std::size_t>(section.from)]) /
                                   section.sigma;
        }
        return influence;
    }

private:
    const SectionGraph& graph;
    NormalEquations equations;
    bool isSolved = false;
    std::vector<double> residuals;
    std::vector<double> cofactors;
    std::vector<std::vector<double>> updates;
};

/// A section that is left out, seen from the measurements without it.
struct Suspect
{
    std::size_t section = 0;
    double predicted = 0.0;  ///< measured less predicted difference, in units of sigma
    double cofactor = 0.0;   ///< of the predicted one
    double normalised = 0.0; ///< the normalised residual if the section alone came back
};

class Finder
{
public:
    explicit Finder(const Network& searchedNetwork)
        : network(searchedNetwork)
        , graph(searchedNetwork)
        , heights(approximateHeights(graph))
        , adjustedParts(findComponents(searchedNetwork))
        , partOfSection(searchedNetwork.sections.size())
        , leftOut(searchedNetwork.sections.size(), false)
        , hasComeBack(searchedNetwork.sections.size(), false)
    {
        int number = 0;
        for (const Component& component : adjustedParts) {
            for (const int section : component.sections)
                partOfSection[static_cast<std::size_t>(section)] = number;
            ++number;
        }
    }
    virtual ~Finder() = default;
    Finder(const Finder&) = delete;
    Finder& operator=(const Finder&) = delete;

    /// False if the arithmetic cannot, or if it was stopped.
    bool search(const std::function<bool()>& isStopped)
    {
        for (;;) {
            ResidualSpace space(graph, heights, leftOut);
            if (!space.isUsable())
                return false;
            isSolved = true;
            begin(space);
            if (!leaveWorstOut(space, isStopped))
                return false;
            const bool goesOn = space.countUpdates() == kUpdates && isComplete();
            if (!goesOn && (found.empty() || !settle()))
                return true;
        }
    }

    bool hasSolved() const { return isSolved; }
    /// Not more were found than are looked for.
    bool isComplete() const { return found.size() < kMostErrors; }

protected:
    /// The equations are new.
    virtual void begin(const ResidualSpace& space) = 0;
    virtual void onLeftOut(std::size_t section, double normalised) = 0;
    /// The section's part of its limit, beyond it more than 1: the farthest is left out next.
    virtual double getExcess(const ResidualSpace& space, std::size_t section) const = 0;
    /// So many sections within their limits are left out on trial: several gross errors can hide each other.
    virtual std::size_t getLookAhead() const = 0;
    /// Whether the section fits to all others and may come back.
    virtual bool fits(const Suspect& suspect) const = 0;
    virtual void report(const Suspect& suspect, std::vector<int> sections) = 0;
    virtual void clearReports() = 0;
    /// Below this the first of two sections is not significantly likelier than the other.
    virtual double getDecisionLimit(std::size_t section) const = 0;

    int getPart(std::size_t section) const { return partOfSection[section]; }
    const std::vector<Component>& getParts() const { return adjustedParts; }
    const Network& getNetwork() const { return network; }

private:
    /// Leaves out what is beyond its limit, and what hides behind it; false if it was stopped.
    bool leaveWorstOut(ResidualSpace& space, const std::function<bool()>& isStopped)
    {
        std::size_t confirmed = found.size();
        while (space.countUpdates() < kUpdates && found.size() < kMostErrors) {
            if (isStopped && isStopped())
                return false;
            const std::optional<Worst> worst = findWorst(space);
            if (!worst || (worst->excess <= 1.0 && found.size() - confirmed == getLookAhead()))
                break;
            found.push_back(worst->section);
            leftOut[worst->section] = true;
            if (worst->excess > 1.0)
                confirmed = found.size();
            onLeftOut(worst->section, space.getNormalised(worst->section));
            space.leaveOut(worst->section);
        }
        for (; found.size() > confirmed; found.pop_back())
            leftOut[found.back()] = false;
        return true;
    }

    struct Worst
    {
        std::size_t section;
        double excess;
    };

    std::optional<Worst> findWorst(const ResidualSpace& space) const
    {
        std::optional<Worst> worst;
        for (std::size_t section = 0; section < network.sections.size(); ++section) {
            if (leftOut[section] || hasComeBack[section] || !space.isChecked(section))
                continue;
            const double excess = getExcess(space, section);
            // Of equal ones the first, whatever rounding makes of them.
            if (excess > (worst ? worst->excess * (1.0 + kEqual) : 0.0))
                worst = Worst{section, excess};
        }
        return worst;
    }

    /// Looks at what is left out with the equations of the rest. Reports it, or has the one that fits best
    /// come back and says so.
    bool settle()
    {
        const ResidualSpace space(graph, heights, leftOut);
        if (!space.isUsable())
            return false;
        begin(space);
        clearReports();
        std::vector<Suspect> suspects;
        for (const std::size_t section : found)
            suspects.push_back(examine(space, section));
        const auto best =
            std::min_element(suspects.begin(), suspects.end(), [](const Suspect& a, const Suspect& b) {
                return std::abs(a.normalised) < std::abs(b.normalised);
            });
        if (best != suspects.end() && fits(*best)) {
            leftOut[best->section] = false;
            hasComeBack[best->section] = true;
            found.erase(std::find(found.begin(), found.end(), best->section));
            return true;
        }
        for (const Suspect& suspect : suspects)
            report(suspect, findAlternatives(space, suspect));
        return false;
    }

    Suspect examine(const ResidualSpace& space, std::size_t section) const
    {
        const NormalEquations& equations = space.getEquations();
        Suspect suspect;
        suspect.section = section;
        suspect.cofactor = space.getInfluence(section)[section];
        const Section& measured = network.sections[section];
        suspect.predicted = -equations.getResidual(measured) / measured.sigma;
        suspect.normalised = suspect.predicted / std::sqrt(1.0 + suspect.cofactor);
        return suspect;
    }

    /// The suspect, and all sections that explain the measurements about as well: with both in the equations,
    /// b the influence of the suspect on the other and q its own cofactor, their correlation is -b / sqrt(r
    /// (1 + q) + b²), and the suspect is tested given the other.
    std::vector<int> findAlternatives(const ResidualSpace& space, const Suspect& suspect) const
    {
        std::vector<std::pair<double, int>> alternatives;
        const std::vector<double> influences = space.getInfluence(suspect.section);
        const double full = 1.0 + suspect.cofactor;
        for (std::size_t other = 0; other < network.sections.size(); ++other) {
            const double influence = influences[other];
            if (leftOut[other] || std::abs(influence) < kLeastRedundancy)
                continue;
            const double cofactor = space.isChecked(other) ? space.getCofactor(other) : 0.0;
            const double correlation = -influence / std::sqrt(cofactor * full + influence * influence);
            const double residual = space.getResidual(other) + influence * suspect.predicted / full;
            const double normalised = residual / std::sqrt(cofactor + influence * influence / full);
            const double rest = 1.0 - correlation * correlation;
            const double given = -suspect.normalised - correlation * normalised;
            if (given * given <= rest * std::pow(getDecisionLimit(suspect.section), 2.0) ||
                rest < kLeastRedundancy)
                alternatives.emplace_back(-std::round(std::abs(normalised) / kEqual),
                                          static_cast<int>(other));
        }
        std::stable_sort(alternatives.begin(), alternatives.end(),
                         [](const auto& a, const auto& b) { return a.first < b.first; });
        std::vector<int> sections{static_cast<int>(suspect.section)};
        for (const auto& alternative : alternatives)
            sections.push_back(alternative.second);
        return sections;
    }

    const Network& network;
    const SectionGraph graph;
    const std::vector<std::optional<double>> heights;
    const std::vector<Component> adjustedParts;
    std::vector<int> partOfSection;
    std::vector<bool> leftOut;
    std::vector<bool> hasComeBack;
    std::vector<std::size_t> found;
    bool isSolved = false;
};

/// Finds what statistical tests show.
class TestFinder : public Finder
{
public:
    explicit TestFinder(const Network& searchedNetwork)
        : Finder(searchedNetwork)
        , error(1.0 - searchedNetwork.parameters.confidence)
        , parts(getParts().size())
    {
        const int tests = std::max(findSectionSeries(searchedNetwork).count, 1);
        share = quantiles::shareOfEach(error, tests);
        const bool isScaled = searchedNetwork.parameters.sigmaAct == SigmaAct::Aposteriori;
        for (std::size_t part = 0; part < parts.size(); ++part)
            parts[part].isStudentised = isScaled && getParts()[part].getRedundancy() > 1;
    }

    std::vector<GrossError> errors;

protected:
    void begin(const ResidualSpace& space) override
    {
        for (std::size_t part = 0; part < parts.size(); ++part) {
            parts[part].redundancy = getParts()[part].getRedundancy();
            parts[part].pvv = 0.0;
        }
        const std::vector<Section>& sections = getNetwork().sections;
        for (std::size_t section = 0; section < sections.size(); ++section) {
            Part& part = parts[static_cast<std::size_t>(getPart(section))];
            if (space.getEquations().contains(static_cast<int>(section)))
                part.pvv += std::pow(space.getResidual(section), 2.0);
            else
                --part.redundancy;
        }
        for (Part& part : parts)
            part.limit = findLimit(part, part.redundancy);
    }

    void onLeftOut(std::size_t section, double normalised) override
    {
        Part& part = parts[static_cast<std::size_t>(getPart(section))];
        part.pvv -= normalised * normalised;
        --part.redundancy;
        part.limit = findLimit(part, part.redundancy);
    }

    double getExcess(const ResidualSpace& space, std::size_t section) const override
    {
        const Part& part = parts[static_cast<std::size_t>(getPart(section))];
        if (part.isStudentised && part.redundancy < 2)
            return 0.0;
        return std::abs(space.getNormalised(section)) / part.getScale() / part.limit;
    }

    /// Gross errors make the a posteriori sigma0 larger, by which they are judged (B. Rosner, Percentage
    /// points for a generalized ESD many-outlier procedure, Technometrics 25, 1983).
    std::size_t getLookAhead() const override
    {
        return getNetwork().parameters.sigmaAct == SigmaAct::Aposteriori ? kLookAhead : 0;
    }

    bool fits(const Suspect& suspect) const override
    {
        const GrossError tested = test(suspect);
        return tested.statistic <= tested.limit;
    }

    void report(const Suspect& suspect, std::vector<int> sections) override
    {
        GrossError reported = test(suspect);
        reported.sections = std::move(sections);
        errors.push_back(std::move(reported));
    }

    void clearReports() override { errors.clear(); }

    double getDecisionLimit(std::size_t section) const override
    {
        const Part& part = parts[static_cast<std::size_t>(getPart(section))];
        return quantiles::normalLimit(error) * part.getScale();
    }

private:
    struct Part
    {
        int redundancy = 0;
        double pvv = 0.0;
        double limit = 0.0;
        bool isStudentised = false;

        double getScale() const
        {
            if (!isStudentised || redundancy < 1)
                return 1.0;
            return std::max(std::sqrt(std::max(pvv, 0.0) / redundancy), kLeastSigma0);
        }
    };

    double findLimit(const Part& part, int redundancy) const
    {
        return part.isStudentised && redundancy > 1 ? quantiles::tauLimit(redundancy, share)
                                                    : quantiles::normalLimit(share);
    }

    /// The test of the suspect as if it alone had come back.
    GrossError test(const Suspect& suspect) const
    {
        Part part = parts[static_cast<std::size_t>(getPart(suspect.section))];
        ++part.redundancy;
        part.pvv += suspect.normalised * suspect.normalised;
        GrossError tested;
        tested.size = suspect.predicted * getNetwork().sections[suspect.section].sigma;
        tested.statistic = std::abs(suspect.normalised) / part.getScale();
        tested.limit = findLimit(part, part.redundancy);
        tested.isStudentised = part.isStudentised;
        return tested;
    }

    double error;
    double share = 0.0;
    std::vector<Part> parts;
};

/// Finds what differs by more than is plausible.
class ToleranceFinder : public Finder
{
public:
    using Finder::Finder;

    std::vector<ImplausibleSections> implausible;

protected:
    void begin(const ResidualSpace& /*space*/) override {}
    void onLeftOut(std::size_t /*section*/, double /*normalised*/) override {}

    double getExcess(const ResidualSpace& space, std::size_t section) const override
    {
        const double sigma = getNetwork().sections[section].sigma;
        const double difference = std::abs(space.getResidual(section)) / space.getCofactor(section) * sigma;
        return difference > getNetwork().parameters.toleranceAbsolute
                   ? 1.0 + std::abs(space.getNormalised(section))
                   : 0.0;
    }

    std::size_t getLookAhead() const override { return 0; }

    bool fits(const Suspect& suspect) const override
    {
        return std::abs(getSize(suspect)) <= getNetwork().parameters.toleranceAbsolute;
    }

    void report(const Suspect& suspect, std::vector<int> sections) override
    {
        implausible.push_back({std::move(sections), getSize(suspect)});
    }

    void clearReports() override { implausible.clear(); }

    double getDecisionLimit(std::size_t /*section*/) const override
    {
        return quantiles::normalLimit(1.0 - getNetwork().parameters.confidence);
    }

private:
    double getSize(const Suspect& suspect) const
    {
        return suspect.predicted * getNetwork().sections[suspect.section].sigma;
    }
};

} // namespace

GrossErrorSearch findGrossErrors(const Network& network, const std::function<bool()>& isStopped)
{
    TestFinder finder(network);
    GrossErrorSearch result;
    if (!finder.search(isStopped)) {
        result.status =
            finder.hasSolved() ? GrossErrorSearch::Status::Stopped : GrossErrorSearch::Status::Singular;
        return result;
    }
    result.isComplete = finder.isComplete();
    result.errors = std::move(finder.errors);
    return result;
}

std::vector<ImplausibleSections> findImplausibleSections(const Network& network)
{
    ToleranceFinder finder(network);
    finder.search({});
    return std::move(finder.implausible);
}

} // namespace levelling
