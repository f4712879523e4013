// Where directories lie on a map that keeps their order and shows their sizes as areas.
#pragma once

#include <cstddef>
#include <vector>

struct MapArea {
    size_t first;  // the directories that share it, some of them perhaps without size
    size_t last;
    size_t directories;  // with a size
    size_t size;
    double left, top, width, height;  // in percent of the map
};

// Areas for sizes in order, laid in rows from the top left; each as large as its size. Sizes of 0
// have none. Of many, small neighbours are put together, so that there are some hundreds at most.
// `aspect`: width by height of the map, for which areas come out about square. Cost: O(sizes).
std::vector<MapArea> LayOutMap(const std::vector<size_t>& sizes, double aspect);
