#include "knobpicture.h"

#include <QPainter>

#include <algorithm>
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
{
    paintWhole(m_arcSpan);
}

bool KnobPicture::shows(const KnobLook &look, const PlainGround &ground) const
{
    return m_look == look && m_ground.equals(ground);
}

const QImage &KnobPicture::withArc(int arcSpan)
{
    if (arcSpan == m_arcSpan)
        return m_image;
    const auto ends = std::minmax(arcSpan, m_arcSpan);
    if (const auto known = m_steps.find(ends); known != m_steps.end()) {
        Step &step = known->second;
        step.change.toggle(m_image);
        step.taken = !step.taken;
    } else {
        const QImage before = m_image;
        paint(arcSpan);
        if (m_stepBytes < mostStepBytes()) {
            const auto &step = m_steps.emplace(ends, Step{{before, m_image}, false}).first->second;
            m_stepBytes += step.change.sizeInBytes();
        }
    }
    m_arcSpan = arcSpan;
    return m_image;
}

qsizetype KnobPicture::mostStepBytes() const
{
    constexpr qsizetype base = 32768;
    return base + m_image.sizeInBytes();
}

void KnobPicture::paint(int arcSpan)
{
    if (m_look.arcIsClearOfFace())
        paintArc(arcSpan);
    else
        paintWhole(arcSpan);
}

void KnobPicture::paintWhole(int arcSpan)
{
    m_image = m_ground.canvas();
    QPainter painter(&m_image);
    prepare(painter);
    m_look.paint(painter, arcSpan);
}

void KnobPicture::paintArc(int arcSpan)
{
    const QImage bare = withoutArc();
    m_image = bare;
    QPainter painter(&m_image);
    prepare(painter);
    m_look.paintArc(painter, arcSpan);
    painter.end();
    m_arc = PixelChange(bare, m_image);
    for (auto &[ends, step] : m_steps)
        step.taken = false;
}

QImage KnobPicture::withoutArc() const
{
    QImage image = m_image;
    for (const auto &[ends, step] : m_steps)
        if (step.taken)
            step.change.toggle(image);
    m_arc.toggle(image);
    return image;
}

void KnobPicture::prepare(QPainter &painter) const
{
    painter.setRenderHint(QPainter::Antialiasing);
    m_ground.prepare(painter);
}
