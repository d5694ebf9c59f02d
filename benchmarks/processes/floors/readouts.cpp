// A window with two readouts that asks the device, by a timer each, whether it is still there and
// for its levels, as the control panel does while an RX1 is shown and nobody touches it.

#include "vesmoracontract.h"

#include <QApplication>
#include <QLabel>
#include <QTimer>
#include <QVBoxLayout>

#include <cmath>
#include <limits>

#include <windows.h>

namespace {

HANDLE openDevice()
{
    return CreateFileW(L"\\\\.\\" VESMORA_BUS_NAME "0", GENERIC_READ | GENERIC_WRITE,
                       FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr);
}

QLabel *addReadout(QWidget &window)
{
    auto *readout = new QLabel(QStringLiteral("-160 dB"), &window);
    readout->setAlignment(Qt::AlignCenter);
    readout->setStyleSheet(QStringLiteral("color: #888888; font-size: 8px;"));
    window.layout()->addWidget(readout);
    return readout;
}

QString text(double peak)
{
    const double db = 20 * std::log10(std::abs(peak) / std::numeric_limits<qint32>::max());
    return QString::number(db, 'f', 1) + QStringLiteral(" dB");
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QWidget window;
    window.setWindowTitle(QStringLiteral("Vesmora readouts"));
    window.setLayout(new QVBoxLayout);
    QLabel *const microphone = addReadout(window);
    QLabel *const phone = addReadout(window);

    const HANDLE device = openDevice();
    QTimer presence;
    QObject::connect(&presence, &QTimer::timeout, &window, [device] {
        quint32 identifier = 0;
        DWORD returned = 0;
        DeviceIoControl(device, VESMORA_GET_DEVICE_PID, nullptr, 0, &identifier, sizeof identifier,
                        &returned, nullptr);
    });
    QTimer meters;
    QObject::connect(&meters, &QTimer::timeout, &window, [device, microphone, phone] {
        MeterRecord record{};
        DWORD returned = 0;
        DeviceIoControl(device, VESMORA_READ_METER_DATA, nullptr, 0, &record, sizeof record,
                        &returned, nullptr);
        microphone->setText(text(record.levels[0]));
        phone->setText(text((static_cast<double>(record.levels[2]) + record.levels[3]) / 2));
    });
    presence.start(400);
    meters.start(500);
    window.show();
    return QApplication::exec();
}
