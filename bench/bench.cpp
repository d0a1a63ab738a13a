// Throughput of every family, beside SLEEF and the C library, over the same arguments: independent
// vectors streamed through arrays that stay in the first-level cache (load, call, store).
//
// Benchmarks are named family/width/what, what being
//     quevar sleef    one xmm, one ymm and two ymm of arguments; SLEEF has no wider call, so two there
//     libm            a scalar loop, width 1
//     empty           a function that only returns, called as quevar's members of that form are
//     one_special     quevar with one special argument in each vector
//     all_special     quevar with nothing but special arguments
// Options are those of Google Benchmark, --summary for a markdown table of medians at one ymm, and
// --every-width for one of all widths.
#include "peers.hpp"
#include "summary.hpp"
#include <benchmark/benchmark.h>
#include <memory>
#include <quevar/quevar.h>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

extern "C" void quevar_bench_empty(); // in a shared object, like the members

namespace quevar_bench {
namespace {

// The properties of a shape, from shapes.def.
template <int arguments_, bool with_int_, bool pointer_, bool pair_> struct Shape {
    static constexpr int arguments = arguments_;
    static constexpr bool with_int = with_int_, pointer = pointer_, pair = pair_;
};
#define ARGUMENTS_1 1, false
#define ARGUMENTS_2 2, false
#define ARGUMENTS_3 3, false
#define ARGUMENTS_1i 2, true
#define IS_PAIR_single false
#define IS_PAIR_pair true
#define SHAPE(name)                                                                                          \
    Shape<QUEVAR_CAT(ARGUMENTS_, QUEVAR_SHAPE_ARGUMENTS(name)), QUEVAR_SHAPE_POINTER(name),                  \
          QUEVAR_CAT(IS_PAIR_, QUEVAR_SHAPE_RESULTS(name))>

constexpr size_t array_bytes = 4096 - 64; // an odd number of lines: equal indices of two arrays do not alias

template <class Shape_, class A, class R, class P> struct Data {
    using Shape = Shape_;
    static constexpr int lanes = array_bytes / sizeof(A);
    using X = A;
    using Y = std::conditional_t<Shape::with_int, int, A>;

    alignas(64) X x[lanes];
    alignas(64) Y y[lanes];
    alignas(64) X z[lanes];
    alignas(64) R r[lanes];
    alignas(64) std::conditional_t<Shape::pointer, P, R> s[lanes]; // the second result
};

enum Specials { no_special, one_special, all_special };

template <class T, size_t lanes> void draw(T (&values)[lanes], std::mt19937_64 &random, Range range) {
    std::uniform_real_distribution<double> uniform(range.low, range.high);
    for (T &value : values) value = static_cast<T>(uniform(random));
}

template <class V, class T> V load(const T *from) {
    V value;
    __builtin_memcpy(&value, from, sizeof value);
    return value;
}

// Applies f to the arguments that the shape has.
template <class Shape, class F, class X, class Y, class... More>
auto apply(F f, X x, Y y, X z, More... more) {
    if constexpr (Shape::arguments == 1) return f(x, more...);
    else if constexpr (Shape::arguments == 3) return f(x, y, z);
    else return f(x, y, more...);
}

// Stores a result of quevar. A pair is a vector whose halves begin with the first and the second value.
template <int W, class D, class V> void store(D &d, int i, const V &value) {
    __builtin_memcpy(d.r + i, &value, W * sizeof d.r[0]);
    if constexpr (D::Shape::pair)
        __builtin_memcpy(d.s + i, reinterpret_cast<const char *>(&value) + sizeof value / 2,
                         W * sizeof d.s[0]);
}

template <int W, class F, class D> void loop_sleef(D &d) {
    constexpr int step = W * sizeof d.x[0] > 32 ? W / 2 : W;
    using X [[gnu::vector_size(step * sizeof d.x[0])]] = typename D::X;
    using Y [[gnu::vector_size(step * sizeof d.y[0])]] = typename D::Y;
    for (int i = 0; i < D::lanes; i += step) {
        auto value = apply<typename D::Shape>(F{}, load<X>(d.x + i), load<Y>(d.y + i), load<X>(d.z + i));
        if constexpr (D::Shape::pointer || D::Shape::pair) {
            __builtin_memcpy(d.r + i, &value.x, sizeof value.x);
            __builtin_memcpy(d.s + i, &value.y, sizeof value.y);
        } else __builtin_memcpy(d.r + i, &value, sizeof value);
    }
}

// The empty function, called as a member of that type: with as many loads, and with its result stored.
template <int W, class Member, class D> struct EmptyLoop;
template <int W, class R, class... P, bool N, class D> struct EmptyLoop<W, R (*)(P...) noexcept(N), D> {
    template <class T> static T argument(D &d, int i) {
        if constexpr (std::is_pointer_v<T>) return reinterpret_cast<T>(d.s + i);
        else return load<T>(d.x + i);
    }
    static void run(D &d) {
        for (int i = 0; i < D::lanes; i += W)
            store<W>(d, i, reinterpret_cast<R (*)(P...)>(quevar_bench_empty)(argument<P>(d, i)...));
    }
};

template <class F, class D> void loop_libm(D &d) {
    for (int i = 0; i < D::lanes; ++i)
        if constexpr (D::Shape::pointer || D::Shape::pair)
            d.r[i] = apply<typename D::Shape>(F{}, d.x[i], d.y[i], d.z[i], d.s + i);
        else d.r[i] = apply<typename D::Shape>(F{}, d.x[i], d.y[i], d.z[i]);
}

template <class D, class Peers, bool loose> struct Family {
    std::string name, form;
    const Peers &peers;
    Summary &summary;
    bool every_width;

    void add(const std::string &name, int width, const char *what, void (*loop)(D &),
             Specials specials) const {
        auto run = [loop, width, specials, &peers = peers](benchmark::State &state) {
            auto d = std::make_unique<D>();
            std::mt19937_64 random(1); // the same arguments for all that a family is measured beside
            draw(d->x, random, peers.x);
            draw(d->y, random, peers.y);
            draw(d->z, random, peers.x);
            for (int i = 0; i < D::lanes; ++i)
                if (specials == all_special || (specials == one_special && i % width == i / width % width))
                    d->x[i] = static_cast<typename D::X>(peers.special);
            for (auto _ : state) {
                loop(*d);
                benchmark::ClobberMemory();
            }
            state.SetItemsProcessed(state.iterations() * D::lanes);
            using benchmark::Counter;
            state.counters[seconds_per_lane] =
                Counter(D::lanes, Counter::kIsIterationInvariantRate | Counter::kInvert);
        };
        benchmark::RegisterBenchmark((name + "/" + std::to_string(width) + "/" + what).c_str(), run);
    }

    // Families of one form share this.
    void add_empty(int width, void (*loop)(D &)) const {
        static std::set<std::string> there;
        if (there.insert(form + std::to_string(width)).second) add(form, width, "empty", loop, no_special);
    }

    template <int W, class Member, class Loop> void add_member(Loop loop) const {
        constexpr int bytes = W * sizeof(typename D::X), most = W * sizeof(std::declval<D>().r[0]);
        if constexpr (W == 1) add_empty(W, EmptyLoop<W, Member, D>::run);
        if constexpr (bytes >= 16 && bytes <= 64 && W != 3) {
            if (!every_width && std::max(bytes, most) != 32) return;
            using Sleef = std::conditional_t<loose, decltype(Peers::loose), decltype(Peers::close)>;
            summary.lines.push_back({name, form, std::to_string(W)});
            add_empty(W, EmptyLoop<W, Member, D>::run);
            add(name, W, "quevar", loop, no_special);
            if constexpr (!std::is_same_v<Sleef, None>)
                add(name, W, "sleef", loop_sleef<W, Sleef, D>, no_special);
            if constexpr (std::is_floating_point_v<typename D::X>) {
                add(name, W, "one_special", loop, one_special);
                add(name, W, "all_special", loop, all_special);
            }
        }
    }

    void add_libm() const {
        using Libm = decltype(Peers::libm);
        if constexpr (!std::is_same_v<Libm, None>) add(name, 1, "libm", loop_libm<Libm, D>, no_special);
    }
};

#define LOAD_scalar(T, W, v) d.v[i]
#define LOAD_1(T, W, v) load<quevar_##T##x##W>(d.v + i)
#define LOAD_HALF(T, W, v, k) load<QUEVAR_HALF(T)>(d.v + i + (k)*32 / QUEVAR_SIZE_##T)
#define LOAD_2(T, W, v) LOAD_HALF(T, W, v, 0), LOAD_HALF(T, W, v, 1)
#define LOAD_4(T, W, v) LOAD_2(T, W, v), LOAD_HALF(T, W, v, 2), LOAD_HALF(T, W, v, 3)
#define LOAD(T, W, v) QUEVAR_FORM(LOAD_, T, W)(T, W, v)
#define LOAD_MEMORY(T, W, v) load<quevar_##T##x##W##m>(d.v + i)
#define SECOND_RESULT(P, W) (quevar_##P##x##W##_out *)(d.s + i)

#define ADD(load, W, shape, A, P, base, mark, tier)                                                          \
    family.template add_member<W, decltype(&QUEVAR_NAME(base, mark, tier, W))>([](auto &d) {                 \
        for (int i = 0; i < d.lanes; i += W)                                                                 \
            store<W>(d, i,                                                                                   \
                     QUEVAR_NAME(base, mark, tier, W)(QUEVAR_VECTORS(shape, load, A, W)                      \
                                                          QUEVAR_POINTER(shape, SECOND_RESULT, P, W)));      \
    });
#define ADD_DIRECT(W, shape, A, P, base, mark, tier) ADD(LOAD, W, shape, A, P, base, mark, tier)
#define ADD_MEMORY(W, shape, A, P, base, mark, tier) ADD(LOAD_MEMORY, W, shape, A, P, base, mark, tier)

using quevar_void = void;

void add_all(Summary &summary, bool every_width) {
#define QUEVAR_FAMILY(base, mark, tier, shape, A, R, P, filler, bound)                                       \
    {                                                                                                        \
        Family<Data<SHAPE(shape), quevar_##A, quevar_##R, quevar_##P>, decltype(peers<#base>), (bound > 4)>  \
            family{#base #mark #tier, "empty_" #shape "_" #A "_" #R "_" #P, peers<#base>, summary,           \
                   every_width};                                                                             \
        QUEVAR_MEMBERS(ADD_DIRECT, ADD_MEMORY, shape, A, P, base, mark, tier)                                \
        family.add_libm();                                                                                   \
    }
#include <quevar/families.def>
#undef QUEVAR_FAMILY
}

} // namespace
} // namespace quevar_bench

int main(int count, char **values) {
    // A shared machine: short interleaved repetitions, of which the median counts. The caller's options
    // come later and prevail.
    std::vector<std::string> options = {values[0], "--benchmark_repetitions=9", "--benchmark_min_time=0.01",
                                        "--benchmark_enable_random_interleaving=true",
                                        "--benchmark_display_aggregates_only=true"};
    bool summary = false, every_width = true;
    for (int i = 1; i < count; ++i)
        if (std::string_view(values[i]) == "--summary") summary = true, every_width = false;
        else if (std::string_view(values[i]) == "--every-width") summary = every_width = true;
        else options.emplace_back(values[i]);
    std::vector<char *> arguments;
    for (std::string &option : options) arguments.push_back(option.data());
    count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 1;

    quevar_bench::Summary table;
    quevar_bench::add_all(table, every_width);
    benchmark::RunSpecifiedBenchmarks(summary ? &table : nullptr);
}
