// SPDX-License-Identifier: MIT
/// The export macro of the boundary: puts a class or function on the library's public surface, on Windows too.
#pragma once

#if defined(DATAMODEL_STATIC)
#define DATAMODEL_EXPORT
#elif defined(_WIN32)
#if defined(DATAMODEL_BUILD)
#define DATAMODEL_EXPORT __declspec(dllexport)
#else
#define DATAMODEL_EXPORT __declspec(dllimport)
#endif
#else
#define DATAMODEL_EXPORT __attribute__((visibility("default")))
#endif
