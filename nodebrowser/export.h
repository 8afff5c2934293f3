// SPDX-License-Identifier: MIT
/// The export macro of the browser library.
#pragma once

#if defined(NODEBROWSER_STATIC)
#define NODEBROWSER_EXPORT
#elif defined(_WIN32)
#if defined(NODEBROWSER_BUILD)
#define NODEBROWSER_EXPORT __declspec(dllexport)
#else
#define NODEBROWSER_EXPORT __declspec(dllimport)
#endif
#else
#define NODEBROWSER_EXPORT __attribute__((visibility("default")))
#endif
