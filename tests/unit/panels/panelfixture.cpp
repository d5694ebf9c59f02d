#include "panelfixture.h"

#include "layouttext.h"
#include "models.h"

#include <QApplication>
#include <QLabel>
#include <QTimer>
#include <QWheelEvent>

namespace {

template <typename Control> Control &found(const QWidget &panel, const QString &name)
{
    auto *control = panel.findChild<Control *>(name);
    if (!control)
        qFatal("There is no %s called %s", Control::staticMetaObject.className(), qPrintable(name));
    return *control;
}

} // namespace

PanelFixture::PanelFixture(const QString &model)
    : m_initialModel(panelModel(model))
    , m_model(m_initialModel)
{ }

void PanelFixture::init()
{
    begin(m_initialModel);
}

void PanelFixture::cleanup()
{
    m_panel.reset();
    stopObserving();
    QCOMPARE(openHandles(), 0u);
}

void PanelFixture::begin(const PanelModel &model)
{
    m_panel.reset();
    m_model = model;
    observe();
    plug(model.identifier());
}

void PanelFixture::build()
{
    m_panel = createPanel(m_model);
}

void PanelFixture::buildQuietly()
{
    build();
    takeSent();
    takeLog();
}

Knob &PanelFixture::knob(const QString &name)
{
    return found<Knob>(*m_panel, name);
}

Button &PanelFixture::button(const QString &name)
{
    return found<Button>(*m_panel, name);
}

void PanelFixture::click(const QString &name)
{
    QTest::mouseClick(&button(name), Qt::LeftButton);
}

void PanelFixture::turn(const QString &name, int notches)
{
    Knob &target = knob(name);
    const QPoint notch(0, notches > 0 ? 120 : -120);
    for (int i = 0; i < qAbs(notches); ++i) {
        QWheelEvent event(target.rect().center(), target.rect().center(), QPoint(), notch,
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&target, &event);
    }
}

void PanelFixture::tick()
{
    auto *timer = m_panel->findChild<QTimer *>();
    if (!timer)
        qFatal("The panel has no timer");
    QMetaObject::invokeMethod(timer, "timeout", Qt::DirectConnection);
}

QStringList PanelFixture::meterTexts()
{
    QStringList texts;
    const QList<QWidget *> widgets = widgetsInOrder(*m_panel->layout());
    for (const QWidget *widget : widgets) {
        const auto *label = qobject_cast<const QLabel *>(widget);
        if (label && label->styleSheet() == "color: #888888; font-size: 8px;")
            texts << label->text();
    }
    return texts;
}

void PanelFixture::compare(ExpectedPanel &expected)
{
    QCOMPARE(takeSent(), expected.takeRequests());
    QCOMPARE(takeLog(), expected.takeLog());
    QCOMPARE(saved(), expected.saved());
    QCOMPARE(simulator().mixerBlock(), expected.deviceBlock());
    if (const auto *instrument = m_panel->findChild<Button *>("MicInstr"))
        QCOMPARE(instrument->text(), expected.instrumentText());
    QCOMPARE(simulator().state().faults, 0u);
}

void addModelRows()
{
    QTest::addColumn<PanelModel>("model");
    for (const PanelModel &model : allPanelModels())
        QTest::newRow(qPrintable(model.name)) << model;
}

std::unique_ptr<QWidget> createPanel(const PanelModel &model)
{
    const DeviceModel *found = findModel(model.identifier());
    if (!found)
        qFatal("The product knows no model %s", qPrintable(model.name));
    return std::unique_ptr<QWidget>(found->createPanel());
}

void setControl(const QWidget &panel, const PanelControl &control, int value)
{
    if (control.isKnob())
        found<Knob>(panel, control.name).setValue(value);
    else
        found<Button>(panel, control.name).setSelected(value);
}

QStringList twice(const QString &line)
{
    return {line, line};
}
