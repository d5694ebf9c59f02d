#ifndef KNOBPICTURE_H
#define KNOBPICTURE_H

#include "knoblook.h"
#include "pixelchange.h"
#include "plainground.h"

#include <QImage>

#include <functional>
#include <map>
#include <memory>

class QPainter;

/// A knob without its text, painted once on a plain ground and kept to be shown again. Knobs that
/// look alike share one; it goes with the last of them.
///
/// There is one image, with the arc of one value. Of every other value shown before is kept what
/// its arc changes in the picture of the next smaller one, so that the image is led from any of
/// them to any other, step by step. That takes about the image's memory and 32 KiB at most: enough
/// for all values of a panel's knob.
class KnobPicture
{
public:
    /// The picture of @p look on @p ground: @p current if it is that, one that another knob has, or
    /// a new one.
    static std::shared_ptr<KnobPicture> of(const KnobLook &look, const PlainGround &ground,
                                           const std::shared_ptr<KnobPicture> &current);

    KnobPicture(const KnobLook &look, const PlainGround &ground);

    Q_DISABLE_COPY_MOVE(KnobPicture)

    /// The picture with a value arc of @p arcSpan, see KnobLook.
    const QImage &withArc(int arcSpan);

    /// What the arcs that it knows take beside the image, in bytes.
    qsizetype sizeOfArcs() const;
    /// Beyond this it forgets them all. The last one may exceed it.
    qsizetype mostSizeOfArcs() const;

private:
    // By span: what makes the picture of it out of that of the span before.
    using Arcs = std::map<int, PixelChange, std::greater<>>;

    bool shows(const KnobLook &look, const PlainGround &ground) const;
    void goTo(Arcs::iterator arc);
    Arcs::iterator learn(int arcSpan);
    void forgetArcs();
    QImage painted(int arcSpan);
    QImage paintedWhole(int arcSpan) const;
    void prepare(QPainter &painter) const;

    KnobLook m_look;
    PlainGround m_ground;
    QImage m_image;
    Arcs m_arcs;
    Arcs::iterator m_none;    // no arc, of which all others are painted
    Arcs::iterator m_current; // the one in m_image
};

#endif
