// SPDX-License-Identifier: MIT
/// The export macro of the in-memory data layer.
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
