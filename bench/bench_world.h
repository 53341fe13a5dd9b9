// What the benchmarks share: Allegro and a world, started once.
#pragma once

#include "engine/dinterface.h"
#include "engine/report.h"

/// To be run in the program's folder, where Library/ stands.
inline Dinterface& BenchWorld() {
    static Dinterface* world = [] {
        StartAllegro();
        StartTrace(nullptr);
        return new Dinterface;
    }();
    return *world;
}

inline Dobject& AddBenchNode(Dobject& parent, int w, int h, int z = 0) {
    const bool board = &parent == &vWorld->Root();
    Dobject* node =
        board ? parent.Spawn_Back(vWorld->TakeId(), z) : parent.Spawn(vWorld->TakeId(), z);
    node->Create("node", w, h);
    return *node;
}
