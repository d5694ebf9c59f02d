#ifndef MODELS_H
#define MODELS_H

#include <QtGlobal>

class QWidget;

/// A model of the family. Its panel's class has its name in lower case; from that follow the name
/// in the log and the settings file, see DevicePanel.
struct DeviceModel {
    quint32 pid;               ///< VESMORA_PID_..., by which a device says what it is
    const char *name;          ///< as people read it, e.g. in the window's title: "RX1"
    QWidget *(*createPanel)(); ///< a new panel, connected to the device; belongs to the caller
};

/// The model whose devices answer @p pid; null when there is none.
const DeviceModel *findModel(quint32 pid);

#endif
