// SPDX-License-Identifier: MIT
/// Random numbers for tests. To repeat a run, set the environment variable NODEBROWSER_SEED to the seed that it
/// printed.
#pragma once

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>

inline bool IsSeedGiven()
{
    const char* const given = std::getenv("NODEBROWSER_SEED");
    return given && *given;
}

/// The seed of a test. Prints it.
/// \param in_default the seed when NODEBROWSER_SEED is not set
inline unsigned TestSeed(unsigned in_default)
{
    const unsigned seed =
        IsSeedGiven() ? static_cast<unsigned>(std::strtoul(std::getenv("NODEBROWSER_SEED"), nullptr, 0)) : in_default;
    std::printf("NODEBROWSER_SEED=%u\n", seed);
    return seed;
}

/// Random numbers. The same seed gives the same ones on every machine; the distributions of the standard library do
/// not.
class Random
{
public:
    explicit Random(unsigned in_seed) : m_engine(in_seed) {}

    /// A number from 0 to in_end - 1.
    /// \param in_end above 0
    int Below(int in_end) { return static_cast<int>(m_engine() % static_cast<unsigned>(in_end)); }
    int Between(int in_first, int in_last) { return in_first + Below(in_last - in_first + 1); }
    bool OneIn(int in_count) { return Below(in_count) == 0; }

    /// One of some texts.
    template <std::size_t count> const char* OneOf(const char* const (&in_texts)[count])
    {
        return in_texts[Below(static_cast<int>(count))];
    }

    /// A text made of some characters, with a length from in_shortest to in_longest.
    std::string Text(const char* in_characters, int in_shortest, int in_longest)
    {
        const int count = static_cast<int>(std::strlen(in_characters));
        std::string text;
        for (int left = Between(in_shortest, in_longest); left > 0; --left)
            text += in_characters[Below(count)];
        return text;
    }

private:
    std::mt19937 m_engine;
};
