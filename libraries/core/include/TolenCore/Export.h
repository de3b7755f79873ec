#pragma once

/// @file
/// Attributes of what the headers declare.

/// Marks what a shared library shows to its users; everything else stays hidden.
#if defined(_WIN32)
#define TOLEN_EXPORT __declspec(dllexport)
#else
#define TOLEN_EXPORT __attribute__((visibility("default")))
#endif

/// Lets the compiler check the arguments of a printf-style operation. Positions count from 1, with
/// `this` as the first argument of a member function.
#if defined(__GNUC__)
#define TOLEN_PRINTF(text, first) __attribute__((format(printf, text, first)))
#else
#define TOLEN_PRINTF(text, first)
#endif
