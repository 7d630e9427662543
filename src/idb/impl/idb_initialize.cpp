#include "idb_initialize.h"

#include "uti_Module.h"

namespace {

constinit uti_Module theModule;

}  // namespace

void idb_initialize(int& count) { theModule.Initialize(count); }

void idb_finalize(int& count) { theModule.Finalize(count); }
