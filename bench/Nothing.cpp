// A library without anything in it: what loading any library of C++ costs.
extern "C" int BenchNothing() { return 1; }
