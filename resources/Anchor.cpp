// A static library needs one source of its own; what this one carries is in CMakeLists.txt.
