#include "levelling/Quantiles.h"

#include <boost/math/distributions/chi_squared.hpp>
#include <boost/math/distributions/fisher_f.hpp>
#include <boost/math/distributions/normal.hpp>
#include <boost/math/distributions/students_t.hpp>

#include <cmath>

namespace levelling::quantiles {

double shareOfEach(double error, int count)
{
    return -std::expm1(std::log1p(-error) / count);
}

double normalLimit(double error)
{
    return boost::math::quantile(boost::math::complement(boost::math::normal(), error / 2.0));
}

double tauLimit(int redundancy, double error)
{
    const boost::math::students_t student(redundancy - 1);
    const double t = boost::math::quantile(boost::math::complement(student, error / 2.0));
    return t * std::sqrt(redundancy / (redundancy - 1 + t * t));
}

double studentLimit(int redundancy, double error)
{
    return boost::math::quantile(boost::math::complement(boost::math::students_t(redundancy), error / 2.0));
}

double varianceLimit(int freedom, int redundancy, double error)
{
    if (redundancy == 0)
        return boost::math::quantile(boost::math::complement(boost::math::chi_squared(freedom), error)) /
               freedom;
    return boost::math::quantile(boost::math::complement(boost::math::fisher_f(freedom, redundancy), error));
}

RatioLimits sigmaRatioLimits(int redundancy, double error)
{
    const boost::math::chi_squared distribution(redundancy);
    const double lower = boost::math::quantile(distribution, error / 2.0);
    const double upper = boost::math::quantile(boost::math::complement(distribution, error / 2.0));
    return {std::sqrt(lower / redundancy), std::sqrt(upper / redundancy)};
}

double normalQuantile(double probability)
{
    return boost::math::quantile(boost::math::normal(), probability);
}

} // namespace levelling::quantiles
