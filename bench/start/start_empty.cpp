// What every program costs.
int main() { return 0; }
