#include "host_Main.h"
#include "host_MeshCommands.h"
#include "host_ViewCommands.h"

int main(int argc, char** argv) {
    return host_Main(argc, argv, [](host_CommandTable& table) {
        host_RegisterMeshCommands(table);
        host_RegisterViewCommands(table);
    });
}
