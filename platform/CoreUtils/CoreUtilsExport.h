#pragma once

/// \file
/// CORE_API marks what TVXUTI_CoreUtils exports; everything else in that library stays hidden.
/// CORE_BUILD is defined while the library itself is being compiled.
/// CORE_SHARED_TEMPLATE marks a class template whose static data is one per process: every shared
/// object that instantiates it binds to the same copy. The template argument must be exported too.

#if defined(_WIN32)
#if defined(CORE_BUILD)
#define CORE_API __declspec(dllexport)
#else
#define CORE_API __declspec(dllimport)
#endif
// A DLL has its own copy of a template's static data: there, the library that owns the argument
// type exports an explicit instantiation.
#define CORE_SHARED_TEMPLATE
#else
#define CORE_API __attribute__((visibility("default")))
#define CORE_SHARED_TEMPLATE __attribute__((visibility("default")))
#endif
