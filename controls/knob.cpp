#include "knob.h"

#include "knoblook.h"
#include "knobpicture.h"
#include "plainground.h"
#include "valuetext.h"
#include "wholenumber.h"

#include <QEnterEvent>
#include <QGuiApplication>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QSignalBlocker>
#include <QWheelEvent>

#include <algorithm>

namespace {

constexpr double editorMargin = 0.025; // of the text's width and height, on every side

int truncated(double v)
{
    return static_cast<int>(v);
}

} // namespace

Knob::Knob(QWidget *parent)
    : QWidget(parent)
    , editor(new QLineEdit(this))
    , m_text(std::make_unique<ValueText>())
{
    editor->hide();
    connect(editor, &QLineEdit::editingFinished, this, &Knob::finishEdit);
    connect(qGuiApp, &QGuiApplication::fontDatabaseChanged, this, [this] { m_text->forget(); });
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

int Knob::arcSpan() const
{
    return KnobLook::arcSpan(static_cast<double>(value) - minValue,
                             static_cast<double>(maxValue) - minValue);
}

QString Knob::valueText() const
{
    const qint64 shown = value == 0 ? 0 : offsetValue();
    return QString::number(shown) + suffix;
}

KnobLook Knob::look() const
{
    return {size(), arcWidth, roundCap, showTrack, trackColor, arcColor, faceRatio};
}

void Knob::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintLook(painter);
    if (showText)
        paintText(painter);
}

/// Shows the picture that is kept of us. On a ground that is not plain there is none.
void Knob::paintLook(QPainter &painter)
{
    const KnobLook ours = look();
    const auto ground = ours.fitsItsSize() ? PlainGround::under(painter, size()) : std::nullopt;
    if (!ground) {
        ours.paint(painter, arcSpan());
        return;
    }
    m_picture = KnobPicture::of(ours, *ground, m_picture);
    ground->show(painter, m_picture->withArc(arcSpan()));
}

void Knob::paintText(QPainter &painter)
{
    painter.setFont(m_text->font(fontFamily, fontSize));
    painter.setPen(textColor);
    textRect = m_text->paint(painter, rect(), valueText());
}
