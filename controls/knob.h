#ifndef KNOB_H
#define KNOB_H

#include <QColor>
#include <QRect>
#include <QString>
#include <QWidget>

#include <memory>
#include <optional>

class KnobPicture;
class QLineEdit;
class QPainter;
class ValueText;
struct KnobLook;

/// A rotary control for an integer level: a 270 degree arc around a shaded face, the value as text
/// in its middle.
///
/// Dragging and the wheel change the value by single steps, a double-click on the text edits it in
/// place, and Ctrl+click or a double-click beside the text returns to the minimum. Values are in
/// the unit named by suffix, dB unless changed.
///
/// The look and the range are plain members, meant to be set between construction and the first
/// paint; call update() after changing one later. Every operation keeps the value within
/// minValue..maxValue; with inverted bounds it is minValue. Meant to be square.
class Knob : public QWidget
{
    Q_OBJECT

public:
    /// A knob at -80 with the range -80..+6 dB.
    explicit Knob(QWidget *parent = nullptr);
    ~Knob() override;

    /// Sets the value to @p v, brought into range. Always emits valueChangedSig().
    void setValue(int v);

    int value = -80;                     ///< change it with setValue()
    int arcWidth = 7;                    ///< of track and value arc, and their inset; pixels
    bool roundCap = true;                ///< round ends of the arcs, otherwise square
    int maxValue = 6;                    ///< upper bound
    int minValue = -80;                  ///< lower bound
    QColor arcColor = QColor("#00ffff"); ///< of the value arc
    bool showText = true;                ///< paint the value as text and let it be edited
    QString fontFamily = QStringLiteral("Segoe UI"); ///< of the value text
    int fontSize = 12;                               ///< points
    QString suffix = QStringLiteral("dB"); ///< unit, appended to the number without a space
    QColor textColor = QColor("#ff79c6");  ///< of the value text
    bool showTrack = true;                 ///< paint the arc's background
    QColor trackColor = QColor("#44475a"); ///< of the track arc
    double faceRatio = 0.8;                ///< the face's diameter in widths of the arc
    QColor accentColor;                    ///< for the owner's use; the knob ignores it
    int lastY = 0;                         ///< pointer position at the previous drag step
    int lastX = 0;                         ///< likewise
    bool hovered = false;                  ///< the pointer is over the knob
    int displayOffset = 0;                 ///< added to the number painted, unless 0, and edited
    QLineEdit *editor;                     ///< visible only while the number is edited
    QRect textRect;                        ///< of the value text, as last painted

public slots:
    /// Takes the editor's whole number, with or without suffix, as the new value and closes the
    /// editor. Any other text keeps the value, less displayOffset.
    void finishEdit();

signals:
    /// Follows every operation that sets the value, also when it stayed the same.
    void valueChangedSig(int value);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    int clamped(qint64 v) const;
    void commit(qint64 v);
    void stepUp();
    void stepDown();

    void startEdit();
    void closeEditor();
    std::optional<qint64> typedNumber() const;
    qint64 offsetValue() const;

    int arcSpan() const;
    QString valueText() const;
    KnobLook look() const;
    void paintLook(QPainter &painter);
    void paintText(QPainter &painter);

    std::shared_ptr<KnobPicture> m_picture; // as last painted on a plain ground
    std::unique_ptr<ValueText> m_text;
};

#endif
