#include "pixelchange.h"

#include <QImage>

#include <cstddef>
#include <span>

namespace {

constexpr quint32 longest =
    0xffff; // of what one run skips, and of what it changes; both are in one word

size_t pixelCount(const QImage &image)
{
    return static_cast<size_t>(image.sizeInBytes()) / sizeof(quint32);
}

std::span<const quint32> pixels(const QImage &image)
{
    return {reinterpret_cast<const quint32 *>(image.constBits()), pixelCount(image)};
}

quint32 run(size_t skipped, size_t changed)
{
    return static_cast<quint32>(skipped << 16 | changed);
}

} // namespace

PixelChange::PixelChange(const QImage &one, const QImage &other)
{
    const auto a = pixels(one);
    const auto b = pixels(other);
    size_t position = 0;
    for (size_t i = 0; i < a.size();) {
        if (a[i] == b[i] && i - position < longest) {
            ++i;
            continue;
        }
        const size_t start = i;
        const qsizetype head = m_runs.size();
        m_runs.append(0);
        for (; i < a.size() && a[i] != b[i] && i - start < longest; ++i)
            m_runs.append(a[i] ^ b[i]);
        m_runs[head] = run(start - position, i - start);
        position = i;
    }
    m_runs.squeeze();
}

void PixelChange::toggle(QImage &image) const
{
    auto *pixel = reinterpret_cast<quint32 *>(image.bits());
    for (auto word = m_runs.cbegin(); word != m_runs.cend();) {
        pixel += *word >> 16;
        for (quint32 count = *word++ & longest; count > 0; --count)
            *pixel++ ^= *word++;
    }
}

qsizetype PixelChange::sizeInBytes() const
{
    return m_runs.capacity() * static_cast<qsizetype>(sizeof(quint32));
}
