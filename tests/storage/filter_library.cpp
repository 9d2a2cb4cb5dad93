// An import filter that says what is called, built once for each way a filter can be.
#include <cstdio>

#if defined(_WIN32)
#define FILTER_EXPORT extern "C" __declspec(dllexport)
#else
#define FILTER_EXPORT extern "C" __attribute__((visibility("default")))
#endif

#if !defined(FILTER_WITHOUT_INIT)
FILTER_EXPORT int tdbFilterInit();
FILTER_EXPORT int tdbFilterInit() {
  std::puts("init");
#if defined(FILTER_REFUSES)
  return 0;
#else
  return 1;
#endif
}
#endif

#if !defined(FILTER_WITHOUT_FILTER)
FILTER_EXPORT const char* tdbFilter(const char* input);
FILTER_EXPORT const char* tdbFilter(const char* input) {
  std::printf("filter %s\n", input);
#if defined(FILTER_ANSWERS_NULL)
  return nullptr;
#else
  return "filtered";
#endif
}

FILTER_EXPORT const char* tdbFilterGetString(void* reserved);
FILTER_EXPORT const char* tdbFilterGetString(void* reserved) {
  std::puts(reserved == nullptr ? "text" : "text of something");
#if defined(FILTER_ANSWERS_NULL)
  return nullptr;
#else
  return "Tools|*.x";
#endif
}
#endif

#if !defined(FILTER_WITHOUT_EXIT)
FILTER_EXPORT void tdbFilterExit();
FILTER_EXPORT void tdbFilterExit() { std::puts("exit"); }
#endif
