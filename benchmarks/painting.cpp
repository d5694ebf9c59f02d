#include "figures.h"

#include "knob.h"
#include "panelparts.h"

#include <QCoreApplication>
#include <QDial>
#include <QImage>
#include <QStyle>
#include <QStyleFactory>

#include <memory>
#include <random>

namespace {

/// A knob as the panels make it, and a dial of its size and range, side by side in a window.
class Pair
{
public:
    explicit Pair(Knob *knobOfPanel)
        : knob(knobOfPanel)
        , dial(new QDial)
    {
        const QSize size = knob->maximumSize();
        knob->setParent(&window);
        knob->setGeometry(QRect(QPoint(0, 0), size));
        dial->setParent(&window);
        dial->setStyle(m_fusion.get());
        dial->setGeometry(QRect(QPoint(size.width(), 0), size));
        dial->setRange(knob->minValue, knob->maxValue);
        window.resize(2 * size.width(), size.height());
        knob->setValue(-20);
        dial->setValue(-20);
    }

    /// The value after @p value; after the last one the first.
    int next(int value) const { return value < knob->maxValue ? value + 1 : knob->minValue; }
    /// Any value, in the same order in every run.
    int any(std::minstd_rand &random) const
    {
        return std::uniform_int_distribution(knob->minValue, knob->maxValue)(random);
    }

private:
    std::unique_ptr<QStyle> m_fusion{QStyleFactory::create(QStringLiteral("Fusion"))};

public:
    QWidget window;
    Knob *const knob; ///< the window's, as is the dial
    QDial *const dial;
};

void compareRepaints(const QString &name, const Effort &effort, Pair &pair,
                     const std::function<void(QWidget &)> &repaint)
{
    const Figure figure{.name = name, .floor = QStringLiteral("QDial in Fusion"), .goal = 0.5};
    const auto named = [&](const char *values) {
        Figure copy = figure;
        copy.name += QLatin1String(values);
        return copy;
    };
    compareRepeated(
        named(", same value"), effort, [&] { repaint(*pair.knob); }, [&] { repaint(*pair.dial); });

    const auto showNext = [&](auto &control, int value) {
        control.setValue(value);
        repaint(control);
    };
    // Both have shown every value before.
    for (int i = pair.knob->minValue; i <= pair.knob->maxValue; ++i) {
        showNext(*pair.knob, pair.next(pair.knob->value));
        showNext(*pair.dial, pair.next(pair.dial->value()));
    }
    compareRepeated(
        named(", changing value"), effort,
        [&] { showNext(*pair.knob, pair.next(pair.knob->value)); },
        [&] { showNext(*pair.dial, pair.next(pair.dial->value())); });
    std::minstd_rand ofKnob;
    std::minstd_rand ofDial;
    compareRepeated(
        named(", jumping value"), effort, [&] { showNext(*pair.knob, pair.any(ofKnob)); },
        [&] { showNext(*pair.dial, pair.any(ofDial)); });
}

void measureIntoImages(const QString &name, const Effort &effort, Pair &pair)
{
    for (const double ratio : {1.0, 1.5, 2.0}) {
        QImage image(pair.knob->size() * ratio, QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(ratio);
        image.fill(Qt::black);
        compareRepaints(QStringLiteral("%1 at pixel ratio %2").arg(name).arg(ratio), effort, pair,
                        [&](QWidget &widget) { widget.render(&image); });
    }
}

void measureInWindow(const QString &name, const Effort &effort, Pair &pair)
{
    pair.window.show();
    while (!pair.window.testAttribute(Qt::WA_Mapped))
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    const QString shown = name + QStringLiteral(" in a window");
    compareRepaints(shown, effort, pair, [](QWidget &widget) { widget.repaint(); });

    // Whatever is repainted, the ground below it is, too, and the display gets all of it.
    QWidget nothing(&pair.window);
    nothing.setGeometry(pair.dial->geometry());
    nothing.show();
    pair.dial->hide();
    compareRepeated(
        {.name = shown, .floor = QStringLiteral("a widget that paints nothing")}, effort,
        [&] { pair.knob->repaint(); }, [&] { nothing.repaint(); });
}

} // namespace

void measurePainting(const Effort &effort)
{
    const QString volume = QStringLiteral("Volume");
    for (Knob *const knob :
         {panelparts::volumeKnob(volume, nullptr), panelparts::phoneKnob(volume, nullptr)}) {
        Pair pair(knob);
        const QString name = QStringLiteral("knob, %1 × %1").arg(knob->width());
        measureIntoImages(name, effort, pair);
        measureInWindow(name, effort, pair);
    }
}
