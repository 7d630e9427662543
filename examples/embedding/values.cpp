// Values of the command language, containers and their sharing, and a value handed to a thread.

#include "UTI_CaeUtils.h"
#include "cow_1DArrayList.h"
#include "omu_PrimArray.h"
#include "omu_PrimDictionary.h"
#include "omu_PrimTuple.h"
#include "omu_StandardTraits.h"

#include <cstdio>
#include <memory>
#include <numeric>
#include <thread>

static void Print(const char* what, const omu_Primitive& value) {
    std::printf("%-11s %s  (%s)\n", what, value.AsRepr().AsCharPtr(),
                value.TypeString().AsCharPtr());
}

static void Values() {
    omu_PrimTuple tuple(3, '(');
    tuple.Put(1);
    tuple.Put("steel");
    tuple.Put(2.5);
    Print("tuple", tuple);

    omu_PrimDictionary<cow_String> material;
    material.Put("name", "steel");
    material.Put("density", 7.85e-6);
    material.Put("sizes", tuple);
    Print("dictionary", material);

    double density = 0;
    cow_String name;
    if (material.Get("density", density) && !material.Get("density", name)) {
        std::printf("density is %g, and no text\n", density);
    }

    const omu_PrimArray matrix(std::vector<double>{1, 2, 3, 4}, {2, 2});
    Print("array", matrix);
}

static void Sharing() {
    cow_1DArrayList<int> first{1, 2, 3};
    cow_1DArrayList<int> second = first;  // one count; both see the same elements
    second.Get(0) = 10;                   // writing to a shared body copies it first
    std::printf("first[0] is %d, second[0] is %d\n", first.ConstGet(0), second.ConstGet(0));
}

static void Threads() {
    cow_1DArrayList<int> mine{1, 2, 3};
    // Counts are plain integers: hand another thread a copy that shares nothing.
    std::thread([theirs = mine.DeepCopy()] {
        std::printf("the thread's sum is %d\n", std::accumulate(theirs.begin(), theirs.end(), 0));
    }).join();
    std::printf("still %d elements here\n", mine.Length());
}

int main() {
    int modules = 0;
    UTI_CaeUtils_initialize(modules);
    Values();
    Sharing();
    Threads();
    UTI_CaeUtils_finalize(modules);
    return modules;
}
