#include "host_LoadCommands.h"
#include "host_Main.h"
#include "host_MaterialCommands.h"
#include "host_MeshCommands.h"
#include "host_ModelCommands.h"
#include "host_StepCommands.h"
#include "host_ViewCommands.h"

int main(int argc, char** argv) {
    return host_Main(argc, argv, [](host_CommandTable& table) {
        host_RegisterMeshCommands(table);
        host_RegisterMaterialCommands(table);
        host_RegisterStepCommands(table);
        host_RegisterLoadCommands(table);
        host_RegisterModelCommands(table);
        host_RegisterViewCommands(table);
    });
}
