#pragma once

class host_CommandTable;

/// The program: starts the library, registers the commands, runs the script, the code or the
/// prompt that the command line asks for in the embedded interpreter, and returns the exit code.
/// Once per process.
int host_Main(int argc, char** argv, void (*registerCommands)(host_CommandTable&));
