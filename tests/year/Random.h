#pragma once

#include <chrono>
#include <cstdint>
#include <random>

namespace kelvo {

/// Random choices that are the same for the same seed with every compiler.
class Random
{
public:
    explicit Random(std::uint32_t seed)
        : engine_(seed)
    {
    }

    /// A number from 0 to `count` - 1.
    int below(int count) { return static_cast<int>(engine_() % static_cast<std::uint64_t>(count)); }
    /// True once in `times`.
    bool once(int times) { return below(times) == 0; }
    std::chrono::milliseconds between(std::chrono::milliseconds least, std::chrono::milliseconds most)
    {
        const auto range = static_cast<std::uint64_t>((most - least).count()) + 1;
        return least + std::chrono::milliseconds(engine_() % range);
    }
    template<typename List>
    const auto &oneOf(const List &list)
    {
        return *(std::begin(list) + below(static_cast<int>(std::size(list))));
    }
    template<typename List>
    void shuffle(List &list)
    {
        for (auto left = std::size(list); left > 1; --left) {
            std::swap(list[left - 1], list[static_cast<std::size_t>(below(static_cast<int>(left)))]);
        }
    }

private:
    std::mt19937_64 engine_;
};

} // namespace kelvo
