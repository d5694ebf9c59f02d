#ifndef COMPARISON_H
#define COMPARISON_H

#include <QList>
#include <QString>

#include <functional>

/// What is compared: the product with the least that the same work can cost.
struct Figure {
    QString name;
    QString floor;   ///< what the product is compared with
    double goal = 0; ///< the ratio that the product is to stay at or below; 0 for none
};

/// How much of the machine's time a figure may take.
struct Effort {
    int pairs = 21;       ///< of measurements: the product and its floor, by turns
    double batch = 10000; ///< processor time that repeated work takes in one measurement, about
};
/// Enough to see that all figures can be measured.
inline constexpr Effort quickEffort{.pairs = 3, .batch = 2000};

/// Microseconds that work took.
struct Cost {
    double wall = 0;
    double processor = 0; ///< of this process alone
};
Cost operator+(const Cost &first, const Cost &second);
Cost operator*(const Cost &cost, double factor);
Cost operator/(const Cost &cost, double divisor);

using Work = std::function<void()>;

/// Does it and measures.
Cost costOf(const Work &work);

/// Has measurements appended to a file; until then there is nowhere to report to. Standard output
/// belongs to the product.
void reportTo(const QString &file);

/// Appends a measurement as a line of JSON, for vesmora-bench-table. The numbers of both sides
/// belong together pair by pair.
void report(const Figure &figure, const QString &measure, const QString &unit,
            const QList<double> &product, const QList<double> &floor);

/// Reports both times of costs that were measured pair by pair.
void report(const Figure &figure, const QList<Cost> &product, const QList<Cost> &floor);

/// Measures both sides by turns, after a first time that does not count, and reports both times.
void compare(const Figure &figure, const Effort &effort, const std::function<Cost()> &product,
             const std::function<Cost()> &floor);

/// The same for work that is too short to be measured once: a measurement repeats it, after
/// @p before, which does not count.
void compareRepeated(const Figure &figure, const Effort &effort, const Work &product,
                     const Work &floor, const Work &before = {});

/// Ends the program with @p reason unless @p condition holds: a figure that cannot be measured is
/// an error.
void require(bool condition, const QString &reason);

#endif
