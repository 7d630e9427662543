#include "host_Main.h"
#include "host_MeshCommands.h"

int main(int argc, char** argv) { return host_Main(argc, argv, &host_RegisterMeshCommands); }
