#ifndef PANELFIXTURE_H
#define PANELFIXTURE_H

#include "button.h"
#include "expectedpanel.h"
#include "knob.h"
#include "observed.h"

#include <QObject>
#include <QTest>
#include <QWidget>

#include <memory>

/// A test of panels against the simulated interface.
///
/// Each test function begins with the model plugged in, its record and the data folder empty and no
/// panel; in the end the panel is deleted and must have closed what it opened.
class PanelFixture : public QObject, protected Observed
{
    Q_OBJECT

protected:
    explicit PanelFixture(const QString &model);

    const PanelModel &model() const { return m_model; }

    /// Begins anew with @p model, as a test function does.
    void begin(const PanelModel &model);

    /// Constructs the model's panel.
    void build();
    /// Does so and forgets what it sent and logged meanwhile.
    void buildQuietly();
    QWidget &panel() { return *m_panel; }
    void deletePanel() { m_panel.reset(); }
    /// For who wants to delete it in another way.
    QWidget *releasePanel() { return m_panel.release(); }

    /// Fatal when there is no such control.
    Knob &knob(const QString &name);
    Button &button(const QString &name);
    /// Presses and releases the left mouse button.
    void click(const QString &name);
    /// Turns the wheel over a knob by @p notches, up when positive.
    void turn(const QString &name, int notches);
    /// Lets the meter timer fire once.
    void tick();
    /// The meters' texts from left to right, top to bottom.
    QStringList meterTexts();

    /// The panel's settings file.
    IniFile settings() const { return iniFile(m_model.file()); }
    QString settingsFile() const { return settings().name(); }
    QStringList savedLines() const { return settings().lines(); }
    /// Its values by "section/name".
    QMap<QString, QString> saved() const { return settings().values(); }
    void writeSettings(const QByteArray &text) { QVERIFY(settings().write(text)); }

    /// Compares everything that can be seen from outside since the last look.
    void compare(ExpectedPanel &expected);

private slots:
    void init();
    void cleanup();

private:
    const PanelModel m_initialModel;
    PanelModel m_model;
    std::unique_ptr<QWidget> m_panel;
};

/// Adds a column "model" and a row for each.
void addModelRows();

/// The product's panel of @p model.
std::unique_ptr<QWidget> createPanel(const PanelModel &model);
/// Sets a control of @p panel by its own operation, with one emission.
void setControl(const QWidget &panel, const PanelControl &control, int value);

/// @p line twice: what a click does, as both its emissions are acted on.
QStringList twice(const QString &line);

#endif
