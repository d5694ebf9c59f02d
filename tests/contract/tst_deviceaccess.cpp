#include "consolecapture.h"
#include "openaccess.h"
#include "opening.h"
#include "testsimulator.h"
#include "vesmoraiocontrol.h"
#include "win32spy.h"

#include <QTest>

#include <iostream>
#include <memory>

class tst_DeviceAccess : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void aFreshObjectIsClosedAndCallsNothing();
    void withNoDriverSixteenFailuresInOrderAndFalse();
    void onlyBusThreeThreeFailuresThenSuccessAndNoMore();
    void theFirstBusThatOpensIsKept_data();
    void theFirstBusThatOpensIsKept();
    void aFailureAfterAnEarlierErrorReportsItsOwn();
    void asksForReadingAndWritingAndShared();

    void deletingAnObjectWhoseOpenFailedCallsNoCloseHandle();
    void deletingClosesTheHandleOnce();
    void aNullHandleCountsAsOpen();
    void twoOwnersOpenTheDeviceAtTheSameTime();
    void deletingOneOwnerLeavesTheOtherOpen();

    void unpluggingLeavesTheHandleOpen();
    void anUnpluggedDeviceCanBeOpenedAgainOnlyByANewObject();
    void aClosedHandleIsInvalidToTheSystem();

private:
    struct OpenedDevice {
        std::unique_ptr<VesmoraIoControl> device;
        HANDLE handle;
    };
    static OpenedDevice openedDevice();

    TestSimulator m_simulator;
};

void tst_DeviceAccess::init()
{
    QVERIFY2(m_simulator.reset(), qPrintable(m_simulator.errorString()));
}

void tst_DeviceAccess::cleanup()
{
    // A close that is still under way would turn up in the next test's record.
    QTRY_COMPARE(m_simulator.state().openHandles, 0u);
}

tst_DeviceAccess::OpenedDevice tst_DeviceAccess::openedDevice()
{
    auto device = std::make_unique<VesmoraIoControl>();
    const Opening opening = openDevice(*device);
    if (!opening.result)
        qFatal("The device does not open");
    return {std::move(device), opening.handle};
}

void tst_DeviceAccess::aFreshObjectIsClosedAndCallsNothing()
{
    QVERIFY(m_simulator.plug(VESMORA_PID_RX1));
    Win32Spy spy;
    {
        VesmoraIoControl device;
        QVERIFY(!device.stopAudio());
    }
    QCOMPARE(textsOf(spy.stop()), QStringList());
}

void tst_DeviceAccess::withNoDriverSixteenFailuresInOrderAndFalse()
{
    VesmoraIoControl device;
    const Opening opening = openDevice(device);
    QVERIFY(!opening.result);
    QCOMPARE(opening.lines, failureLines(16));
    QVERIFY(opening.isEnded);
    QCOMPARE(opening.flushes, 16);
    QCOMPARE(textsOf(opening.calls), openTexts(15));
    QCOMPARE(textsOf(callsOfACommand(device)), QStringList());
    QCOMPARE(opening.errorLines, QStringList());
    QCOMPARE(opening.log, QStringList());
    QCOMPARE(m_simulator.events(), QStringList());
}

void tst_DeviceAccess::onlyBusThreeThreeFailuresThenSuccessAndNoMore()
{
    QVERIFY(m_simulator.plug(VESMORA_PID_RM, 3));
    VesmoraIoControl device;
    const Opening opening = openDevice(device);
    QVERIFY(opening.result);
    QCOMPARE(opening.lines,
             (QStringList{"Open device \\\\.\\VesmoraAudioBus0 failed, error: 2",
                          "Open device \\\\.\\VesmoraAudioBus1 failed, error: 2",
                          "Open device \\\\.\\VesmoraAudioBus2 failed, error: 2",
                          "Open device \\\\.\\VesmoraAudioBus3 success!"}));
    QCOMPARE(opening.flushes, 4);
    QCOMPARE(textsOf(opening.calls), openTexts(3));
    QCOMPARE(m_simulator.events(), (QStringList{"plug 15 3", "open"}));
}

void tst_DeviceAccess::theFirstBusThatOpensIsKept_data()
{
    QTest::addColumn<int>("bus");
    for (int bus = 0; bus < 16; ++bus)
        QTest::addRow("bus %d", bus) << bus;
}

void tst_DeviceAccess::theFirstBusThatOpensIsKept()
{
    QFETCH(int, bus);
    QVERIFY(m_simulator.plug(VESMORA_PID_RM, bus));
    VesmoraIoControl device;
    const Opening opening = openDevice(device);
    QVERIFY(opening.result);
    QCOMPARE(opening.lines, failureLines(bus) << successLine(bus));
    QVERIFY(opening.isEnded);
    QCOMPARE(opening.flushes, bus + 1);
    QCOMPARE(textsOf(opening.calls), openTexts(bus));
    QVERIFY(opening.handle != INVALID_HANDLE_VALUE);
    QCOMPARE(opening.errorLines, QStringList());
    QCOMPARE(opening.log, QStringList());

    const QList<Record> events = m_simulator.record();
    QCOMPARE(events.size(), 2);
    QCOMPARE(events[1].text(), "open");
    QCOMPARE(events[1].bus, quint32(bus));
    QCOMPARE(callsOfACommand(device).value(0).handle, opening.handle);
}

void tst_DeviceAccess::aFailureAfterAnEarlierErrorReportsItsOwn()
{
    SetLastError(1450);
    VesmoraIoControl device;
    QCOMPARE(openDevice(device).lines, failureLines(16));
}

void tst_DeviceAccess::asksForReadingAndWritingAndShared()
{
    QVERIFY(m_simulator.plug(VESMORA_PID_RX1));
    const auto [device, handle] = openedDevice();
    const QList<Record> events = m_simulator.record();
    QCOMPARE(events.size(), 2);
    const OpenAccess access = accessOf(handle, events[1]);
    QCOMPARE(access.granted, access.readAndWrite);
    QCOMPARE(events[1].share, 3u);
}

void tst_DeviceAccess::deletingAnObjectWhoseOpenFailedCallsNoCloseHandle()
{
    auto device = std::make_unique<VesmoraIoControl>();
    QVERIFY(!openDevice(*device).result);
    QCOMPARE(textsOf(callsOfDeleting(std::move(device))), QStringList());
    QCOMPARE(m_simulator.events(), QStringList());
}

void tst_DeviceAccess::deletingClosesTheHandleOnce()
{
    QVERIFY(m_simulator.plug(VESMORA_PID_RX1));
    auto [device, handle] = openedDevice();
    QCOMPARE(m_simulator.state().openHandles, 1u);
    const QList<Win32Call> calls = callsOfDeleting(std::move(device));
    QCOMPARE(textsOf(calls), QStringList{Win32Spy::closeText()});
    QCOMPARE(calls[0].handle, handle);
    QCOMPARE(calls[0].error, DWORD(0));
    QTRY_COMPARE(m_simulator.events(), (QStringList{"plug 1 0", "open", "close"}));
}

void tst_DeviceAccess::aNullHandleCountsAsOpen()
{
    const ConsoleCapture output(std::wcout);
    auto device = std::make_unique<VesmoraIoControl>();
    Win32Spy spy;
    spy.answerOpens(nullptr);
    QVERIFY(device->openDevice());
    QVERIFY(!device->stopAudio());
    QVERIFY(device->upgradeFirmware());
    device.reset();
    const QList<Win32Call> calls = spy.stop();
    QCOMPARE(textsOf(calls),
             openTexts(0) << Win32Spy::commandText(0xFFDC2078, 0, 0)
                          << Win32Spy::commandText(0xFFDC209C, 37, 0) << Win32Spy::closeText());
    for (const Win32Call &call : calls.sliced(1)) {
        QCOMPARE(call.handle, HANDLE(nullptr));
        QCOMPARE(call.error, DWORD(ERROR_INVALID_HANDLE));
    }
}

void tst_DeviceAccess::twoOwnersOpenTheDeviceAtTheSameTime()
{
    QVERIFY(m_simulator.plug(VESMORA_PID_RX1));
    const auto [first, firstHandle] = openedDevice();
    const auto [second, secondHandle] = openedDevice();
    QVERIFY(firstHandle != secondHandle);
    QVERIFY(second->setBufferSize(64));
    QVERIFY(first->setUsbLatency(4));
    const QList<Record> events = m_simulator.record();
    QCOMPARE(m_simulator.events(),
             (QStringList{"plug 1 0", "open", "open", "setBufferSize 64", "setUsbLatency 4"}));
    QVERIFY(events[1].handle != events[2].handle);
    QCOMPARE(events[3].handle, events[2].handle);
    QCOMPARE(events[4].handle, events[1].handle);
    QCOMPARE(m_simulator.state().openHandles, 2u);
}

void tst_DeviceAccess::deletingOneOwnerLeavesTheOtherOpen()
{
    QVERIFY(m_simulator.plug(VESMORA_PID_RX1));
    auto first = openedDevice().device;
    const auto second = openedDevice().device;
    first.reset();
    QTRY_COMPARE(m_simulator.state().openHandles, 1u);
    QVERIFY(second->stopAudio());
}

void tst_DeviceAccess::unpluggingLeavesTheHandleOpen()
{
    QVERIFY(m_simulator.plug(VESMORA_PID_RX1));
    auto [device, handle] = openedDevice();
    QVERIFY(m_simulator.unplug());
    QVERIFY(!device->stopAudio());
    QCOMPARE(m_simulator.state().openHandles, 1u);
    const QList<Win32Call> calls = callsOfDeleting(std::move(device));
    QCOMPARE(textsOf(calls), QStringList{Win32Spy::closeText()});
    QCOMPARE(calls[0].handle, handle);
    QCOMPARE(calls[0].error, DWORD(0));
    QTRY_COMPARE(m_simulator.events(),
                 (QStringList{"plug 1 0", "open", "unplug", "stopAudio !1167", "close"}));
}

void tst_DeviceAccess::anUnpluggedDeviceCanBeOpenedAgainOnlyByANewObject()
{
    QVERIFY(m_simulator.plug(VESMORA_PID_RX1));
    const auto old = openedDevice().device;
    QVERIFY(m_simulator.unplug());
    QVERIFY(!openDevice(*std::make_unique<VesmoraIoControl>()).result);
    QVERIFY(m_simulator.plug(VESMORA_PID_RX1));
    QVERIFY(!old->stopAudio());
    QVERIFY(openedDevice().device->stopAudio());
}

void tst_DeviceAccess::aClosedHandleIsInvalidToTheSystem()
{
    QVERIFY(m_simulator.plug(VESMORA_PID_RX1));
    auto [device, handle] = openedDevice();
    device.reset();
    DWORD returned = 0;
    const BOOL done =
        DeviceIoControl(handle, VESMORA_STOP_AUDIO, nullptr, 0, nullptr, 0, &returned, nullptr);
    const DWORD error = GetLastError();
    QVERIFY(!done);
    QCOMPARE(error, DWORD(ERROR_INVALID_HANDLE));
    QCOMPARE(m_simulator.requests(), QStringList());
}

QTEST_GUILESS_MAIN(tst_DeviceAccess)
#include "tst_deviceaccess.moc"
