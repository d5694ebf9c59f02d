#include "knobpicture.h"

#include <QPainter>

#include <iterator>
#include <vector>

namespace {

/// All pictures that any knob has.
std::vector<std::weak_ptr<KnobPicture>> &pictures()
{
    static std::vector<std::weak_ptr<KnobPicture>> all;
    return all;
}

} // namespace

std::shared_ptr<KnobPicture> KnobPicture::of(const KnobLook &look, const PlainGround &ground,
                                             const std::shared_ptr<KnobPicture> &current)
{
    if (current && current->shows(look, ground))
        return current;
    auto &all = pictures();
    std::erase_if(all, [](const auto &picture) { return picture.expired(); });
    for (const auto &picture : all)
        if (auto other = picture.lock(); other->shows(look, ground))
            return other;
    auto picture = std::make_shared<KnobPicture>(look, ground);
    all.push_back(picture);
    return picture;
}

KnobPicture::KnobPicture(const KnobLook &look, const PlainGround &ground)
    : m_look(look)
    , m_ground(ground)
    , m_image(paintedWhole(0))
    , m_arcs{{0, {}}}
    , m_none(m_arcs.begin())
    , m_current(m_none)
{ }

bool KnobPicture::shows(const KnobLook &look, const PlainGround &ground) const
{
    return m_look == look && m_ground.equals(ground);
}

const QImage &KnobPicture::withArc(int arcSpan)
{
    const auto known = m_arcs.find(arcSpan);
    goTo(known != m_arcs.end() ? known : learn(arcSpan));
    return m_image;
}

void KnobPicture::goTo(Arcs::iterator arc)
{
    while (arc->first < m_current->first)
        (++m_current)->second.toggle(m_image);
    while (arc->first > m_current->first)
        (m_current--)->second.toggle(m_image);
}

/// Paints an arc and keeps it between its neighbours.
KnobPicture::Arcs::iterator KnobPicture::learn(int arcSpan)
{
    if (sizeOfArcs() >= mostSizeOfArcs())
        forgetArcs();
    const QImage image = painted(arcSpan);
    const auto pictureOf = [this](Arcs::iterator arc) {
        goTo(arc);
        return m_image;
    };
    const auto after = m_arcs.upper_bound(arcSpan);
    PixelChange fromBefore;
    if (after != m_arcs.begin())
        fromBefore = {pictureOf(std::prev(after)), image};
    if (after != m_arcs.end())
        after->second = {image, pictureOf(after)};
    m_image = image;
    m_current = m_arcs.emplace_hint(after, arcSpan, fromBefore);
    return m_current;
}

void KnobPicture::forgetArcs()
{
    goTo(m_none);
    std::erase_if(m_arcs, [](const auto &arc) { return arc.first != 0; });
    m_none->second = {};
}

qsizetype KnobPicture::sizeOfArcs() const
{
    qsizetype bytes = 0;
    for (const auto &[span, change] : m_arcs)
        bytes += change.sizeInBytes();
    return bytes;
}

qsizetype KnobPicture::mostSizeOfArcs() const
{
    constexpr qsizetype base = 32768;
    return base + m_image.sizeInBytes();
}

QImage KnobPicture::painted(int arcSpan)
{
    if (!m_look.arcIsClearOfFace())
        return paintedWhole(arcSpan);
    goTo(m_none);
    QImage image = m_image;
    QPainter painter(&image);
    prepare(painter);
    m_look.paintArc(painter, arcSpan);
    painter.end();
    return image;
}

QImage KnobPicture::paintedWhole(int arcSpan) const
{
    QImage image = m_ground.canvas();
    QPainter painter(&image);
    prepare(painter);
    m_look.paint(painter, arcSpan);
    painter.end();
    return image;
}

void KnobPicture::prepare(QPainter &painter) const
{
    painter.setRenderHint(QPainter::Antialiasing);
    m_ground.prepare(painter);
}
