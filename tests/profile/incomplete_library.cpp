// A library that has only the first entry point of the offset library.

#if defined(_WIN32)
extern "C" __declspec(dllexport) void* polyshift_create() { return nullptr; }
#else
extern "C" __attribute__((visibility("default"))) void* polyshift_create() { return nullptr; }
#endif
