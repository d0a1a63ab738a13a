// Calling a member over a list of arguments.
#pragma once
#include "harness/arguments.hpp"
#include <algorithm>
#include <span>

namespace quevar::tool {

// Calls a member over all arguments; done(index in the list, bits of first result, of second).
template <class Done> void run(const Family &family, int width, std::span<const Arguments> list, Done done) {
    alignas(64) unsigned char lanes[3][128], results[2][128];
    const void *const pointers[] = {lanes[0], lanes[1], lanes[2]};
    const int size = size_of(family.r), second_size = size_of(family.second()), count = family.arguments();
    for (std::size_t begin = 0; begin < list.size(); begin += width) {
        for (int lane = 0; lane < lanes_in_memory(width); ++lane) {
            const Arguments &arguments = list[std::min(begin + lane, list.size() - 1)];
            for (int k = 0; k < count; ++k) {
                const int bytes = size_of(family.argument(k));
                std::memcpy(lanes[k] + lane * bytes, &arguments[k], bytes);
            }
        }
        invoke(family, width, pointers, results[0], results[1]);
        for (int lane = 0; lane < width && begin + lane < list.size(); ++lane) {
            std::uint64_t first = 0, second = 0;
            std::memcpy(&first, results[0] + lane * size, size);
            std::memcpy(&second, results[1] + lane * second_size, second_size);
            done(begin + lane, first, second);
        }
    }
}

} // namespace quevar::tool
