#include "figures.h"

#include "livepanel.h"

#include <QCoreApplication>
#include <QDebug>
#include <QGraphicsDropShadowEffect>
#include <QMouseEvent>
#include <QPushButton>

namespace {

/// A switch that changes its look, and does nothing else.
class StyledSwitch
{
public:
    explicit StyledSwitch(QWidget *panel)
        : m_button(QStringLiteral("48V"), panel)
        , m_glow(new QGraphicsDropShadowEffect)
    {
        m_button.setGraphicsEffect(m_glow);
        m_button.show();
        change();
    }

    void change()
    {
        m_on = !m_on;
        m_button.setStyleSheet(m_on ? m_styleOn : m_styleOff);
        m_glow->setEnabled(m_on);
    }

private:
    const QString m_styleOn = QStringLiteral(
        "QPushButton {   color: #ff1111;   background-color: #1b1e23;   border-radius: 3px;}"
        "QPushButton:pressed {   background-color: #1b1e23;}");
    const QString m_styleOff = QStringLiteral(
        "QPushButton {   color: #8a95aa;   background-color: #1b1e23;   border-radius: 3px;}"
        "QPushButton:pressed {   background-color: #1b1e23;}");
    QPushButton m_button;
    QGraphicsDropShadowEffect *m_glow; // the button's
    bool m_on = false;
};

void compareClick(const QString &name, const Effort &effort, LivePanel &panel, Button &button,
                  const std::function<void(bool logs)> &floor)
{
    const QPointF middle(button.rect().center());
    QMouseEvent press(QEvent::MouseButtonPress, middle, button.mapToGlobal(middle), Qt::LeftButton,
                      Qt::LeftButton, Qt::NoModifier);
    StyledSwitch look(button.parentWidget());
    panel.compareEvent(
        name, effort, [&] { QCoreApplication::sendEvent(&button, &press); }, floor,
        [&] { look.change(); });
}

// The product acts on both emissions of a click, so the floors do everything twice.

void measurePhantom(const Effort &effort, LivePanel &panel)
{
    Button &button = panel.button("Mic48V");
    BareInterface &bare = panel.bare();
    const QString key = QStringLiteral("Button/Mic48VIsChecked");
    CommandPacket packet{};
    packet.kind = VESMORA_PACKET_KIND;
    packet.opcode = VESMORA_OPCODE_MIC_48V;
    packet.channel = 1;
    bool on = false;
    const auto floor = [&](bool logs) {
        on = !on;
        for (int emission = 0; emission < 2; ++emission) {
            if (logs)
                qDebug() << "Mic 48V Button Clicked" << on;
            packet.argument = on;
            bare.send(packet);
            if (logs)
                qDebug() << "Mic 48V switched for channel 1.";
            bare.save(key, on);
        }
    };
    compareClick(QStringLiteral("click on phantom power"), effort, panel, button, floor);
}

void measureMute(const Effort &effort, LivePanel &panel)
{
    Button &button = panel.button("HeadphoneMute");
    BareInterface &bare = panel.bare();
    const QString volumeKey = QStringLiteral("Dial/HeadphoneValue");
    const QString muteKey = QStringLiteral("Button/HeadphoneMuteIsChecked");
    MixerBlock block = panel.deviceBlock();
    const double level = block.outputGains[0];
    bool on = false;
    const auto floor = [&](bool logs) {
        on = !on;
        for (int emission = 0; emission < 2; ++emission) {
            block.outputGains[0] = block.outputGains[1] = on ? 0 : level;
            bare.send(block);
            if (logs)
                qDebug() << "Headphone volume set to:" << block.outputGains[0];
            bare.save(volumeKey, LivePanel::volume);
            if (logs)
                qDebug() << (on ? "Headphone Mute Button Clicked: Mute ON"
                                : "Headphone Mute Button Clicked: Mute OFF");
            bare.save(muteKey, on);
        }
    };
    compareClick(QStringLiteral("click on mute"), effort, panel, button, floor);
}

} // namespace

void measureClick(const Effort &effort)
{
    LivePanel panel;
    measurePhantom(effort, panel);
    measureMute(effort, panel);
}
