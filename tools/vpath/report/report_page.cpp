#include "report/report_page.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <iterator>
#include <unordered_map>
#include <utility>

#include <vpath/path.h>
#include <nlohmann/json.hpp>

#include "embedded_texts.h"
#include "loading/path_names.h"
#include "output/printable_text.h"
#include "output/text_template.h"
#include "report/area_map.h"

namespace {

using Json = nlohmann::json;

// What a browser lays out at once without waiting. The script shows the others.
constexpr size_t kStaticRows = 500;

// The style sheet gives the map this shape, and a narrow one on narrow screens.
constexpr double kMapAspect = 1.6;

std::string Fixed(double number, int decimals) {
    char text[40];
    std::snprintf(text, sizeof text, "%.*f", decimals, number);
    return text;
}

std::string Milliseconds(double seconds, int decimals) { return Fixed(seconds * 1000, decimals); }

// "12,345"
std::string Count(size_t number) {
    std::string text = std::to_string(number);
    for (size_t at = text.size(); at > 3;) text.insert(at -= 3, 1, ',');
    return text;
}

std::string Count(size_t number, const char* one, const char* many) {
    return Count(number) + " " + (number == 1 ? one : many);
}

std::string Now() {
    const std::time_t now = std::time(nullptr);
    std::tm local;
    char text[40];
    if (localtime_r(&now, &local) == nullptr) return "";
    return {text, std::strftime(text, sizeof text, "%Y-%m-%d %H:%M", &local)};
}

std::string Note(const ReportDirectory& directory) {
    if (directory.isRelative) return "relative";
    return directory.isFrozen ? "frozen" : "";
}

size_t StepOf(size_t hidden, size_t files) {
    if (hidden == 0) return 0;
    const double share = static_cast<double>(hidden) / static_cast<double>(files);
    constexpr double kSteps[] = {0.1, 0.25, 0.5};
    return 1 + static_cast<size_t>(std::upper_bound(std::begin(kSteps), std::end(kSteps), share) -
                                   kSteps);
}

class Page {
  public:
    Page(const ReportData& data, const LoadedPath& loaded, const PathOptions& options)
        : data_(data), loaded_(loaded), options_(options) {}

    std::string make() {
        page_.texts["version"] = libvpath_version;
        page_.texts["css"] = kReportCss;
        page_.texts["js"] = kReportJs;
        page_.texts["date"] = Now();
        page_.texts["current"] = PrintableText(currentDirectory());
        addMap();
        addNames();
        addDirectories();
        if (loaded_.fromCache) addCache();
        addFigures();
        page_.texts["json"] = json();
        return FillTemplate(kReportHtml, page_, EscapeHtml);
    }

  private:
    std::string currentDirectory() const {
        const vpDir dir = vpGetCWD(loaded_.path);
        return vpGetDirType(dir) == vpDirTypeNone ? "no directory" : FullNameOf(dir);
    }

    void addFigures();
    void addMap();
    void addNames();
    void addDirectories();
    void addCache();
    std::string json() const;

    const ReportData& data_;
    const LoadedPath& loaded_;
    const PathOptions& options_;
    TemplateValues page_;
};

void Page::addFigures() {
    size_t files = 0;
    size_t special = 0;
    for (const ReportDirectory& directory : data_.directories) {
        files += directory.files;
        special += directory.special;
    }
    const auto add = [&](const char* label, std::string number) {
        page_.lists["figures"].push_back({{{"label", label}, {"number", std::move(number)}}, {}});
    };
    add("directories", Count(data_.directories.size()));
    add("private, class and package directories", Count(special));
    add("files", Count(files));
    add("names", Count(data_.distinctNames));
    add("shadowed names", Count(data_.names.size()));
    add("load time", Milliseconds(loaded_.loadSeconds, 1) + " ms");
    if (loaded_.fromCache) add("answered by the cache", page_.texts["coverage"] + " %");
}

void Page::addMap() {
    std::vector<size_t> sizes;
    for (const ReportDirectory& directory : data_.directories) sizes.push_back(directory.files);
    std::vector<TemplateValues>& areas = page_.lists["areas"];
    for (const MapArea& area : LayOutMap(sizes, kMapAspect)) {
        const ReportDirectory& first = data_.directories[area.first];
        const bool isGroup = area.directories > 1;
        size_t hidden = 0;
        for (size_t i = area.first; i <= area.last; ++i) hidden += data_.directories[i].hidden;
        const std::string name = PrintableText(first.name);
        std::string place = std::to_string(first.position);
        std::string label = name.substr(name.rfind('/') + 1);
        if (label.empty()) label = name;
        TemplateValues values;
        if (isGroup) {
            const ReportDirectory& end = data_.directories[area.last];
            place.append("–").append(std::to_string(end.position));
            label = place;
            values.lists["group"] = {
                {{{"number", Count(area.directories)}, {"last", PrintableText(end.name)}}, {}}};
            page_.lists["grouped"] = {{}};
        }
        values.texts = {{"index", std::to_string(area.first)},
                        {"left", Fixed(area.left, 3)},
                        {"top", Fixed(area.top, 3)},
                        {"width", Fixed(area.width, 3)},
                        {"height", Fixed(area.height, 3)},
                        {"step", std::to_string(StepOf(hidden, area.size))},
                        {"kind", isGroup ? "group" : "single"},
                        {"place", std::move(place)},
                        {"name", name},
                        {"label", std::move(label)},
                        {"files", Count(area.size, "file", "files")},
                        {"hidden", Count(hidden)}};
        areas.push_back(std::move(values));
    }
    if (areas.empty()) page_.lists["noFiles"] = {{}};
}

std::string LeftOut(size_t number, const char* what) {
    if (number <= kStaticRows) return "";
    return "These are " + Count(kStaticRows) + " of " + Count(number) + " " + what +
           "; a browser that runs scripts shows the others too.";
}

void Page::addNames() {
    std::vector<TemplateValues>& rows = page_.lists["names"];
    for (const ReportName& name : data_.names) {
        if (rows.size() == kStaticRows) break;
        TemplateValues row;
        const size_t more = name.places - name.shown.size();
        row.texts = {{"name", PrintableText(name.name)},
                     {"places", Count(name.places)},
                     {"kind", name.kind},
                     {"more", more == 0 ? "" : "and " + Count(more) + " more"}};
        for (const ShadowPlace& place : name.shown) {
            row.lists["files"].push_back({{{"file", PrintableText(place.file)}}, {}});
        }
        rows.push_back(std::move(row));
    }
    page_.texts["namesLeftOut"] = LeftOut(data_.names.size(), "names");
}

void Page::addDirectories() {
    std::vector<const ReportDirectory*> byCost;
    double total = 0;
    for (const ReportDirectory& directory : data_.directories) {
        byCost.push_back(&directory);
        total += directory.listingSeconds;
    }
    std::stable_sort(byCost.begin(), byCost.end(), [](const auto* a, const auto* b) {
        return a->listingSeconds > b->listingSeconds;
    });
    std::vector<TemplateValues>& rows = page_.lists["directories"];
    for (const ReportDirectory* directory : byCost) {
        if (rows.size() == kStaticRows) break;
        const double most = byCost[0]->listingSeconds;
        TemplateValues row;
        row.texts = {
            {"index", std::to_string(directory - data_.directories.data())},
            {"position", std::to_string(directory->position)},
            {"name", PrintableText(directory->name)},
            {"files", Count(directory->files)},
            {"hidden", Count(directory->hidden)},
            {"special", Count(directory->special)},
            {"share", Fixed(most > 0 ? 100 * directory->listingSeconds / most : 0, 1)},
            {"cost", directory->listed == 0 ? "–" : Milliseconds(directory->listingSeconds, 3)},
            {"source", directory->answeredBy()}};
        const std::string note = Note(*directory);
        if (!note.empty()) row.lists["notes"] = {{{{"note", note}}, {}}};
        rows.push_back(std::move(row));
    }
    page_.texts["directoriesLeftOut"] = LeftOut(data_.directories.size(), "directories");
    page_.texts["listed"] = Milliseconds(total, 1) + " ms";
    page_.texts["loaded"] = Milliseconds(loaded_.loadSeconds, 1) + " ms";
}

void Page::addCache() {
    size_t asked = 0;
    size_t covered = 0;
    for (const ReportDirectory& directory : data_.directories) {
        asked += 1 + directory.special;
        covered += 1 + directory.special - directory.listed;
    }
    page_.lists["cache"] = {{}};
    page_.texts["cacheFile"] = PrintableText(options_.cacheFile);
    page_.texts["asked"] = Count(asked);
    page_.texts["covered"] = Count(covered);
    page_.texts["coverage"] = Fixed(
        asked == 0 ? 0 : 100.0 * static_cast<double>(covered) / static_cast<double>(asked), 0);
}

// All rows, for the script. The folders of files are told once each.
std::string Page::json() const {
    Json folders = Json::array();
    std::unordered_map<std::string, size_t> folderIndex;
    Json names = Json::array();
    for (const ReportName& name : data_.names) {
        Json files = Json::array();
        for (const ShadowPlace& place : name.shown) {
            const size_t end = place.file.rfind('/') + 1;
            const auto [folder, isNew] =
                folderIndex.try_emplace(place.file.substr(0, end), folders.size());
            if (isNew) folders.push_back(PrintableText(folder->first));
            files.push_back({folder->second, PrintableText(place.file.substr(end))});
        }
        names.push_back({PrintableText(name.name), name.places, name.kind, std::move(files)});
    }
    Json directories = Json::array();
    for (const ReportDirectory& directory : data_.directories) {
        const bool isListed = directory.listed > 0;
        directories.push_back(
            {directory.position, PrintableText(directory.name), Note(directory), directory.files,
             directory.hidden, directory.special,
             isListed
                 ? Json(std::strtod(Milliseconds(directory.listingSeconds, 3).c_str(), nullptr))
                 : Json(nullptr),
             loaded_.fromCache ? directory.answeredBy() : ""});
    }
    const Json all = {{"folders", std::move(folders)},
                      {"names", std::move(names)},
                      {"directories", std::move(directories)}};
    // Nothing in it may end the script element.
    std::string text;
    for (const char c : all.dump()) {
        if (c == '<') {
            text += "\\u003c";
        } else {
            text += c;
        }
    }
    return text;
}

}  // namespace

std::string ReportPage(const ReportData& data, const LoadedPath& loaded,
                       const PathOptions& options) {
    return Page(data, loaded, options).make();
}
