// Arithmetic of points and directions in space.
#pragma once

#include "tools/tuvo/model/Model.h"

#include <cmath>

namespace tool {

inline Point operator+(const Point& a, const Point& b)
{
    return {a[0] + b[0], a[1] + b[1], a[2] + b[2]};
}

inline Point operator-(const Point& a, const Point& b)
{
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

inline Point operator*(const Point& a, double factor)
{
    return {a[0] * factor, a[1] * factor, a[2] * factor};
}

inline double Dot(const Point& a, const Point& b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

inline Point Cross(const Point& a, const Point& b)
{
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

inline double Length(const Point& a)
{
    return std::hypot(a[0], a[1], a[2]);
}

}  // namespace tool
