#include "knob.h"

#include "wholenumber.h"

#include <QBrush>
#include <QConicalGradient>
#include <QEnterEvent>
#include <QFont>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QPen>
#include <QRadialGradient>
#include <QSignalBlocker>
#include <QWheelEvent>

#include <algorithm>

namespace {

// Degrees as painted, counter-clockwise from three o'clock; QPainter counts in sixteenths.
constexpr int startAngle = 225;
constexpr int fullSweep = 270;
constexpr int unitsPerDegree = 16;

constexpr double editorMargin = 0.025; // of the text's width and height, on every side

int truncated(double v)
{
    return static_cast<int>(v);
}

} // namespace

Knob::Knob(QWidget *parent)
    : QWidget(parent)
    , editor(new QLineEdit(this))
{
    editor->hide();
    connect(editor, &QLineEdit::editingFinished, this, &Knob::finishEdit);
}

Knob::~Knob()
{
    // QWidget's destructor takes the focus from an open editor, which must not commit to us then.
    editor->disconnect(this);
}

void Knob::setValue(int v)
{
    commit(v);
}

int Knob::clamped(qint64 v) const
{
    if (v > maxValue)
        v = maxValue;
    if (v < minValue)
        v = minValue;
    return static_cast<int>(v);
}

void Knob::commit(qint64 v)
{
    value = clamped(v);
    emit valueChangedSig(value);
    update();
}

void Knob::stepUp()
{
    if (value < maxValue)
        ++value;
}

void Knob::stepDown()
{
    if (value > minValue)
        --value;
}

void Knob::mousePressEvent(QMouseEvent *event)
{
    if (event->modifiers() & Qt::ControlModifier)
        commit(minValue);
}

void Knob::mouseMoveEvent(QMouseEvent *event)
{
    if (!(event->buttons() & Qt::LeftButton))
        return;

    const QPoint position = event->position().toPoint();
    if (position.y() < lastY)
        stepUp();
    else if (position.y() > lastY)
        stepDown();
    if (position.x() > lastX)
        stepUp();
    else if (position.x() < lastX)
        stepDown();

    lastY = position.y();
    lastX = position.x();
    commit(value);
}

void Knob::wheelEvent(QWheelEvent *event)
{
    if (event->angleDelta().y() >= 1)
        stepUp();
    else
        stepDown();
    commit(value);
}

void Knob::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (showText && textRect.contains(event->position().toPoint()))
        startEdit();
    else
        commit(minValue);
}

void Knob::enterEvent(QEnterEvent *)
{
    hovered = true;
}

void Knob::leaveEvent(QEvent *)
{
    hovered = false;
}

void Knob::startEdit()
{
    const int dx = truncated(textRect.width() * editorMargin);
    const int dy = truncated(textRect.height() * editorMargin);
    editor->setText(QString::number(offsetValue()));
    editor->setGeometry(textRect.adjusted(dx, dy, -dx, -dy));
    editor->show();
    editor->setFocus(Qt::OtherFocusReason);
    editor->selectAll();
}

void Knob::closeEditor()
{
    // Hiding takes the focus away, which would finish the same edit a second time.
    const QSignalBlocker blocker(editor);
    editor->hide();
}

std::optional<qint64> Knob::typedNumber() const
{
    QString text = editor->text();
    if (text.endsWith(suffix))
        text.chop(suffix.size());
    return wholeNumber(text);
}

void Knob::finishEdit()
{
    const qint64 shown = typedNumber().value_or(value);
    closeEditor();
    // Out of every int's range with any offset, yet with room to subtract it.
    constexpr qint64 farthest = qint64{1} << 32;
    commit(std::clamp(shown, -farthest, farthest) - displayOffset);
}

/// The value as the user reads and types it, which may be beyond an int.
qint64 Knob::offsetValue() const
{
    return qint64{displayOffset} + value;
}

double Knob::sweepAngle() const
{
    const double range = static_cast<double>(maxValue) - minValue;
    if (range == 0.0)
        return 0.0;
    return (static_cast<double>(value) - minValue) * fullSweep / range;
}

QString Knob::valueText() const
{
    const qint64 shown = value == 0 ? 0 : offsetValue();
    return QString::number(shown) + suffix;
}

QRect Knob::arcRect() const
{
    return rect().adjusted(arcWidth, arcWidth, -arcWidth, -arcWidth);
}

QPen Knob::arcPen(const QBrush &brush) const
{
    return QPen(brush, arcWidth, Qt::SolidLine, roundCap ? Qt::RoundCap : Qt::SquareCap);
}

QRadialGradient Knob::cornerLight(double reach, const QColor &shade) const
{
    QRadialGradient light(0, 0, arcRect().width() * reach);
    light.setColorAt(0, QColor(255, 255, 255));
    light.setColorAt(1, shade);
    return light;
}

void Knob::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(QFont(fontFamily, fontSize));
    painter.setPen(Qt::NoPen);
    if (showTrack)
        paintTrack(painter);
    paintValueArc(painter);
    paintFaceShadow(painter);
    paintFaceHollow(painter);
    paintFace(painter);
    if (showText)
        paintText(painter);
}

void Knob::paintTrack(QPainter &painter) const
{
    painter.setPen(arcPen(trackColor));
    painter.drawArc(arcRect(), startAngle * unitsPerDegree, -fullSweep * unitsPerDegree);
}

void Knob::paintValueArc(QPainter &painter) const
{
    QConicalGradient gradient(QPoint(width() / 2, height() / 2), 270);
    gradient.setColorAt(0, arcColor);
    gradient.setColorAt(1, arcColor);
    painter.setPen(arcPen(gradient));
    painter.drawArc(arcRect(), startAngle * unitsPerDegree,
                    truncated(sweepAngle() * -unitsPerDegree));
}

void Knob::paintFaceShadow(QPainter &painter) const
{
    paintDisc(painter, cornerLight(0.6, QColor(20, 20, 20)), 1.0, 0.02);
}

/// Invisible: a place in the sequence for a rim between shadow and face.
void Knob::paintFaceHollow(QPainter &painter) const
{
    paintDisc(painter, QColor(Qt::transparent), 0.8, 0.1);
}

void Knob::paintFace(QPainter &painter) const
{
    paintDisc(painter, cornerLight(0.5, QColor(30, 30, 30)), 1.0, 0.0);
}

/// A disc of @p scale times the face's diameter, moved right and down by @p shift of that diameter.
void Knob::paintDisc(QPainter &painter, const QBrush &brush, double scale, double shift) const
{
    const int extent = arcRect().width();
    const int diameter = truncated(faceRatio * extent * scale);
    const int inset =
        truncated((1 - faceRatio) * extent * 0.5 + faceRatio * extent * shift) + arcWidth;
    painter.setPen(QPen(brush, 0));
    painter.setBrush(brush);
    painter.drawEllipse(inset, inset, diameter, diameter);
}

void Knob::paintText(QPainter &painter)
{
    const QString text = valueText();
    constexpr int centred = Qt::AlignHCenter | Qt::AlignVCenter;
    painter.setPen(textColor);
    textRect = painter.boundingRect(rect(), centred, text);
    painter.drawText(textRect, centred, text);
}
