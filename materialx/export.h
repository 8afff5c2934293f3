// SPDX-License-Identifier: MIT
/// The export macro of the MaterialX room.
#pragma once

#if defined(MATERIALX_STATIC)
#define MATERIALX_EXPORT
#elif defined(_WIN32)
#if defined(MATERIALX_BUILD)
#define MATERIALX_EXPORT __declspec(dllexport)
#else
#define MATERIALX_EXPORT __declspec(dllimport)
#endif
#else
#define MATERIALX_EXPORT __attribute__((visibility("default")))
#endif
