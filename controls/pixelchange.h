#ifndef PIXELCHANGE_H
#define PIXELCHANGE_H

#include <QList>
#include <QtGlobal>

class QImage;

/// The pixels in which two pictures of one size and a 32 bit format differ; makes either of the
/// other. Of several changes it does not matter in which order they are made.
class PixelChange
{
public:
    /// No difference.
    PixelChange() = default;

    /// What turns @p one into @p other, and back.
    PixelChange(const QImage &one, const QImage &other);

    /// Makes one picture the other.
    void toggle(QImage &image) const;

    /// What it takes to keep it, in bytes.
    qsizetype sizeInBytes() const;

private:
    // How many pixels to skip, how many differ, and in what each of those does, by exclusive or;
    // again and again, in reading order.
    QList<quint32> m_runs;
};

#endif
