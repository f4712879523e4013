#include "report/area_map.h"

#include <algorithm>

namespace {

// So many can be told apart and read.
constexpr size_t kManyAreas = 150;

std::vector<MapArea> Areas(const std::vector<size_t>& sizes) {
    size_t total = 0;
    size_t count = 0;
    for (const size_t size : sizes) {
        total += size;
        count += size > 0 ? 1 : 0;
    }
    const size_t small = count <= kManyAreas ? 0 : total / kManyAreas;
    std::vector<MapArea> areas;
    for (size_t i = 0; i < sizes.size(); ++i) {
        if (sizes[i] == 0) continue;
        if (!areas.empty() && areas.back().size + sizes[i] <= small) {
            areas.back().last = i;
            areas.back().size += sizes[i];
            ++areas.back().directories;
        } else {
            areas.push_back({i, i, 1, sizes[i], 0, 0, 0, 0});
        }
    }
    return areas;
}

// How far the areas [first, last) are from squares, as a row: 1 is all squares.
double Elongation(const std::vector<MapArea>& areas, size_t first, size_t last, double aspect,
                  double total) {
    double sum = 0;
    for (size_t i = first; i < last; ++i) sum += static_cast<double>(areas[i].size);
    const double height = sum / total;
    double elongation = 0;
    for (size_t i = first; i < last; ++i) {
        const double width = aspect * static_cast<double>(areas[i].size) / sum;
        elongation += std::max(width / height, height / width);
    }
    return elongation / static_cast<double>(last - first);
}

}  // namespace

std::vector<MapArea> LayOutMap(const std::vector<size_t>& sizes, double aspect) {
    std::vector<MapArea> areas = Areas(sizes);
    double total = 0;
    for (const MapArea& area : areas) total += static_cast<double>(area.size);

    double top = 0;
    for (size_t first = 0; first < areas.size();) {
        // A row takes areas for as long as they become squarer by it.
        size_t last = first + 1;
        double elongation = Elongation(areas, first, last, aspect, total);
        for (; last < areas.size(); ++last) {
            const double longer = Elongation(areas, first, last + 1, aspect, total);
            if (longer > elongation) break;
            elongation = longer;
        }
        double sum = 0;
        for (size_t i = first; i < last; ++i) sum += static_cast<double>(areas[i].size);
        double left = 0;
        for (; first < last; ++first) {
            MapArea& area = areas[first];
            area.left = left;
            area.top = top;
            area.width = 100 * static_cast<double>(area.size) / sum;
            area.height = 100 * sum / total;
            left += area.width;
        }
        top += 100 * sum / total;
    }
    return areas;
}
