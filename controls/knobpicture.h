#ifndef KNOBPICTURE_H
#define KNOBPICTURE_H

#include "knoblook.h"
#include "pixelchange.h"
#include "plainground.h"

#include <QImage>

#include <map>
#include <memory>
#include <utility>

class QPainter;

/// A knob without its text, painted once on a plain ground and kept to be shown again. Knobs that
/// look alike share one; it goes with the last of them.
///
/// There is one image, with the arc of one value. What each way taken to another value changes in
/// it is kept as well, in no more than the image's memory and 32 KiB: enough for all the steps of a
/// panel's knob.
class KnobPicture
{
public:
    /// The picture of @p look on @p ground: @p current if it is that, one that another knob has, or
    /// a new one.
    static std::shared_ptr<KnobPicture> of(const KnobLook &look, const PlainGround &ground,
                                           const std::shared_ptr<KnobPicture> &current);

    KnobPicture(const KnobLook &look, const PlainGround &ground);

    /// The picture with a value arc of @p arcSpan, see KnobLook.
    const QImage &withArc(int arcSpan);

private:
    struct Step {
        PixelChange change;
        bool taken; // between m_arc and the present picture
    };

    bool shows(const KnobLook &look, const PlainGround &ground) const;
    qsizetype mostStepBytes() const;
    void paint(int arcSpan);
    void paintWhole(int arcSpan);
    void paintArc(int arcSpan);
    QImage withoutArc() const;
    void prepare(QPainter &painter) const;

    KnobLook m_look;
    PlainGround m_ground;
    QImage m_image;
    int m_arcSpan = 0; // in m_image
    PixelChange m_arc; // from no arc to the one painted last
    // By the arc spans that they lead between, the smaller first.
    std::map<std::pair<int, int>, Step> m_steps;
    qsizetype m_stepBytes = 0;
};

#endif
