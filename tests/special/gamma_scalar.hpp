// The scalar forms of the gamma functions, which the families call for the lanes that they do not settle in vectors.
#pragma once

namespace quevar::test {

double scalar_tgamma(double);
double scalar_lgamma(double);
float scalar_lgamma(float);

} // namespace quevar::test
