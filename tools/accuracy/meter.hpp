// The largest error of one result of a family.
#pragma once
#include "harness/arguments.hpp"
#include "reference.hpp"
#include "relaxed.hpp"

namespace quevar::tool {

struct Worst {
    double error = 0;        // in ulps of the exact value
    bool misrounded = false; // the result is not the number nearest to the exact value
    int width = 0;           // 0: nothing measured
    Arguments arguments{};
    std::uint64_t got = 0, wanted = 0;
};

class Meter {
public:
    Meter(const Family &, Type result, const Reference &);
    ~Meter();
    Meter(const Meter &) = delete;

    void add(const Arguments &, std::uint64_t got, int width);
    const Worst &worst() const { return worst_; }
    bool keeps_to_relaxed() const { return keeps_to_relaxed_; }
    static bool exceeds(const Family &, const Worst &);
    static bool worse(const Family &, const Worst &a, const Worst &b);

private:
    template <class T> double estimate(T (*near)(const T *), const Arguments &, T got) const;
    Worst measure(const Arguments &, std::uint64_t got, int width);

    const Family &family;
    const Type type;
    const Reference &reference;
    const int count, digits, emin, emax;
    double low, high; // of |x| for which the family promises anything
    unsigned skipped = 0;
    const Relaxed *const asked; // null if the family is not for relaxed math
    bool keeps_to_relaxed_ = true;
    Worst worst_;
    mpfr_t value[3], truncated, exact, difference;
};

} // namespace quevar::tool
