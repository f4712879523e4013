// The groups of measures, one a file. Each function registers its group with Google Benchmark.
#pragma once

void RegisterLoadMeasures();       // load_bench.cpp: adding directories, reading them
void RegisterEditMeasures();       // edit_bench.cpp: adding, removing, reordering
void RegisterRefreshMeasures();    // refresh_bench.cpp: looking for changes, merging them
void RegisterClassWalkMeasures();  // class_walk_bench.cpp: stepping over class directories
void RegisterMemoryMeasures();     // memory_bench.cpp: bytes held
void RegisterCacheMeasures();      // cache_bench.cpp: the toolbox cache
void RegisterLookupMeasures();     // lookup_bench.cpp: names found and not found
void RegisterDiskMeasures();       // disk_bench.cpp: a generated tree of real files
void RegisterRealTreeMeasures();   // real_tree_bench.cpp: all of it on this machine's own files
