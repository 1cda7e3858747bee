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
constexpr std::size_t kLookAhead = 10;
// Statistics that differ by less, in parts of themselves, are equal.
constexpr double kEqual = 1e-6;
// More are not looked for: where there are so many, it is the standard deviations that are wrong.
constexpr std::size_t kMostErrors = 200;
// A statistic over sigma0 means nothing where sigma0 is only rounding.
constexpr double kLeastSigma0 = 1e-6;

/// A section that is left out, seen from the measurements without it.
struct Suspect
{
    std::size_t section = 0;
    double grossError = 0.0; ///< measured less predicted difference, in units of sigma
    double normalised = 0.0; ///< the normalised residual if the section alone came back
};

/// Scaled residuals and their cofactors, while sections are left out and come back.
///
/// With residuals v in units of their measurement's sigma, R their cofactors: leaving out section k changes
/// residuals to v - u y and cofactors to R - u u', with u = R_k / sqrt(R_kk) and y = v_k / sqrt(R_kk). So the
/// equations are solved once, with all sections. The u of all that are left out, taken at their places, are
/// the Cholesky factor of the cofactors that these had at first. A u is kept as what it does to the heights,
/// which are fewer than the sections.
class ResidualSpace
{
public:
    ResidualSpace(const SectionGraph& sectionGraph, const std::vector<std::optional<double>>& heights)
        : graph(sectionGraph)
        , equations(sectionGraph, heights)
    {
        isSolved = equations.getUnknownCount() > 0 && equations.solve();
        if (!isSolved)
            return;
        equations.invert();
        const std::vector<Section>& sections = graph.getNetwork().sections;
        firstResiduals.assign(sections.size(), 0.0);
        firstCofactors.assign(sections.size(), 0.0);
        for (std::size_t index = 0; index < sections.size(); ++index) {
            if (!equations.contains(static_cast<int>(index)))
                continue;
            const Section& section = sections[index];
            firstResiduals[index] = equations.getResidual(section) / section.sigma;
            firstCofactors[index] =
                1.0 - equations.getDifferenceVariance(section) / (section.sigma * section.sigma);
        }
        residuals = firstResiduals;
        cofactors = firstCofactors;
    }

    bool isUsable() const { return isSolved; }
    const NormalEquations& getEquations() const { return equations; }
    double getResidual(std::size_t section) const { return residuals[section]; }
    double getCofactor(std::size_t section) const { return std::max(cofactors[section], 0.0); }
    bool isChecked(std::size_t section) const { return cofactors[section] > kLeastRedundancy; }

    /// 0 for a section that nothing checks.
    double getNormalised(std::size_t section) const
    {
        return isChecked(section) ? residuals[section] / std::sqrt(cofactors[section]) : 0.0;
    }

    void leaveOut(std::size_t section) { leaveOut(section, getMoves(section)); }

    /// Brings all back but these, which are left out.
    void keepOut(const std::vector<std::size_t>& sections)
    {
        std::vector<std::vector<double>> moves;
        for (const Update& update : updates) {
            if (std::find(sections.begin(), sections.end(), update.section) != sections.end())
                moves.push_back(combine(update.factors));
        }
        updates.clear();
        residuals = firstResiduals;
        cofactors = firstCofactors;
        for (std::size_t place = 0; place < sections.size(); ++place)
            leaveOut(sections[place], std::move(moves[place]));
    }

    /// What is left out, the sections and what the sum of squared residuals loses by each.
    std::vector<std::pair<std::size_t, double>> getLosses() const
    {
        std::vector<std::pair<std::size_t, double>> losses;
        for (const Update& update : updates)
            losses.emplace_back(update.section, update.normalised * update.normalised);
        return losses;
    }

    /// The one that was left out at that place, from 0.
    Suspect examine(std::size_t place) const
    {
        const std::vector<double> weights = getWeights(place);
        double size = 0.0;
        double normalised = 0.0;
        for (std::size_t i = 0; i < updates.size(); ++i) {
            size += weights[i] * weights[i];
            normalised += weights[i] * updates[i].normalised;
        }
        return {updates[place].section, -normalised, normalised / std::sqrt(size)};
    }

    /// What leaving out the section at that place changes if it is the last: the u that belongs to it, by
    /// section.
    std::vector<double> getLastUpdate(std::size_t place) const
    {
        std::vector<double> weights = getWeights(place);
        double size = 0.0;
        for (const double weight : weights)
            size += weight * weight;
        for (double& weight : weights)
            weight /= std::sqrt(size);
        return spread(combine(weights));
    }

private:
    struct Update
    {
        std::size_t section;
        std::vector<double> factors; ///< row of the Cholesky factor
        double normalised;           ///< y
        std::vector<double> moves;   ///< u as moves of the points
    };

    /// How a scaled error of 1 in the section moves the points, with all sections in the equations.
    std::vector<double> getMoves(std::size_t moved) const
    {
        const Section& section = graph.getNetwork().sections[moved];
        std::vector<double> pull(graph.getNetwork().points.size(), 0.0);
        pull[static_cast<std::size_t>(section.to)] += 1.0 / section.sigma;
        pull[static_cast<std::size_t>(section.from)] -= 1.0 / section.sigma;
        return equations.applyInverse(pull);
    }

    double getMove(const std::vector<double>& moves, const Section& section) const
    {
        return (moves[static_cast<std::size_t>(section.from)] - moves[static_cast<std::size_t>(section.to)]) /
               section.sigma;
    }

    std::vector<double> spread(const std::vector<double>& moves) const
    {
        const std::vector<Section>& sections = graph.getNetwork().sections;
        std::vector<double> elements(sections.size());
        for (std::size_t index = 0; index < sections.size(); ++index)
            elements[index] = getMove(moves, sections[index]);
        return elements;
    }

    /// The first of the updates, with these weights.
    std::vector<double> combine(const std::vector<double>& weights) const
    {
        std::vector<double> moves(graph.getNetwork().points.size(), 0.0);
        for (std::size_t i = 0; i < weights.size(); ++i) {
            for (std::size_t point = 0; point < moves.size(); ++point)
                moves[point] += weights[i] * updates[i].moves[point];
        }
        return moves;
    }

    /// Column of the inverse Cholesky factor.
    std::vector<double> getWeights(std::size_t place) const
    {
        std::vector<double> weights(updates.size(), 0.0);
        for (std::size_t row = place; row < updates.size(); ++row) {
            double sum = row == place ? 1.0 : 0.0;
            for (std::size_t i = place; i < row; ++i)
                sum -= updates[row].factors[i] * weights[i];
            weights[row] = sum / updates[row].factors[row];
        }
        return weights;
    }

    /// @param moves with all sections in the equations
    void leaveOut(std::size_t section, std::vector<double> moves)
    {
        const std::vector<Section>& sections = graph.getNetwork().sections;
        Update update{section, {}, getNormalised(section), std::move(moves)};
        for (const Update& earlier : updates) {
            const double factor = getMove(earlier.moves, sections[section]);
            update.factors.push_back(factor);
            for (std::size_t point = 0; point < update.moves.size(); ++point)
                update.moves[point] -= factor * earlier.moves[point];
        }
        const double root = std::sqrt(cofactors[section]);
        update.factors.push_back(root);
        for (double& move : update.moves)
            move /= root;
        for (std::size_t index = 0; index < sections.size(); ++index) {
            const double element = getMove(update.moves, sections[index]);
            residuals[index] -= element * update.normalised;
            cofactors[index] -= element * element;
        }
        updates.push_back(std::move(update));
        for (const Update& left : updates) {
            residuals[left.section] = 0.0;
            cofactors[left.section] = 0.0;
        }
    }

    const SectionGraph& graph;
    NormalEquations equations;
    bool isSolved = false;
    std::vector<double> firstResiduals;
    std::vector<double> firstCofactors;
    std::vector<double> residuals;
    std::vector<double> cofactors;
    std::vector<Update> updates;
};

class Finder
{
public:
    explicit Finder(const Network& searchedNetwork)
        : network(searchedNetwork)
        , graph(searchedNetwork)
        , heights(approximateHeights(graph))
        , adjustedParts(findComponents(searchedNetwork))
        , partOfPoint(searchedNetwork.points.size())
        , leftOut(searchedNetwork.sections.size(), false)
        , hasComeBack(searchedNetwork.sections.size(), false)
    {
        std::size_t number = 0;
        for (const Component& component : adjustedParts) {
            for (const int point : component.points)
                partOfPoint[static_cast<std::size_t>(point)] = number;
            ++number;
        }
    }
    virtual ~Finder() = default;
    Finder(const Finder&) = delete;
    Finder& operator=(const Finder&) = delete;

    /// False if the arithmetic cannot, or if it was stopped.
    bool search(const std::function<bool()>& isStopped)
    {
        ResidualSpace space(graph, heights);
        isSolved = space.isUsable();
        if (!isSolved)
            return false;
        begin(space);
        do {
            if (!leaveWorstOut(space, isStopped))
                return false;
        } while (bringFittingBack(space));
        for (std::size_t place = 0; place < found.size(); ++place)
            report(space.examine(place), findAlternatives(space, place));
        return true;
    }

    bool hasSolved() const { return isSolved; }
    /// Not more were found than are looked for.
    bool isComplete() const { return found.size() < kMostErrors; }

protected:
    /// The equations are solved with all sections.
    virtual void begin(const ResidualSpace& space) = 0;
    /// Other sections are left out now.
    virtual void update(const ResidualSpace& space) = 0;
    /// The section's part of its limit, beyond it more than 1: the farthest is left out next. Of sections
    /// that are looked at on trial it takes more.
    virtual double getExcess(const ResidualSpace& space, std::size_t section, bool isOnTrial) const = 0;
    /// Whether behind the section, which is the worst and within its limit, others beyond theirs can be.
    virtual bool mayHideOthers(const ResidualSpace& space, std::size_t section) const = 0;
    /// Whether the section fits to all others and may come back.
    virtual bool fits(const Suspect& suspect) const = 0;
    virtual void report(const Suspect& suspect, std::vector<int> sections) = 0;
    /// Below this the first of two sections is not significantly likelier than the other.
    virtual double getDecisionLimit(std::size_t section) const = 0;

    std::size_t getPartOfPoint(int point) const { return partOfPoint[static_cast<std::size_t>(point)]; }
    std::size_t getPart(std::size_t section) const { return getPartOfPoint(network.sections[section].from); }
    const std::vector<Component>& getParts() const { return adjustedParts; }
    const Network& getNetwork() const { return network; }

private:
    void leaveOut(std::size_t section, ResidualSpace& space)
    {
        found.push_back(section);
        leftOut[section] = true;
        space.leaveOut(section);
        update(space);
    }

    void bringBack(std::size_t section, ResidualSpace& space)
    {
        found.erase(std::find(found.begin(), found.end(), section));
        leftOut[section] = false;
        space.keepOut(found);
        update(space);
    }

    /// Leaves out what is beyond its limit, and what hides behind it; false if it was stopped.
    bool leaveWorstOut(ResidualSpace& space, const std::function<bool()>& isStopped)
    {
        std::size_t confirmed = found.size();
        while (found.size() < kMostErrors) {
            if (isStopped && isStopped())
                return false;
            const std::size_t tried = found.size() - confirmed;
            const std::optional<Worst> worst = findWorst(space, tried > 0);
            if (!worst)
                break;
            if (worst->excess <= 1.0 && (tried == kLookAhead || !mayHideOthers(space, worst->section)))
                break;
            leaveOut(worst->section, space);
            if (worst->excess > 1.0)
                confirmed = found.size();
        }
        if (found.size() == confirmed)
            return true;
        for (; found.size() > confirmed; found.pop_back())
            leftOut[found.back()] = false;
        space.keepOut(found);
        update(space);
        return true;
    }

    struct Worst
    {
        std::size_t section;
        double excess;
    };

    std::optional<Worst> findWorst(const ResidualSpace& space, bool isOnTrial) const
    {
        std::optional<Worst> worst;
        for (std::size_t section = 0; section < network.sections.size(); ++section) {
            if (leftOut[section] || hasComeBack[section] || !space.isChecked(section))
                continue;
            const double excess = getExcess(space, section, isOnTrial);
            // Of equal ones the first, whatever rounding makes of them.
            if (excess > (worst ? worst->excess * (1.0 + kEqual) : 0.0))
                worst = Worst{section, excess};
        }
        return worst;
    }

    /// Of the sections left out the one that fits best comes back if it is within its limit.
    bool bringFittingBack(ResidualSpace& space)
    {
        std::optional<Suspect> best;
        for (std::size_t place = 0; place < found.size(); ++place) {
            const Suspect suspect = space.examine(place);
            if (!best || std::abs(suspect.normalised) < std::abs(best->normalised))
                best = suspect;
        }
        if (!best || !fits(*best))
            return false;
        hasComeBack[best->section] = true;
        bringBack(best->section, space);
        return true;
    }

    /// Another section as if the suspect had come back.
    static Suspect seeBeside(const ResidualSpace& space, const Suspect& suspect, double move,
                             std::size_t other)
    {
        const double cofactor = (space.isChecked(other) ? space.getCofactor(other) : 0.0) + move * move;
        if (cofactor < kLeastRedundancy)
            return {other, 0.0, 0.0};
        const double residual = space.getResidual(other) + move * suspect.normalised;
        return {other, -residual / cofactor, residual / std::sqrt(cofactor)};
    }

    /// The one left out at that place, and all sections that explain the measurements about as well. With
    /// both in the equations, u the move that the suspect causes and r the cofactor of the other without it,
    /// their correlation is u / sqrt(r + u²), and the suspect is tested given the other.
    std::vector<int> findAlternatives(const ResidualSpace& space, std::size_t place) const
    {
        const Suspect suspect = space.examine(place);
        const std::vector<double> moves = space.getLastUpdate(place);
        std::vector<std::pair<double, int>> alternatives;
        for (std::size_t other = 0; other < network.sections.size(); ++other) {
            const double move = moves[other];
            if (leftOut[other] || std::abs(move) < kLeastRedundancy)
                continue;
            const double cofactor = space.isChecked(other) ? space.getCofactor(other) : 0.0;
            const double correlation = move / std::sqrt(cofactor + move * move);
            const double normalised = seeBeside(space, suspect, move, other).normalised;
            const double rest = 1.0 - correlation * correlation;
            const double given = suspect.normalised - correlation * normalised;
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
    std::vector<std::size_t> partOfPoint;
    std::vector<bool> leftOut;
    std::vector<bool> hasComeBack;
    /// In the order of the space.
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
        const int tests =
            std::max(findSectionSeries(searchedNetwork).countTests(searchedNetwork, getParts()), 1);
        share = quantiles::shareOfEach(error, tests);
        // The trials together have the error probability once more.
        trialShare = quantiles::shareOfEach(error, tests * static_cast<int>(kLookAhead));
        const bool isScaled = searchedNetwork.parameters.sigmaAct == SigmaAct::Aposteriori;
        for (std::size_t part = 0; part < parts.size(); ++part)
            parts[part].isStudentised =
                isScaled && getParts()[part].getRedundancy() >= quantiles::kLeastTauRedundancy;
    }

    std::vector<GrossError> errors;

protected:
    void begin(const ResidualSpace& space) override
    {
        for (std::size_t part = 0; part < parts.size(); ++part)
            parts[part].firstRedundancy = getParts()[part].getRedundancy();
        for (std::size_t section = 0; section < getNetwork().sections.size(); ++section)
            parts[getPart(section)].firstPvv += std::pow(space.getResidual(section), 2.0);
        const std::vector<double> observed = space.getEquations().getObservedPvv();
        for (std::size_t group = 0; group < observed.size(); ++group) {
            const int point = getNetwork().observedHeights[group].points.front();
            parts[getPartOfPoint(point)].firstPvv += observed[group];
        }
        update(space);
    }

    void update(const ResidualSpace& space) override
    {
        for (Part& part : parts) {
            part.redundancy = part.firstRedundancy;
            part.pvv = part.firstPvv;
        }
        for (const auto& [section, loss] : space.getLosses()) {
            Part& part = parts[getPart(section)];
            part.pvv -= loss;
            --part.redundancy;
        }
        for (Part& part : parts) {
            part.limit = findLimit(part, share);
            part.trialLimit = findLimit(part, trialShare);
        }
    }

    double getExcess(const ResidualSpace& space, std::size_t section, bool isOnTrial) const override
    {
        const Part& part = parts[getPart(section)];
        if (part.isStudentised && part.redundancy < quantiles::kLeastTauRedundancy)
            return 0.0;
        return std::abs(space.getNormalised(section)) / part.getScale() /
               (isOnTrial ? part.trialLimit : part.limit);
    }

    /// Gross errors make the a posteriori sigma0 larger, by which they are judged (B. Rosner, Percentage
    /// points for a generalized ESD many-outlier procedure, Technometrics 25, 1983).
    bool mayHideOthers(const ResidualSpace& space, std::size_t section) const override
    {
        Part part = parts[getPart(section)];
        const double normalised = space.getNormalised(section);
        const int rest = part.redundancy - static_cast<int>(kLookAhead);
        if (!part.isStudentised || rest < quantiles::kLeastTauRedundancy)
            return part.isStudentised;
        part.pvv -= static_cast<double>(kLookAhead) * normalised * normalised;
        part.redundancy = rest;
        return std::abs(normalised) > part.limit * part.getScale();
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

    double getDecisionLimit(std::size_t section) const override
    {
        const Part& part = parts[getPart(section)];
        return quantiles::normalLimit(error) * part.getScale();
    }

private:
    struct Part
    {
        int firstRedundancy = 0;
        double firstPvv = 0.0;
        int redundancy = 0;
        double pvv = 0.0;
        double limit = 0.0;
        double trialLimit = 0.0;
        bool isStudentised = false;

        double getScale() const
        {
            if (!isStudentised || redundancy < 1)
                return 1.0;
            return std::max(std::sqrt(std::max(pvv, 0.0) / redundancy), kLeastSigma0);
        }
    };

    static double findLimit(const Part& part, double share)
    {
        return part.isStudentised && part.redundancy >= quantiles::kLeastTauRedundancy
                   ? quantiles::tauLimit(part.redundancy, share)
                   : quantiles::normalLimit(share);
    }

    /// The test of the suspect as if it alone had come back.
    GrossError test(const Suspect& suspect) const
    {
        Part part = parts[getPart(suspect.section)];
        ++part.redundancy;
        part.pvv += suspect.normalised * suspect.normalised;
        GrossError tested;
        tested.size = suspect.grossError * getNetwork().sections[suspect.section].sigma;
        tested.statistic = std::abs(suspect.normalised) / part.getScale();
        tested.limit = findLimit(part, share);
        tested.isStudentised = part.isStudentised;
        return tested;
    }

    double error;
    double share = 0.0;
    double trialShare = 0.0;
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
    void update(const ResidualSpace& /*space*/) override {}

    double getExcess(const ResidualSpace& space, std::size_t section, bool /*isOnTrial*/) const override
    {
        const double sigma = getNetwork().sections[section].sigma;
        const double difference = std::abs(space.getResidual(section)) / space.getCofactor(section) * sigma;
        return difference > getNetwork().parameters.toleranceAbsolute
                   ? 1.0 + std::abs(space.getNormalised(section))
                   : 0.0;
    }

    bool mayHideOthers(const ResidualSpace& /*space*/, std::size_t /*section*/) const override
    {
        return false;
    }

    bool fits(const Suspect& suspect) const override
    {
        return std::abs(getSize(suspect)) <= getNetwork().parameters.toleranceAbsolute;
    }

    void report(const Suspect& suspect, std::vector<int> sections) override
    {
        implausible.push_back({std::move(sections), getSize(suspect)});
    }

    double getDecisionLimit(std::size_t /*section*/) const override
    {
        return quantiles::normalLimit(1.0 - getNetwork().parameters.confidence);
    }

private:
    double getSize(const Suspect& suspect) const
    {
        return suspect.grossError * getNetwork().sections[suspect.section].sigma;
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
