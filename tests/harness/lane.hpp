// One lane of a family by name, in patterns: what the tables of the family tests are written in.
#pragma once
#include "harness/families.hpp"
#include <array>
#include <bit>
#include <initializer_list>

namespace quevar::test {

using namespace quevar::tool;

inline const Family &family(const std::string &name) {
    for (const Family &f : families())
        if (f.name() == name) return f;
    throw std::out_of_range("no family " + name);
}

struct Lane {
    std::uint64_t first = 0, second = 0; // results, as patterns
    bool operator==(const Lane &) const = default;
};

// What the member of a width gives in its lane 0; the other lanes hold the same arguments.
inline Lane lane(const Family &f, int width, std::initializer_list<std::uint64_t> arguments) {
    unsigned char in[3][128], first[128], second[128];
    int k = 0;
    for (const std::uint64_t bits : arguments) {
        const int bytes = size_of(f.argument(k));
        for (int i = 0; i < lanes_in_memory(width); ++i) std::memcpy(in[k] + i * bytes, &bits, bytes);
        ++k;
    }
    const void *pointers[] = {in[0], in[1], in[2]};
    invoke(f, width, pointers, first, second);
    Lane out;
    std::memcpy(&out.first, first, size_of(f.r));
    std::memcpy(&out.second, second, size_of(f.second()));
    return out;
}
inline std::uint64_t result(const std::string &name, std::initializer_list<std::uint64_t> arguments) {
    return lane(family(name), 4, arguments).first;
}

inline std::uint32_t pattern(float x) { return std::bit_cast<std::uint32_t>(x); }
inline std::uint64_t pattern(double x) { return std::bit_cast<std::uint64_t>(x); }

} // namespace quevar::test
