// quevar_bits: the result bits of every family over a fixed stream of arguments, against the committed record.
//
//     quevar_bits check [family...]     fails where a family's bits are not those recorded
//     quevar_bits record [family...]    replaces their lines in record.txt
//
// A line of record.txt is a family, a hash of its results at width 1 and one of those at the other widths. Families
// that use the processor's reciprocal estimates have a line for each kind of processor seen, told by a hash of the
// estimates behind @; on other processors they are not compared, which `check` says.
#include "harness/run.hpp"
#include <atomic>
#include <cstdio>
#include <fstream>
#include <immintrin.h>
#include <map>
#include <random>
#include <set>
#include <sstream>
#include <thread>
#include <vector>

using namespace quevar::tool;

namespace {

constexpr int random_arguments = 1000000;

// FNV-1a by 64-bit words, folded.
struct Hash {
    std::uint64_t value = 0xCBF29CE484222325;
    void add(std::uint64_t bits) {
        value = (value ^ bits) * 0x100000001B3;
        value ^= value >> 32;
    }
    std::string text() const {
        char s[17];
        std::snprintf(s, sizeof s, "%016llx", static_cast<unsigned long long>(value));
        return s;
    }
};

// What `vrcpps` and `vrsqrtps` give for every 16th significand of two binades.
std::string processor() {
    Hash hash;
    for (std::uint32_t bits = 0x3F800000; bits < 0x40800000; bits += 16) {
        const __m128 x = _mm_castsi128_ps(_mm_set1_epi32(static_cast<int>(bits)));
        hash.add(static_cast<std::uint32_t>(_mm_cvtsi128_si32(_mm_castps_si128(_mm_rcp_ps(x)))));
        hash.add(static_cast<std::uint32_t>(_mm_cvtsi128_si32(_mm_castps_si128(_mm_rsqrt_ps(x)))));
    }
    return hash.text();
}

std::vector<std::string> words_of(const std::string &line) {
    std::istringstream fields(line);
    std::vector<std::string> words;
    for (std::string word; fields >> word;) words.push_back(word);
    return words;
}

std::vector<std::vector<std::string>> lines_of(const char *name) {
    const std::string path = std::string(QUEVAR_BITS_FOLDER "/") + name;
    std::ifstream file(path);
    if (!file) throw std::runtime_error("cannot read " + path);
    std::vector<std::vector<std::string>> lines;
    for (std::string line; std::getline(file, line);)
        if (!line.empty() && line[0] != '#') lines.push_back(words_of(line));
    return lines;
}

// The sample of quevar_accuracy at full length, and the constants that stand in a family's source: at limits, and at
// the ends of ranges that a subtraction and a comparison make of two of them.
std::vector<Arguments> stream(const Family &family, const std::vector<std::string> &constants) {
    std::vector<Arguments> list = sample(family, random_arguments);
    const std::size_t drawn = list.size();
    std::mt19937_64 random(drawn);
    const int size = size_of(family.a), digits = 2 + 2 * size;
    const std::uint64_t sign = 1ull << (8 * size - 1), cut = size == 4 ? 0xFFFFFFFF : ~0ull;
    std::uint64_t before = 0;
    for (const std::string &text : constants) {
        if (static_cast<int>(text.size()) != digits) continue;
        const std::uint64_t constant = std::stoull(text, nullptr, 16), sum = constant + before;
        before = constant;
        for (std::uint64_t point : {constant, sum})
            for (std::uint64_t step : {0, -1, 1, 2})
                for (std::uint64_t high : {0, -1, 1})
                    for (std::uint64_t flip : {std::uint64_t{0}, sign}) {
                        if (size == 4 && high) continue;
                        Arguments a = list[random() % drawn];
                        const int k =
                            family.arguments() > 1 && family.argument(1) == family.a ? random() % 2 : 0;
                        a[k] = ((point + step + (high << 32)) ^ flip) & cut;
                        list.push_back(a);
                    }
    }
    return list;
}

// Calling a member without the harness, whose checks take fifty times as long. All vectors are passed as if they were of
// 256 bits, an int at width 1 and a pointer as the first integer; what a member does not take it does not see.
typedef float Both __attribute__((vector_size(64))); // two 256-bit results
using Direct = Both (*)(__m256, __m256, __m256, std::uintptr_t);

// Hashes the results of a member over the list, `lanes` at a time.
void run_directly(const Family &family, int lanes, std::span<const Arguments> list, Hash &hash) {
    const auto member = reinterpret_cast<Direct>(
        const_cast<void *>(family.member[std::find(widths, std::end(widths), lanes) - widths]));
    const bool has_pointer = family.p != Type::none,
               with_int = family.arguments() == 2 && family.argument(1) != family.a;
    const int size = size_of(family.r), second_size = size_of(family.second());
    alignas(64) unsigned char in[3][32] = {}, second[64] = {};
    for (std::size_t begin = 0; begin + lanes <= list.size(); begin += lanes) {
        for (int k = 0; k < family.arguments(); ++k) {
            const int bytes = size_of(family.argument(k));
            for (int i = 0; i < lanes; ++i) std::memcpy(in[k] + i * bytes, &list[begin + i][k], bytes);
        }
        const auto vector = [&](int k) { return _mm256_load_ps(reinterpret_cast<const float *>(in[k])); };
        const std::uintptr_t integer = has_pointer              ? reinterpret_cast<std::uintptr_t>(second)
                                       : lanes == 1 && with_int ? list[begin][1]
                                                                : 0;
        const Both both = member(vector(0), vector(1), vector(2), integer);
        const auto *first = reinterpret_cast<const unsigned char *>(&both);
        const unsigned char *other = has_pointer ? second : first + (lanes == 1 ? size : 32);
        for (int i = 0; i < lanes; ++i) {
            std::uint64_t a = 0, b = 0;
            std::memcpy(&a, first + i * size, size);
            if (second_size) std::memcpy(&b, other + i * second_size, second_size);
            hash.add(a);
            hash.add(b);
        }
    }
}

struct Bits {
    std::string width_1, wide;
    bool operator==(const Bits &) const = default;
};

Bits bits_of(const Family &family, const std::vector<std::string> &constants) {
    std::vector<Arguments> list = stream(family, constants);
    Hash hash[2];

    // Every width as its callers see it, over a part of the list.
    std::vector<Arguments> part;
    for (std::size_t i = 0; i < list.size(); i += 47) part.push_back(list[i]);
    for (int width : widths)
        run(family, width, part, [&](std::size_t, std::uint64_t first, std::uint64_t second) {
            hash[width > 1].add(first);
            hash[width > 1].add(second);
        });

    // The whole list where all values go in one register each; for one float, every 509th pattern too.
    const int widest = std::max({size_of(family.a), size_of(family.r), size_of(family.second())});
    const bool in_vectors = is_float(family.a) && is_float(family.r);
    std::vector<Arguments> patterns;
    if (family.a == Type::f32 && family.arguments() == 1)
        for (std::uint64_t bits = 0; bits < 1ull << 32; bits += 509) patterns.push_back({bits});
    for (std::span<const Arguments> arguments : {std::span(list), std::span(patterns)}) {
        run_directly(family, 32 / widest, arguments, hash[1]);
        if (in_vectors) run_directly(family, 1, arguments, hash[0]);
    }
    return {hash[0].text(), hash[1].text()};
}

struct Record {
    std::map<std::string, Bits> lines;
    std::set<std::string> estimates; // families that use estimates

    Record() {
        for (const auto &words : lines_of("record.txt")) lines[words.at(0)] = {words.at(1), words.at(2)};
        for (const auto &words : lines_of("estimates.txt")) estimates.insert(words.at(0));
    }
    std::string key(const std::string &family, const std::string &processor) const {
        return estimates.contains(family) ? family + "@" + processor : family;
    }
    bool has_other_processor(const std::string &family) const {
        const auto next = lines.lower_bound(family + "@");
        return next != lines.end() && next->first.starts_with(family + "@");
    }
    void write() const {
        std::ofstream file(QUEVAR_BITS_FOLDER "/record.txt");
        file << "# Written by quevar_bits record. Family, bits at width 1, bits at the other widths.\n";
        for (const auto &[name, bits] : lines)
            file << name << ' ' << bits.width_1 << ' ' << bits.wide << '\n';
    }
};

int main_of(int argc, char **argv) {
    const std::string verb = argc > 1 ? argv[1] : "";
    if (verb != "check" && verb != "record") {
        std::fputs("usage: quevar_bits check | record [family...]\n", stderr);
        return 2;
    }
    const std::set<std::string> names(argv + 2, argv + argc);
    std::vector<const Family *> chosen;
    for (const Family &family : families())
        if (names.empty() || names.contains(family.name())) chosen.push_back(&family);
    if (chosen.empty() || (!names.empty() && chosen.size() != names.size())) {
        std::fputs("not all of these are families\n", stderr);
        return 2;
    }

    std::map<std::string, std::vector<std::string>> points; // by base: the constants of its source
    for (const auto &words : lines_of("points.txt")) points[words[0]] = {words.begin() + 1, words.end()};
    Record record;
    const std::string kind = processor();
    std::vector<Bits> bits(chosen.size());
    std::atomic<std::size_t> next = 0;
    {
        std::vector<std::jthread> pool;
        for (int k = 0; k < 2; ++k)
            pool.emplace_back([&] {
                for (std::size_t i; (i = next++) < chosen.size();)
                    bits[i] = bits_of(*chosen[i], points[std::string(chosen[i]->base) + chosen[i]->mark]);
            });
    }

    int failures = 0, not_compared = 0;
    for (std::size_t i = 0; i < chosen.size(); ++i) {
        const std::string name = chosen[i]->name(), key = record.key(name, kind);
        if (verb == "record") {
            record.lines[key] = bits[i];
            continue;
        }
        const auto line = record.lines.find(key);
        if (line != record.lines.end() && line->second == bits[i]) continue;
        if (line == record.lines.end() && key != name && record.has_other_processor(name)) {
            ++not_compared;
            continue;
        }
        ++failures;
        std::printf("%s: %s\n", name.c_str(),
                    line == record.lines.end()                ? "not recorded"
                    : line->second.wide == bits[i].wide       ? "other bits at width 1"
                    : line->second.width_1 == bits[i].width_1 ? "other bits at widths above 1"
                                                              : "other bits");
    }
    if (verb == "record") {
        record.write();
        return 0;
    }
    if (not_compared)
        std::printf("%d families not compared: this processor's estimates (%s) are not in the record\n",
                    not_compared, kind.c_str());
    std::printf("%zu families, %d with other bits than recorded\n", chosen.size(), failures);
    return failures != 0;
}

} // namespace

int main(int argc, char **argv) try { return main_of(argc, argv); } catch (const std::exception &error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}
