#ifndef PANELMODEL_H
#define PANELMODEL_H

#include <QList>
#include <QString>
#include <QWidget>

#include <memory>

/// The models that have a panel.
enum class PanelModel { Rx1, Rx2, Rm };

inline constexpr PanelModel allPanelModels[] = {PanelModel::Rx1, PanelModel::Rx2, PanelModel::Rm};

/// As in the names of classes and files, e.g. "rx1".
QString nameOf(PanelModel model);
/// The product identifier.
quint32 identifierOf(PanelModel model);
std::unique_ptr<QWidget> createPanel(PanelModel model);

/// The 8288 values of the mixer block that a panel starts with, before any control writes to it.
QList<double> initialBlock(PanelModel model);

/// The linear gain of @p db, without any limits.
double gainOf(int db);

#endif
