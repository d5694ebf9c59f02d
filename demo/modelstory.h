#ifndef MODELSTORY_H
#define MODELSTORY_H

#include <QList>
#include <QString>
#include <QVariant>

#include <optional>

/// One control that the demo uses, and what must come of it.
struct ControlUse {
    enum Kind { Knob, Button };

    Kind kind = Knob;
    int index = 0;   ///< in PanelPicture's order
    int notches = 0; ///< of the wheel; knobs only
    QString name;    ///< for people, and in the picture's file name
    QString key;     ///< in the model's INI file
    QVariant value;  ///< what the key then holds
    QString sent;    ///< what the interface receives then, and when it is plugged in again
};

/// What the demo does with a model.
struct ModelStory {
    QString model; ///< as the simulator calls it; also its INI file's name
    QString title; ///< how its window's title begins
    int knobs = 0;
    int buttons = 0;
    QList<ControlUse> uses;

    QString settingsFile() const { return model + QStringLiteral(".ini"); }
};

/// The story of "rx1", "rx2" or "rm"; nothing for other names.
std::optional<ModelStory> modelStory(const QString &model);

#endif
