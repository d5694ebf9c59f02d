#include "models.h"

#include "rm.h"
#include "rx1.h"
#include "rx2.h"
#include "vesmoracontract.h"

#include <algorithm>
#include <iterator>

namespace {

template <typename Panel> QWidget *create()
{
    return new Panel;
}

constexpr DeviceModel models[] = {
    {.pid = VESMORA_PID_RX1, .name = "RX1", .createPanel = create<rx1>},
    {.pid = VESMORA_PID_RX2, .name = "RX2", .createPanel = create<rx2>},
    {.pid = VESMORA_PID_RM, .name = "RM", .createPanel = create<rm>},
};

} // namespace

const DeviceModel *findModel(quint32 pid)
{
    const auto *model =
        std::find_if(std::begin(models), std::end(models),
                     [pid](const DeviceModel &candidate) { return candidate.pid == pid; });
    return model == std::end(models) ? nullptr : model;
}
