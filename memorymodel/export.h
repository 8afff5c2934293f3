// SPDX-License-Identifier: MIT
/// The export macros of the in-memory data layer: MEMORYMODEL_EXPORT puts a class or function on the library's public
/// surface, MEMORYMODEL_NO_EXPORT takes a member of such a class off it.
#pragma once

#if defined(MEMORYMODEL_STATIC)
#define MEMORYMODEL_EXPORT
#elif defined(_WIN32)
#if defined(MEMORYMODEL_BUILD)
#define MEMORYMODEL_EXPORT __declspec(dllexport)
#else
#define MEMORYMODEL_EXPORT __declspec(dllimport)
#endif
#else
#define MEMORYMODEL_EXPORT __attribute__((visibility("default")))
#endif

#if defined(__GNUC__) && !defined(_WIN32)
#define MEMORYMODEL_NO_EXPORT __attribute__((visibility("hidden")))
#else
#define MEMORYMODEL_NO_EXPORT
#endif
