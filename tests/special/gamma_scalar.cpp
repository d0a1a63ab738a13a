#include "gamma_scalar.hpp"

#include "special/gamma/lgamma_scalar.hpp"
#include "special/gamma/lgammaf_scalar.hpp"
#include "special/gamma/tgamma_scalar.hpp"

namespace quevar::test {

double scalar_tgamma(double x) { return tgamma::value(x); }
double scalar_lgamma(double x) { return lgamma::value(x); }
float scalar_lgamma(float x) { return lgammaf::value(x); }

} // namespace quevar::test
