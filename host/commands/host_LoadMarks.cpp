#include "host_LoadMarks.h"

#include "host_CommandTools.h"
#include "host_Load.h"
#include "host_Model.h"
#include "host_Part.h"
#include "host_View.h"

#include <algorithm>

namespace {

constexpr int kSize = 11;              // of a marker [pixels]
constexpr std::size_t kMostNames = 3;  // in a line of the caption

/// The nodes of some cells, each once.
std::vector<int> NodesOf(const host_Mesh& mesh, const std::vector<int>& cells) {
    std::vector<int> all;
    for (const int cell : cells) {
        const std::span<const int> nodes = mesh.Nodes(cell);
        all.insert(all.end(), nodes.begin(), nodes.end());
    }
    std::sort(all.begin(), all.end());
    all.erase(std::unique(all.begin(), all.end()), all.end());
    return all;
}

std::vector<host_Point> PlacesOf(const host_Load& load) {
    const host_LoadContent& content = load.Get();
    const auto& part = host_Model::Instance().Find<host_Part>(content.part);
    const host_Mesh& mesh = part.Mesh();
    if (content.region.IsEmpty()) {
        const auto [low, high] = mesh.BoundingBox();
        return {{(low[0] + high[0]) / 2, (low[1] + high[1]) / 2, (low[2] + high[2]) / 2}};
    }
    const bool isGroup = load.KindRow().region == host_LoadRegion::Group;
    // A mesh that took the place of the part's may lack it.
    if (isGroup ? !part.Get().groups.contains(content.region)
                : !part.Get().nodeSets.contains(content.region)) {
        host_RefuseValue(
            load.AsString(0).Std() + " acts on " + load.RegionText() + ", which is no longer there",
            "host/commands/host_LoadMarks", __LINE__);
    }
    std::vector<host_Point> places;
    for (const int node :
         isGroup ? NodesOf(mesh, part.Cells(content.region)) : part.Nodes(content.region)) {
        places.push_back(mesh.Points()[static_cast<std::size_t>(node)]);
    }
    return places;
}

host_MarkerSet MarkersOf(const host_Load& load) {
    host_MarkerSet markers;
    markers.bitmap.SetMarker(load.KindRow().marker, kSize);
    markers.color = host_ColorOf(load.KindRow().color);
    markers.onTop = load.Get().region.IsEmpty();  // in the middle of the part
    for (const host_Point& place : PlacesOf(load)) {
        markers.points.push_back(host_PicturePoint(place, load.AsString(0).Std()));
    }
    return markers;
}

/// "FORCE (filled diamond): pull, push and 3 more".
std::string LineOf(host_LoadKind kind, const std::vector<const host_Load*>& loads) {
    std::string symbol = g3d_Bitmap::MarkerName(host_RowOf(kind).marker);
    for (char& letter : symbol) {
        letter = letter == '_' ? ' ' : static_cast<char>(letter - 'A' + 'a');
    }
    std::string line = omu_PrimEnum<host_LoadKind, 1>(kind).GetString();
    line += " (" + symbol + ")";
    for (std::size_t i = 0; i < std::min(loads.size(), kMostNames); ++i) {
        line += (i == 0 ? ": " : ", ") + loads[i]->Name().Std();
    }
    if (loads.size() > kMostNames) {
        line += " and " + std::to_string(loads.size() - kMostNames) + " more";
    }
    return line;
}

/// The lines of a caption in the upper right corner, each in its colour: a text for each line,
/// blank in the others, so that all are spaced as the size of the picture has it.
std::vector<host_ViewText> Caption(
    const std::vector<std::pair<std::string, std::optional<g3d_Color>>>& lines) {
    std::vector<host_ViewText> texts;
    const auto y = static_cast<float>(1.5 + 1.25 * static_cast<double>(lines.size()));
    for (std::size_t i = 0; i < lines.size(); ++i) {
        host_ViewText text;
        text.text = std::string(i, '\n') + lines[i].first + std::string(lines.size() - 1 - i, '\n');
        text.place = host_PicturePlace{98, y};
        text.color = lines[i].second;
        text.align = host_Align::Right;
        texts.push_back(std::move(text));
    }
    return texts;
}

}  // namespace

int host_MarkLoads(const host_Step& step) {
    std::array<std::vector<const host_Load*>, std::size(host_kLoadKinds)> byKind;
    std::vector<host_MarkerSet> markers;
    for (const host_Load* load : host_Model::Instance().All<host_Load>()) {
        const host_LoadInStep now = load->In(step);
        if (mdl_activePropagationStatus(now.status) && now.state.IsActive()) {
            markers.push_back(MarkersOf(*load));
            byKind[static_cast<std::size_t>(load->Get().kind)].push_back(load);
        }
    }
    const int count = static_cast<int>(markers.size());
    std::vector<std::pair<std::string, std::optional<g3d_Color>>> lines{
        {"step " + step.Name().Std() + (count == 0 ? ": no loads" : ""), {}}};
    for (std::size_t kind = 0; kind < byKind.size(); ++kind) {
        if (!byKind[kind].empty()) {
            lines.emplace_back(LineOf(static_cast<host_LoadKind>(kind), byKind[kind]),
                               host_ColorOf(host_kLoadKinds[kind].color));
        }
    }
    host_View::Instance().SetLoadMarks(std::move(markers), Caption(lines));
    return count;
}
