#pragma once

/// \file
/// BASIC_API marks what TVXUTI_BasicUtils exports; everything else in that library stays hidden.
/// BASIC_BUILD is defined while the library itself is being compiled.

#if defined(_WIN32)
#if defined(BASIC_BUILD)
#define BASIC_API __declspec(dllexport)
#else
#define BASIC_API __declspec(dllimport)
#endif
#else
#define BASIC_API __attribute__((visibility("default")))
#endif
