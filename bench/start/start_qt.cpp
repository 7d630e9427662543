// Only links and touches Qt Core.
#include <QtGlobal>

int main() { return qVersion() == nullptr ? 1 : 0; }
