#pragma once

#include "levelling/GkfReader.h"

#include <QHash>
#include <QString>

#include <array>
#include <functional>
#include <optional>
#include <vector>

namespace levelling {

/// What the field file of a level does not say itself.
struct LevelSettings
{
    /// A priori standard deviation of a section: sqrt(constant² + perKilometre² * length), mm.
    double sigmaConstant = 0.0;
    double sigmaPerKilometre = 10.0;
    /// Permitted difference between the two height differences of a station, and between readings that were
    /// repeated, mm.
    double readingLimit = 5.0;
    /// Name of the file, which the names of turning points get that have to stand in the network.
    QString sourceName;
};

/// In which order a station is observed.
enum class LevelMethod {
    Unknown,
    BackFore,                  ///< BF
    BackForeForeBack,          ///< BFFB
    AlternateBackFore,         ///< aBF: BF, FB and so on
    AlternateBackForeForeBack, ///< aBFFB: BFFB, FBBF and so on
    OtherDouble,               ///< two readings of each staff in another order
};

enum class Sight { Back, Fore, Intermediate };

/// A reading of a staff.
struct StaffReading
{
    Sight sight = Sight::Back;
    /// 1 or 2; 0 for the next one of the station.
    int series = 0;
    QString point;
    double value = 0.0;             ///< m; negative on a staff that stands on its head
    double resolution = 1e-5;       ///< of the value, m
    std::optional<double> distance; ///< to the staff, m, positive
    qint64 line = 0;
};

/// Where a height in the file comes from.
enum class HeightOrigin { Measured, Entered, Unknown };

/// A height that the instrument states.
struct StatedHeight
{
    QString point;
    double value = 0.0;       ///< m
    double resolution = 1e-5; ///< m
    HeightOrigin origin = HeightOrigin::Unknown;
    qint64 line = 0;
};

enum class LevelCheckKind {
    StatedHeight,    ///< the instrument's height, and that by the readings
    SightHeight,     ///< the same of an intermediate sight
    TwoReadings,     ///< height differences of the station by the first readings and by the second
    RepeatedReading, ///< readings of one staff in one station: beyond the limit only the later one counts
    EnteredHeight,   ///< heights of a point entered at different times: the later one counts
};

/// Two values that should agree and do not.
struct LevelCheck
{
    LevelCheckKind kind = LevelCheckKind::StatedHeight;
    qint64 line = 0;   ///< of the file
    int levelLine = 0; ///< index in LevelBookFindings::lines
    int station = 0;   ///< number of the station in its line, from 1; 0 if it is about none
    int section = -1;  ///< index in Network::sections of that with the station; -1 if none has it
    QString from;
    QString to;
    double first = 0.0;  ///< m
    double second = 0.0; ///< m
    double limit = 0.0;  ///< of their difference, mm
};

/// A line as it was levelled, from its start to the next one.
struct LevelLine
{
    qint64 firstLine = 0; ///< of the file
    qint64 lastLine = 0;
    LevelMethod method = LevelMethod::Unknown;
    /// Indices of the ends in Network::points; -1 if no station could be used.
    int from = -1;
    int to = -1;
    int stations = 0;
    double length = 0.0;     ///< sum of the sights, km
    double difference = 0.0; ///< height of "to" above "from", m; without meaning if the line is interrupted
    bool isInterrupted = false;
    /// Sum over the stations with two readings, mm.
    std::optional<double> readingDifference;
    /// Its sections in Network::sections: the first one and their count, side shots included.
    int firstSection = 0;
    int sectionCount = 0;
    int sideShots = 0;
    int turningPoints = 0;
    QString firstTurningPoint;
    QString lastTurningPoint;
    int averagedReadings = 0;              ///< that were repeated and agree
    int comparedHeights = 0;               ///< of the instrument, with those by the readings
    double largestHeightDeviation = 0.0;   ///< of them, mm, as an amount
    double largestReadingDifference = 0.0; ///< of a station, mm, as an amount
};

/// What a level's file has besides, and nobody uses.
struct UnusedEntries
{
    QString what;
    int count = 0;
    qint64 firstLine = 0;
};

/// What a field file of a level tells besides the network.
struct LevelBookFindings
{
    std::vector<LevelLine> lines;
    /// In the order of their lines.
    std::vector<LevelCheck> checks;
    std::vector<UnusedEntries> unused;
    /// The file has feet, of 0.3048 m, or inches.
    bool isInFeet = false;
};

/// What a field file of a level gave.
struct LevelResult
{
    GkfResult file;
    LevelBookFindings findings;
};

/// Makes lines and sections of what a level has observed, reading by reading; the readers of the formats feed
/// it.
///
/// A section leads from mark to mark. Marks are the ends of a line, and points inside it whose name is not a
/// whole number: numbers are the instrument's own turning points, which it counts from 1 in every line. A
/// number inside a line is a mark all the same if it begins or ends some line and is met inside of no other.
/// Where a line comes back to a mark without another one between, its middle turning point gets into the
/// network, named by its file and line, so that the loop is not lost.
///
/// A height that was entered and is not zero makes its point a benchmark; other points are known from
/// sections only.
class LevelBook
{
public:
    static constexpr std::size_t kMaxStations = 2000000;
    static constexpr int kLongestName = 100;
    static constexpr double kLargestReading = 100.0; ///< m
    static constexpr double kLargestSight = 10000.0; ///< m
    static constexpr double kLargestHeight = 1e5;    ///< m
    /// Length of a station whose sights nobody knows, m.
    static constexpr double kUsualStation = 100.0;

    explicit LevelBook(const LevelSettings& levelSettings);

    void beginLine(qint64 fileLine, LevelMethod method);
    void endLine();
    bool isInLine() const { return inLine; }

    /// Values beyond what a level can measure are told and left out.
    void addReading(const StaffReading& reading);
    void addHeight(const StatedHeight& height);
    /// Takes the last reading back, of a station or of an intermediate sight: it was repeated.
    void dropReading();
    /// Takes the station back that is being observed, or the last one.
    void dropStation();

    void addProblem(ProblemKind kind, Severity severity, qint64 line, const QStringList& arguments = {});
    void addUnused(const QString& what, qint64 line);
    void setInFeet() { result.findings.isInFeet = true; }
    /// More was found than can be kept; reading is to end.
    bool isFull() const { return fullProblem.has_value(); }

    /// The network of all that was observed. isStopped is asked every few thousand stations.
    LevelResult finish(const std::function<bool()>& isStopped = {});

private:
    static constexpr int kNoPoint = -1;
    static constexpr std::size_t kMostReadings = 1000; ///< of one station

    /// What the last reading that was given has become.
    enum class LastReading { None, Staff, SideShot };

    /// What the readings of one staff give.
    struct Staff
    {
        std::array<std::optional<double>, 2> series; ///< m
        double rounding = 0.0;                       ///< the most by which it may change a series, m
        std::optional<double> distance;              ///< m

        bool isRead() const { return series[0] || series[1]; }
        double getMean() const;
    };

    /// The instrument where it stands.
    struct Setup
    {
        int back = kNoPoint;
        int fore = kNoPoint;
        std::vector<StaffReading> readings;
        std::optional<StatedHeight> backHeight; ///< that the instrument goes from

        bool isComplete() const { return back != kNoPoint && fore != kNoPoint; }
    };

    struct Station
    {
        int back = 0;
        int fore = 0;
        double difference = 0.0;                 ///< m
        std::optional<double> distance;          ///< of both sights, m
        std::optional<double> readingDifference; ///< mm
        qint64 line = 0;
        bool beginsPart = false; ///< it does not go on from the station before
    };

    /// An intermediate sight.
    struct SideShot
    {
        std::size_t station = 0; ///< index of the station from whose back point it goes
        int from = 0;            ///< that point
        int to = 0;
        double difference = 0.0;        ///< m
        std::optional<double> distance; ///< of both sights, m
        qint64 line = 0;
    };

    /// What has been observed of a line.
    struct LineContent
    {
        std::size_t firstStation = 0;
        std::size_t endStation = 0;
        std::size_t firstShot = 0;
        std::size_t endShot = 0;
    };

    struct Name
    {
        QString text;
        bool isNumber = false;
        bool isEnd = false; ///< of some line, or of a part of it
        /// The part of a line inside which it is met first, and whether there are others.
        int insidePart = kNoPoint;
        bool isInsideSeveral = false;
        std::optional<double> statedHeight;
        std::optional<double> enteredHeight;
        qint64 enteredLine = 0; ///< of the file
        int networkPoint = kNoPoint;
    };

    /// Stations from one mark to the next.
    struct Run
    {
        std::size_t firstStation = 0;
        int from = 0;
        double difference = 0.0; ///< m
        double metres = 0.0;
        int stations = 0;
        std::optional<double> readingDifference;

        void add(const Station& station);
    };

    int intern(const QString& text);
    Name& name(int id) { return names[static_cast<std::size_t>(id)]; }
    const Name& name(int id) const { return names[static_cast<std::size_t>(id)]; }
    int countStations() const;
    bool checkReading(const StaffReading& reading);
    void placeReading(StaffReading reading);
    Staff evaluate(const Setup& observed, Sight sight);
    void addSideShot(const StaffReading& reading);
    bool checkSideShot(const StatedHeight& height);
    void closeSetup(const StatedHeight* stated);
    void addStation(Station station);
    void dropLastStation();
    void takeEnteredHeight(const StatedHeight& height, int point);
    void addCheck(const LevelCheck& check);
    void limitEntries();

    void findMarks();
    bool isMark(int point) const;
    void fillDistances(std::size_t line);
    void makeSections(std::size_t line);
    void finishRun(LevelLine& line, const Run& run, std::size_t endStation);
    /// The section that is made next has these stations.
    void noteSection(std::size_t firstStation, std::size_t endStation);
    void findSectionsOfChecks();
    void appendSection(LevelLine& line, const Run& run, int from, int to, qint64 fileLine);
    void makeShotSection(LevelLine& line, const Run& run, int current, const SideShot& shot);
    int getNetworkPoint(int id, qint64 fileLine);
    int addPoint(const QString& id, qint64 fileLine);
    void giveHeights();

    const LevelSettings settings;
    LevelResult result;
    std::optional<Problem> fullProblem;
    QHash<QString, int> ids;
    QHash<QString, int> indexOfUnused;
    std::vector<Name> names;
    std::vector<LineContent> contents;
    std::vector<Station> stations;
    std::vector<SideShot> shots;
    std::vector<std::size_t> checkedStations; ///< by index of the check
    std::vector<int> sectionOfStation;        ///< of stations that a section has
    bool inLine = false;
    Setup setup;     ///< being observed
    Setup lastSetup; ///< of the station before, whose instrument may still stand
    std::optional<StatedHeight> lastHeight;
    bool isShotOpen = false; ///< the height of the last intermediate sight may come still
    LastReading lastReading = LastReading::None;
};

} // namespace levelling
