// SPDX-License-Identifier: MIT
/// The export macro of the importers.
#pragma once

#if defined(IMPORTERS_STATIC)
#define IMPORTERS_EXPORT
#elif defined(_WIN32)
#if defined(IMPORTERS_BUILD)
#define IMPORTERS_EXPORT __declspec(dllexport)
#else
#define IMPORTERS_EXPORT __declspec(dllimport)
#endif
#else
#define IMPORTERS_EXPORT __attribute__((visibility("default")))
#endif
