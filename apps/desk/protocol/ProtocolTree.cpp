#include "apps/desk/protocol/ProtocolTree.h"

#include <algorithm>

namespace orvel::desk {

namespace {

bool isMeant(const ProtocolLine& line, const ProtocolFilter& filter)
{
    if (filter.item != 0 && std::find(line.items.begin(), line.items.end(), filter.item) == line.items.end())
        return false;
    return std::all_of(filter.words.begin(), filter.words.end(), [&line](const QString& word) {
        return line.text.contains(word, Qt::CaseInsensitive);
    });
}

/// The place of a branch, new if there was none.
int takeBranch(ProtocolTree& tree, int parent, std::optional<int> stage,
               std::optional<COVMessage::MessageType> kind)
{
    const auto place = static_cast<int>(tree.branches.size());
    std::vector<int>& neighbours =
        parent < 0 ? tree.top : tree.branches[static_cast<std::size_t>(parent)].branches;
    const auto row = static_cast<int>(neighbours.size());
    neighbours.push_back(place);
    tree.branches.push_back({stage, kind, parent, row, {}, {}, 0});
    return place;
}

/// The shown lines by stage and kind. Without captions all lines are of one stage.
using LinesByKind = std::map<COVMessage::MessageType, std::vector<int>>;

void addKinds(ProtocolTree& tree, int parent, LinesByKind& linesByKind)
{
    for (const COVMessage::MessageType kind : ProtocolTree::kKinds) {
        std::vector<int>& lines = linesByKind[kind];
        if (lines.empty())
            continue;
        const auto branch = static_cast<std::size_t>(takeBranch(tree, parent, std::nullopt, kind));
        tree.branches[branch].count = lines.size();
        tree.branches[branch].lines.swap(lines);
        if (parent >= 0)
            tree.branches[static_cast<std::size_t>(parent)].count += tree.branches[branch].count;
    }
}

} // namespace

ProtocolTree ProtocolTree::make(const ProtocolLines& lines, const ProtocolFilter& filter)
{
    ProtocolTree tree;
    std::map<int, LinesByKind> linesByStage;
    const bool hasStages = !lines.stageCaption.empty();
    int index = 0;
    for (const ProtocolLine& line : lines.lines) {
        const int place = index++;
        if (!isMeant(line, filter))
            continue;
        ++tree.counts[line.kind];
        if (filter.hiddenKinds.count(line.kind) == 0)
            linesByStage[hasStages ? line.stage : 0][line.kind].push_back(place);
    }
    for (auto& [stage, linesByKind] : linesByStage)
        addKinds(tree, hasStages ? takeBranch(tree, -1, stage, std::nullopt) : -1, linesByKind);
    return tree;
}

} // namespace orvel::desk
