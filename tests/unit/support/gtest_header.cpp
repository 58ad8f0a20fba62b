// A program of nothing: the precompiled header of the test programs must belong to a program.
int main() {}
