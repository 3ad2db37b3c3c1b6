#include "zul/scaler/projection.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace zul {
namespace {

constexpr int kUnknowns = 8;
using TEquation = double[kUnknowns + 1];  ///< coefficients and right side

/// With coordinates of about 1, anything smaller is rounding error.
constexpr double kLeastPivot = 1e-10;

/// Four points moved and scaled to lie about the origin at a distance of about 1: so the equations are well
/// conditioned, and the origin, where the weight is set to 1, lies between the points.
struct TNormalized {
    explicit TNormalized(const TDoublePoint (&given)[4]) {
        for (const TDoublePoint& point : given) {
            middle.X += point.X / 4.0;
            middle.Y += point.Y / 4.0;
        }
        for (const TDoublePoint& point : given)
            size = std::max({size, std::abs(point.X - middle.X), std::abs(point.Y - middle.Y)});
        for (int k = 0; k < 4; ++k)
            points[k] = {(given[k].X - middle.X) / size, (given[k].Y - middle.Y) / size};
    }

    TDoublePoint points[4] = {};
    TDoublePoint middle{0.0, 0.0};
    double size = 0.0;
};

/// Gaussian elimination with partial pivoting. NaN is no pivot.
bool Solve(TEquation (&rows)[kUnknowns]) {
    for (int column = 0; column < kUnknowns; ++column) {
        int best = column;
        for (int row = column + 1; row < kUnknowns; ++row) {
            if (std::abs(rows[row][column]) > std::abs(rows[best][column])) best = row;
        }
        if (!(std::abs(rows[best][column]) > kLeastPivot)) return false;
        std::swap(rows[best], rows[column]);
        for (int row = 0; row < kUnknowns; ++row) {
            if (row == column) continue;
            const double factor = rows[row][column] / rows[column][column];
            for (int k = column; k <= kUnknowns; ++k)
                rows[row][k] -= factor * rows[column][k];
        }
    }
    for (int row = 0; row < kUnknowns; ++row)
        rows[row][kUnknowns] /= rows[row][row];
    return true;
}

bool HasLineOfThree(const TDoublePoint (&points)[4]) {
    for (int left = 0; left < 4; ++left) {
        const TDoublePoint& p = points[(left + 1) % 4];
        const TDoublePoint& q = points[(left + 2) % 4];
        const TDoublePoint& r = points[(left + 3) % 4];
        const double twiceArea = (q.X - p.X) * (r.Y - p.Y) - (r.X - p.X) * (q.Y - p.Y);
        if (!(std::abs(twiceArea) > kLeastPivot)) return true;
    }
    return false;
}

}  // namespace

bool FindProjection(const TDoublePoint (&from)[4], const TDoublePoint (&to)[4], TProjection& projection) {
    const TNormalized source(from);
    const TNormalized target(to);
    if (HasLineOfThree(source.points) || HasLineOfThree(target.points)) return false;

    // X (g x + h y + 1) = a x + b y + c, and the same for Y, for each pair of points.
    TEquation rows[kUnknowns] = {};
    for (int k = 0; k < 4; ++k) {
        const auto [x, y] = source.points[k];
        const auto [toX, toY] = target.points[k];
        const TEquation across = {x, y, 1.0, 0.0, 0.0, 0.0, -toX * x, -toX * y, toX};
        const TEquation along = {0.0, 0.0, 0.0, x, y, 1.0, -toY * x, -toY * y, toY};
        std::copy(across, across + kUnknowns + 1, rows[2 * k]);
        std::copy(along, along + kUnknowns + 1, rows[2 * k + 1]);
    }
    if (!Solve(rows)) return false;

    const auto unknown = [&rows](int k) { return rows[k][kUnknowns]; };
    const double s = source.size;
    const TDoublePoint middle = source.middle;
    const double g = unknown(6) / s;
    const double h = unknown(7) / s;
    const double i = 1.0 - (g * middle.X + h * middle.Y);
    const auto row = [&](int first, double targetMiddle, double& x, double& y, double& constant) {
        x = unknown(first) / s * target.size;
        y = unknown(first + 1) / s * target.size;
        constant = unknown(first + 2) * target.size - (x * middle.X + y * middle.Y) + targetMiddle * i;
        x += targetMiddle * g;
        y += targetMiddle * h;
    };
    projection.g = g;
    projection.h = h;
    projection.i = i;
    row(0, target.middle.X, projection.a, projection.b, projection.c);
    row(3, target.middle.Y, projection.d, projection.e, projection.f);
    return true;
}

}  // namespace zul
