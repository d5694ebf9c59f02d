#include "panelmodel.h"

#include "models.h"

#include <cmath>

namespace {

/// What all models have at unity.
constexpr int commonEntries[] = {128,  161,  194,  227,  260,  293,  326,  359,  3072, 3105, 4096,
                                 4129, 4160, 4193, 5120, 5153, 5186, 5219, 5252, 5285, 5318, 5351};
constexpr int rx2Entries[] = {3200, 3233, 4224, 4257};
constexpr int rmEntries[] = {2050, 2083};
constexpr int firstGain = 8192;
constexpr int valueCount = 8288;

} // namespace

QString nameOf(PanelModel model)
{
    switch (model) {
    case PanelModel::Rx1:
        return "rx1";
    case PanelModel::Rx2:
        return "rx2";
    case PanelModel::Rm:
        break;
    }
    return "rm";
}

quint32 identifierOf(PanelModel model)
{
    switch (model) {
    case PanelModel::Rx1:
        return 1;
    case PanelModel::Rx2:
        return 2;
    case PanelModel::Rm:
        break;
    }
    return 15;
}

std::unique_ptr<QWidget> createPanel(PanelModel model)
{
    return std::unique_ptr<QWidget>(findModel(identifierOf(model))->createPanel());
}

QList<double> initialBlock(PanelModel model)
{
    QList<double> block(valueCount, 0.0);
    std::fill(block.begin() + firstGain, block.end(), 1.0);
    for (const int entry : commonEntries)
        block[entry] = 1.0;
    if (model == PanelModel::Rx2) {
        for (const int entry : rx2Entries)
            block[entry] = 1.0;
    }
    if (model == PanelModel::Rm) {
        for (const int entry : rmEntries)
            block[entry] = 1.0;
    }
    return block;
}

double gainOf(int db)
{
    return std::pow(10.0, db / 20.0);
}
