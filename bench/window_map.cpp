#include "window_map.h"

#include "views/map_colours.h"
#include "views/map_picture.h"
#include "window_parts.h"

namespace hl::bench {

namespace {

constexpr int kMapRounds = 9;

double milliseconds(const std::function<void()>& body) {
    std::vector<double> times;
    for (int i = 0; i < kMapRounds; ++i) {
        const auto start = Clock::now();
        body();
        times.push_back(secondsSince(start) * 1e3);
    }
    std::ranges::sort(times);
    return times[times.size() / 2];
}

void wholeMap(ScanContext& scan, int width, int height) {
    const std::string at = "_" + std::to_string(width);
    const MapReport report(scan);
    MapColours colours(scan, report);
    std::vector<std::uint32_t> pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    const MapPixels all{pixels.data(), static_cast<std::size_t>(width), width, height};
    std::vector<MapTile> tiles;
    const auto layOut = [&] {
        tiles = layOutMap(report, report.whole(scan.tvwPL.firstRoot()), width, height);
    };
    const auto colour = [&] { colours.colour(tiles, false); };
    const auto paint = [&] { paintMap(tiles, colours.palette(), all); };
    tell(("layout" + at).c_str(), milliseconds(layOut));
    tell(("colours" + at).c_str(), milliseconds(colour));
    tell(("paint" + at).c_str(), milliseconds(paint));
    tell(("whole" + at).c_str(), milliseconds([&] { layOut(), colour(), paint(); }));
    tell(("tiles" + at).c_str(), static_cast<double>(tiles.size()));
}

/// The pane is given its size by hand: its place in the window does not matter.
void inPane(WindowForm& form) {
    QWidget* pane = nullptr;
    for (QWidget* window : QApplication::topLevelWidgets())
        if (auto* found = window->findChild<QWidget*>(QStringLiteral("map"))) pane = found;
    if (pane == nullptr || !pane->isVisible()) std::exit(1);
    pane->resize(1600, 900);
    pane->repaint();
    Grid& report = form.form().session.tvwPL;
    Row row = report.firstChild(report.firstRoot());
    tell("select", milliseconds([&] {
             report.selectNone();
             report.setSelected(row, true);
             row = report.nextSibling(row) != kNoRow ? report.nextSibling(row)
                                                     : report.firstChild(report.firstRoot());
             form.form().map.selectionChanged();
             pane->repaint();
         }));
    const Row source = report.firstRoot();
    tell("change", milliseconds([&] {
             report.setNumber(source, kSize, report.number(source, kSize) - 1);
             form.form().map.reportChanged();
             pane->repaint();
         }));
}

}  // namespace

void map(WindowForm& form, const std::string& tree) {
    form.formActivate();
    settle();
    form.handOver('"' + tree + '"');
    settle();
    ScanContext& scan = form.form().scan;
    const Grid& report = scan.tvwPL;
    tell("entries", report.number(report.firstRoot(), kFiles) + report.number(report.firstRoot(), kFolders));
    if (const LargestFiles* kept = scan.largest->of(report, report.firstRoot()))
        tell("kept", static_cast<double>(kept->count()));
    for (const auto& [width, height] : {std::pair(1600, 900), {3840, 2160}}) wholeMap(scan, width, height);
    run(form, Command::kShowMap);
    settle();
    inPane(form);
}

}  // namespace hl::bench
