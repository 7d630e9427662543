#pragma once

/// \file
/// CAE_API marks what TVXUTI_CaeUtils exports; everything else in that library stays hidden.
/// CAE_BUILD is defined while the library itself is being compiled.

#if defined(_WIN32)
#if defined(CAE_BUILD)
#define CAE_API __declspec(dllexport)
#else
#define CAE_API __declspec(dllimport)
#endif
#else
#define CAE_API __attribute__((visibility("default")))
#endif
