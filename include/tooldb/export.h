#pragma once

/// @file
/// Symbol visibility and the order of overloaded virtual operations.

#if defined(TOOLDB_STATIC)
#define TDB_EXPORT
#elif defined(_WIN32)
#if defined(TOOLDB_BUILDING)
#define TDB_EXPORT __declspec(dllexport)
#else
#define TDB_EXPORT __declspec(dllimport)
#endif
#else
#define TDB_EXPORT __attribute__((visibility("default")))
#endif

/// Declare overloads of one virtual operation in the order of their slots.
/// The Microsoft ABI lays overloads of one class out last declared first, the Itanium ABI in the
/// order of declaration; these macros declare them so that the listed order is the slot order
/// under both. Each argument is one declaration in parentheses, without its semicolon.
#define TDB_UNWRAP_(...) __VA_ARGS__
#if defined(_MSC_VER) || defined(TDB_MS_ABI)
#define TDB_SLOTS2(first, second) \
  TDB_UNWRAP_ second;             \
  TDB_UNWRAP_ first
#else
#define TDB_SLOTS2(first, second) \
  TDB_UNWRAP_ first;              \
  TDB_UNWRAP_ second
#endif
