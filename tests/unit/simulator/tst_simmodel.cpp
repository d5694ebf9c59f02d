#include "simcommands.h"
#include "simmodelfixture.h"

#include <QTest>

#include <cstring>
#include <span>

class tst_SimModel : public QObject
{
    Q_OBJECT

private slots:
    void nothingIsPluggedInAtFirst();
    void opensOnlyTheBusItIsPluggedInto();
    void plugRefusesWhatIsNoDevice();
    void plugRefusesASecondDevice();
    void pluggingInKeepsSettingsAndEmptiesTheMixer();

    void everyCommandSucceedsWithItsExactLengths();
    void everyCommandRefusesAnotherInputLength();
    void everyCommandRefusesAShorterOutput();
    void aLongerOutputIsFilledOnlyAsFarAsTheReplyGoes();
    void unknownCodesAreRefused();

    void settersAreReadBackByGetters();
    void engineCommandsSwitchTheEngine();
    void slowModeIsSwitched();
    void identifierAnswerCanBeChangedWithoutUnplugging();
    void metersAreAnsweredAsSet();
    void metersOutOfRangeChangeNothing();
    void firmwareIsAnsweredWithZerosBehindIt();
    void mixerBlockIsKept();
    void aFailedMixerBlockIsNotTaken();

    void packetsAreKeptByOpcode();
    void otgFollowsItsPackets();
    void badPacketsAreRefused_data();
    void badPacketsAreRefused();

    void afterUnpluggingEveryCommandFailsAndIsRecorded();
    void aHandleFromBeforeAReplugKeepsFailing();
    void handlesAreCounted();
    void resetLeavesASaneDevice();

    void theNthRequestFails();
    void severalRequestsFailInARow();
    void failuresForEverEndWhenTheyAreCleared();
    void aFaultOfOneOpcodeSparesTheOthers();
    void ofTwoFaultsTheEarlierDecidesAndBothAreUsedUp();
    void aFailingOpenGivesNoHandle();
    void faultsThatMakeNoSenseAreRefused();
    void noMoreFaultsThanThereIsRoomFor();
    void anUnpluggedDeviceCountsNoRequests();
    void delaysAreReportedPerCodeAndOpcode();
    void delaysThatMakeNoSenseAreRefused();

    void controlChecksItsLengths();
    void unknownControlCodesAreRefused();
    void everyNamedFailureMapsThereAndBack();
    void unnamedFailuresMapThereAndBack();

private:
    static std::span<const SimCommand> commands() { return {sim_commands, sim_command_count}; }
    static QByteArray inputOf(const SimCommand &command);
};

/// An input that the device accepts.
QByteArray tst_SimModel::inputOf(const SimCommand &command)
{
    if (command.action == SIM_TAKE_PACKET)
        return packet(VESMORA_OPCODE_OTG_ON);
    if (command.action == SIM_ANSWER_VENDOR)
        return packet(VESMORA_OPCODE_FIRMWARE_VERSION);
    return QByteArray(static_cast<qsizetype>(command.inputLength), '\0');
}

void tst_SimModel::nothingIsPluggedInAtFirst()
{
    SimModelFixture fixture;
    SimHandle handle{};
    QCOMPARE(model_open(fixture.model(), 0, 0, 0, 0, &handle), SIM_NO_SUCH_FILE);
    QCOMPARE(model_unplug(fixture.model(), 0), SIM_DEVICE_NOT_CONNECTED);
    QCOMPARE(fixture.state().plugged, 0u);
    QCOMPARE(fixture.state().entries, 0u);
}

void tst_SimModel::opensOnlyTheBusItIsPluggedInto()
{
    SimModelFixture fixture;
    QCOMPARE(fixture.plug(VESMORA_PID_RM, 15), SIM_SUCCESS);
    SimHandle handle{};
    QCOMPARE(model_open(fixture.model(), 14, 0, 0, 0, &handle), SIM_NO_SUCH_FILE);
    QCOMPARE(model_open(fixture.model(), 15, 0, 0, 0, &handle), SIM_SUCCESS);
    QCOMPARE(handle.bus, 15u);
}

void tst_SimModel::plugRefusesWhatIsNoDevice()
{
    SimModelFixture fixture;
    QCOMPARE(fixture.plug(0), SIM_INVALID_PARAMETER);
    QCOMPARE(fixture.plug(VESMORA_PID_RX1, 16), SIM_INVALID_PARAMETER);
    QCOMPARE(fixture.state().plugged, 0u);
}

void tst_SimModel::plugRefusesASecondDevice()
{
    SimModelFixture fixture;
    fixture.plug(VESMORA_PID_RX1);
    QCOMPARE(fixture.plug(VESMORA_PID_RM, 1), SIM_ALREADY_EXISTS);
    QCOMPARE(fixture.state().values[VESMORA_SIM_IDENTIFIER], VESMORA_PID_RX1);
}

void tst_SimModel::pluggingInKeepsSettingsAndEmptiesTheMixer()
{
    OpenSimModelFixture fixture;
    fixture.request(VESMORA_SET_BUFFER_SIZE, bytesOf(64u));
    fixture.request(VESMORA_STOP_AUDIO);
    fixture.request(VESMORA_SEND_PACKET, packet(VESMORA_OPCODE_OTG_OFF));
    fixture.request(VESMORA_SEND_MIXER_BLOCK, QByteArray(sizeof(MixerBlock), '\1'));
    model_unplug(fixture.model(), 0);
    fixture.plug(VESMORA_PID_RM);
    const VesmoraSimState state = fixture.state();
    QCOMPARE(state.values[VESMORA_SIM_BUFFER_SIZE], 64u);
    QCOMPARE(state.values[VESMORA_SIM_ENGINE], 1u);
    QCOMPARE(state.values[VESMORA_SIM_OTG], 1u);
    for (const CommandPacket &packet : state.packets)
        QCOMPARE(packet.kind, std::uint8_t(0));
    QCOMPARE(fixture.control(VESMORA_SIM_READ_MIXER, {}, sizeof(MixerBlock)), SIM_SUCCESS);
    QCOMPARE(fixture.output, QByteArray(sizeof(MixerBlock), '\0'));
}

void tst_SimModel::everyCommandSucceedsWithItsExactLengths()
{
    OpenSimModelFixture fixture;
    for (const SimCommand &command : commands()) {
        QCOMPARE(fixture.request(command.code, inputOf(command), command.outputLength),
                 SIM_SUCCESS);
        QCOMPARE(fixture.output.size(), qsizetype(command.outputLength));
    }
}

void tst_SimModel::everyCommandRefusesAnotherInputLength()
{
    OpenSimModelFixture fixture;
    for (const SimCommand &command : commands()) {
        const QByteArray input = inputOf(command);
        QCOMPARE(fixture.request(command.code, input + '\0', command.outputLength),
                 SIM_INFO_LENGTH_MISMATCH);
        QCOMPARE(fixture.output, QByteArray());
        if (!input.isEmpty())
            QCOMPARE(fixture.request(command.code, input.chopped(1), command.outputLength),
                     SIM_INFO_LENGTH_MISMATCH);
    }
}

void tst_SimModel::everyCommandRefusesAShorterOutput()
{
    OpenSimModelFixture fixture;
    int tried = 0;
    for (const SimCommand &command : commands()) {
        if (command.outputLength == 0)
            continue;
        QCOMPARE(fixture.request(command.code, inputOf(command), command.outputLength - 1),
                 SIM_BUFFER_TOO_SMALL);
        ++tried;
    }
    QCOMPARE(tried, 6);
}

void tst_SimModel::aLongerOutputIsFilledOnlyAsFarAsTheReplyGoes()
{
    SimModelFixture fixture;
    fixture.plug(VESMORA_PID_RM);
    const SimHandle handle = fixture.open();
    QCOMPARE(fixture.request(handle, VESMORA_GET_DEVICE_PID, {}, 100), SIM_SUCCESS);
    QCOMPARE(fixture.outputAs<std::uint32_t>(), VESMORA_PID_RM);
}

void tst_SimModel::unknownCodesAreRefused()
{
    OpenSimModelFixture fixture;
    for (const std::uint32_t code : {0u, VESMORA_CONTROL_CODE(0x809u), VESMORA_CONTROL_CODE(0x823u),
                                     VESMORA_GET_SAMPLE_RATE | 3u, VESMORA_SIM_UNPLUG}) {
        QCOMPARE(fixture.request(code), SIM_INVALID_DEVICE_REQUEST);
    }
    QCOMPARE(fixture.state().plugged, 1u);
}

void tst_SimModel::settersAreReadBackByGetters()
{
    OpenSimModelFixture fixture;
    const std::pair<std::uint32_t, std::uint32_t> pairs[] = {
        {VESMORA_SET_SAMPLE_RATE, VESMORA_GET_SAMPLE_RATE},
        {VESMORA_SET_BUFFER_SIZE, VESMORA_GET_BUFFER_SIZE},
        {VESMORA_SET_USB_LATENCY, VESMORA_GET_USB_LATENCY}};
    for (const auto &[set, get] : pairs) {
        QCOMPARE(fixture.request(set, bytesOf(0xFEDCBA98u)), SIM_SUCCESS);
        QCOMPARE(fixture.request(get, {}, 4), SIM_SUCCESS);
        QCOMPARE(fixture.outputAs<std::uint32_t>(), 0xFEDCBA98u);
    }
    fixture.request(VESMORA_SET_WDM_CHANNEL_COUNT, bytesOf(4u));
    QCOMPARE(fixture.state().values[VESMORA_SIM_WDM_CHANNELS], 4u);
}

void tst_SimModel::engineCommandsSwitchTheEngine()
{
    OpenSimModelFixture fixture;
    for (const std::uint32_t start : {VESMORA_INIT_AUDIO, VESMORA_RESTART_AUDIO}) {
        fixture.request(VESMORA_STOP_AUDIO);
        QCOMPARE(fixture.state().values[VESMORA_SIM_ENGINE], 0u);
        fixture.request(start);
        QCOMPARE(fixture.state().values[VESMORA_SIM_ENGINE], 1u);
    }
}

void tst_SimModel::slowModeIsSwitched()
{
    OpenSimModelFixture fixture;
    fixture.request(VESMORA_ENABLE_USB_SLOW_MODE);
    QCOMPARE(fixture.state().values[VESMORA_SIM_SLOW_MODE], 1u);
    fixture.request(VESMORA_DISABLE_USB_SLOW_MODE);
    QCOMPARE(fixture.state().values[VESMORA_SIM_SLOW_MODE], 0u);
}

void tst_SimModel::identifierAnswerCanBeChangedWithoutUnplugging()
{
    OpenSimModelFixture fixture;
    QCOMPARE(fixture.control(VESMORA_SIM_SET_VALUE, VesmoraSimSetting{VESMORA_SIM_IDENTIFIER, 0}),
             SIM_SUCCESS);
    QCOMPARE(fixture.request(VESMORA_GET_DEVICE_PID, {}, 4), SIM_SUCCESS);
    QCOMPARE(fixture.outputAs<std::uint32_t>(), 0u);
}

void tst_SimModel::metersAreAnsweredAsSet()
{
    OpenSimModelFixture fixture;
    const VesmoraSimMeter meters[] = {{0, INT32_MIN}, {191, INT32_MAX}, {2, -2}};
    QCOMPARE(fixture.control(VESMORA_SIM_SET_METERS, bytesOf(meters)), SIM_SUCCESS);
    QCOMPARE(fixture.request(VESMORA_READ_METER_DATA, {}, sizeof(MeterRecord)), SIM_SUCCESS);
    const auto record = fixture.outputAs<MeterRecord>();
    QCOMPARE(record.levels[0], INT32_MIN);
    QCOMPARE(record.levels[1], 0);
    QCOMPARE(record.levels[2], -2);
    QCOMPARE(record.levels[191], INT32_MAX);
}

void tst_SimModel::metersOutOfRangeChangeNothing()
{
    OpenSimModelFixture fixture;
    const VesmoraSimMeter meters[] = {{0, 1}, {192, 1}};
    QCOMPARE(fixture.control(VESMORA_SIM_SET_METERS, bytesOf(meters)), SIM_INVALID_PARAMETER);
    fixture.request(VESMORA_READ_METER_DATA, {}, sizeof(MeterRecord));
    QCOMPARE(fixture.outputAs<MeterRecord>().levels[0], 0);
}

void tst_SimModel::firmwareIsAnsweredWithZerosBehindIt()
{
    OpenSimModelFixture fixture;
    const QByteArray request = packet(VESMORA_OPCODE_FIRMWARE_VERSION);
    fixture.request(VESMORA_VENDOR_REQUEST, request, 32);
    QCOMPARE(fixture.output, QByteArray("2025093001") + QByteArray(22, '\0'));
    QCOMPARE(fixture.control(VESMORA_SIM_SET_FIRMWARE, QByteArray("ABCDEFGHIJ")), SIM_SUCCESS);
    fixture.request(VESMORA_VENDOR_REQUEST, request, 32);
    QCOMPARE(fixture.output, QByteArray("ABCDEFGHIJ") + QByteArray(22, '\0'));
}

void tst_SimModel::mixerBlockIsKept()
{
    OpenSimModelFixture fixture;
    MixerBlock block{};
    block.matrix[64][3] = 0.1;
    block.outputGains[95] = -1e300;
    fixture.request(VESMORA_SEND_MIXER_BLOCK, bytesOf(block));
    QCOMPARE(fixture.mixer(), bytesOf(block));
}

void tst_SimModel::aFailedMixerBlockIsNotTaken()
{
    OpenSimModelFixture fixture;
    fixture.fail(VESMORA_SEND_MIXER_BLOCK, 1);
    const QByteArray block(sizeof(MixerBlock), '\1');
    QCOMPARE(fixture.request(VESMORA_SEND_MIXER_BLOCK, block), SIM_UNSUCCESSFUL);
    QCOMPARE(fixture.mixer(), QByteArray(sizeof(MixerBlock), '\0'));
}

void tst_SimModel::packetsAreKeptByOpcode()
{
    OpenSimModelFixture fixture;
    const QByteArray volume = packet(VESMORA_OPCODE_MIC_VOLUME, 2, 1, -10);
    fixture.request(VESMORA_SEND_PACKET, packet(VESMORA_OPCODE_MIC_VOLUME, 2, 1, 7));
    fixture.request(VESMORA_SEND_PACKET, volume);
    fixture.request(VESMORA_SEND_PACKET, packet(VESMORA_OPCODE_MIC_48V, 1, 2));
    const VesmoraSimState state = fixture.state();
    int kept = 0;
    for (const CommandPacket &packet : state.packets) {
        kept += packet.kind == VESMORA_PACKET_KIND;
        if (packet.opcode == VESMORA_OPCODE_MIC_VOLUME)
            QCOMPARE(bytesOf(packet), volume);
    }
    QCOMPARE(kept, 2);
}

void tst_SimModel::otgFollowsItsPackets()
{
    OpenSimModelFixture fixture;
    fixture.request(VESMORA_SEND_PACKET, packet(VESMORA_OPCODE_OTG_OFF));
    QCOMPARE(fixture.state().values[VESMORA_SIM_OTG], 0u);
    fixture.request(VESMORA_SEND_PACKET, packet(VESMORA_OPCODE_OTG_ON));
    QCOMPARE(fixture.state().values[VESMORA_SIM_OTG], 1u);
}

void tst_SimModel::badPacketsAreRefused_data()
{
    QTest::addColumn<std::uint32_t>("code");
    QTest::addColumn<QByteArray>("packet");
    QTest::addColumn<std::uint32_t>("status");
    const auto send = VESMORA_SEND_PACKET;
    const auto vendor = VESMORA_VENDOR_REQUEST;
    const auto with = [](QByteArray bytes, qsizetype index, char value) {
        bytes[index] = value;
        return bytes;
    };
    const QByteArray otg = packet(VESMORA_OPCODE_OTG_ON, 0, 0, 0);
    const auto unknown = SIM_INVALID_DEVICE_REQUEST;
    const auto wrong = SIM_INVALID_PARAMETER;
    QTest::newRow("kind") << send << with(otg, 0, 2) << unknown;
    QTest::newRow("opcode") << send << packet(0x77, 0, 0, 0) << unknown;
    QTest::newRow("version sent") << send << packet(0x65, 0, 0, 0) << unknown;
    QTest::newRow("switch asked") << vendor << packet(0x5B, 1, 1, 0) << unknown;
    QTest::newRow("reserved") << send << with(otg, 2, 1) << wrong;
    QTest::newRow("first padding") << send << with(otg, 7, 1) << wrong;
    QTest::newRow("last padding") << send << with(otg, 36, 1) << wrong;
    QTest::newRow("state 2") << send << packet(0x5B, 2, 1, 0) << wrong;
    QTest::newRow("state with value") << send << packet(0x5A, 1, 1, 1) << wrong;
    QTest::newRow("volume length") << send << packet(0x03, 1, 1, 100) << wrong;
    QTest::newRow("plain with channel") << send << packet(0x5F, 0, 1, 0) << wrong;
    QTest::newRow("plain with state") << send << packet(0x60, 1, 0, 0) << wrong;
}

void tst_SimModel::badPacketsAreRefused()
{
    QFETCH(std::uint32_t, code);
    QFETCH(QByteArray, packet);
    QFETCH(std::uint32_t, status);
    OpenSimModelFixture fixture;
    QCOMPARE(fixture.request(code, packet, 32), status);
    const VesmoraSimState state = fixture.state();
    QCOMPARE(state.values[VESMORA_SIM_OTG], 1u);
    for (const CommandPacket &kept : state.packets)
        QCOMPARE(kept.kind, std::uint8_t(0));
}

void tst_SimModel::afterUnpluggingEveryCommandFailsAndIsRecorded()
{
    OpenSimModelFixture fixture;
    QCOMPARE(model_unplug(fixture.model(), 0), SIM_SUCCESS);
    fixture.control(VESMORA_SIM_CLEAR_RECORD);
    for (const SimCommand &command : commands()) {
        QCOMPARE(fixture.request(command.code, inputOf(command), command.outputLength),
                 SIM_DEVICE_NOT_CONNECTED);
    }
    QCOMPARE(fixture.state().entries, sim_command_count);
    SimHandle second{};
    QCOMPARE(model_open(fixture.model(), 0, 0, 0, 0, &second), SIM_NO_SUCH_FILE);
}

void tst_SimModel::aHandleFromBeforeAReplugKeepsFailing()
{
    OpenSimModelFixture fixture;
    model_unplug(fixture.model(), 0);
    fixture.plug(VESMORA_PID_RX1);
    const SimHandle after = fixture.open();
    QCOMPARE(fixture.request(VESMORA_STOP_AUDIO), SIM_DEVICE_NOT_CONNECTED);
    QCOMPARE(fixture.state().values[VESMORA_SIM_ENGINE], 1u);
    QCOMPARE(fixture.request(after, VESMORA_STOP_AUDIO), SIM_SUCCESS);
}

void tst_SimModel::handlesAreCounted()
{
    OpenSimModelFixture fixture;
    const SimHandle second = fixture.open();
    QCOMPARE(fixture.handle.id, 1u);
    QCOMPARE(second.id, 2u);
    QCOMPARE(fixture.state().openHandles, 2u);
    model_unplug(fixture.model(), 0);
    QCOMPARE(fixture.state().openHandles, 2u);
    model_close(fixture.model(), &fixture.handle, 0);
    model_close(fixture.model(), &second, 0);
    QCOMPARE(fixture.state().openHandles, 0u);
}

void tst_SimModel::resetLeavesASaneDevice()
{
    OpenSimModelFixture fixture;
    SimModelFixture untouched;
    fixture.request(VESMORA_SET_SAMPLE_RATE, bytesOf(96000u));
    fixture.request(VESMORA_SEND_MIXER_BLOCK, QByteArray(sizeof(MixerBlock), '\1'));
    fixture.control(VESMORA_SIM_SET_FIRMWARE, QByteArray("ABCDEFGHIJ"));
    fixture.control(VESMORA_SIM_SET_METERS, VesmoraSimMeter{3, 3});
    fixture.setDelay(VESMORA_STOP_AUDIO, VESMORA_SIM_ANY_OPCODE, 10);
    fixture.fail(VESMORA_STOP_AUDIO, 1);
    model_close(fixture.model(), &fixture.handle, 0);
    QCOMPARE(fixture.control(VESMORA_SIM_RESET), SIM_SUCCESS);
    QCOMPARE(bytesOf(fixture.state()), bytesOf(untouched.state()));
    QCOMPARE(std::memcmp(fixture.model()->meters, untouched.model()->meters,
                         sizeof untouched.model()->meters),
             0);
    QCOMPARE(fixture.mixer(), QByteArray(sizeof(MixerBlock), '\0'));
}

void tst_SimModel::theNthRequestFails()
{
    OpenSimModelFixture fixture;
    QCOMPARE(fixture.fail(VESMORA_STOP_AUDIO, 3, 1, SIM_ACCESS_DENIED), SIM_SUCCESS);
    QCOMPARE(fixture.request(VESMORA_STOP_AUDIO), SIM_SUCCESS);
    QCOMPARE(fixture.request(VESMORA_INIT_AUDIO), SIM_SUCCESS);
    QCOMPARE(fixture.request(VESMORA_STOP_AUDIO), SIM_SUCCESS);
    fixture.request(VESMORA_INIT_AUDIO);
    QCOMPARE(fixture.request(VESMORA_STOP_AUDIO), SIM_ACCESS_DENIED);
    QCOMPARE(fixture.state().values[VESMORA_SIM_ENGINE], 1u);
    QCOMPARE(fixture.state().faults, 0u);
    QCOMPARE(fixture.request(VESMORA_STOP_AUDIO), SIM_SUCCESS);
}

void tst_SimModel::severalRequestsFailInARow()
{
    OpenSimModelFixture fixture;
    fixture.fail(VESMORA_GET_DEVICE_PID, 2, 3);
    for (const auto expected :
         {SIM_SUCCESS, SIM_UNSUCCESSFUL, SIM_UNSUCCESSFUL, SIM_UNSUCCESSFUL, SIM_SUCCESS}) {
        QCOMPARE(fixture.request(VESMORA_GET_DEVICE_PID, {}, 4), expected);
        QCOMPARE(fixture.output.size(), expected == SIM_SUCCESS ? 4 : 0);
    }
}

void tst_SimModel::failuresForEverEndWhenTheyAreCleared()
{
    OpenSimModelFixture fixture;
    fixture.fail(VESMORA_INIT_AUDIO, 1, VESMORA_SIM_FOR_EVER);
    for (int i = 0; i < 100; ++i)
        QCOMPARE(fixture.request(VESMORA_INIT_AUDIO), SIM_UNSUCCESSFUL);
    QCOMPARE(fixture.control(VESMORA_SIM_CLEAR_FAULTS), SIM_SUCCESS);
    QCOMPARE(fixture.request(VESMORA_INIT_AUDIO), SIM_SUCCESS);
}

void tst_SimModel::aFaultOfOneOpcodeSparesTheOthers()
{
    OpenSimModelFixture fixture;
    fixture.fail(VESMORA_SEND_PACKET, 1, 1, SIM_UNSUCCESSFUL, VESMORA_OPCODE_OTG_ON);
    QCOMPARE(fixture.request(VESMORA_SEND_PACKET, packet(VESMORA_OPCODE_OTG_OFF)), SIM_SUCCESS);
    QCOMPARE(fixture.request(VESMORA_SEND_PACKET, packet(VESMORA_OPCODE_OTG_ON)), SIM_UNSUCCESSFUL);
    QCOMPARE(fixture.state().values[VESMORA_SIM_OTG], 0u);
}

void tst_SimModel::ofTwoFaultsTheEarlierDecidesAndBothAreUsedUp()
{
    OpenSimModelFixture fixture;
    fixture.fail(VESMORA_STOP_AUDIO, 1, 1, SIM_ACCESS_DENIED);
    fixture.fail(VESMORA_STOP_AUDIO, 1, 1, SIM_UNSUCCESSFUL);
    QCOMPARE(fixture.request(VESMORA_STOP_AUDIO), SIM_ACCESS_DENIED);
    QCOMPARE(fixture.request(VESMORA_STOP_AUDIO), SIM_SUCCESS);
}

void tst_SimModel::aFailingOpenGivesNoHandle()
{
    SimModelFixture fixture;
    fixture.plug(VESMORA_PID_RX1);
    fixture.fail(VESMORA_SIM_OPEN_CODE, 2, 1, SIM_ACCESS_DENIED);
    fixture.open();
    SimHandle handle{};
    QCOMPARE(model_open(fixture.model(), 0, 0, 0, 0, &handle), SIM_ACCESS_DENIED);
    QCOMPARE(handle.id, 0u);
    QCOMPARE(fixture.state().openHandles, 1u);
    QCOMPARE(fixture.open().id, 2u);
}

void tst_SimModel::faultsThatMakeNoSenseAreRefused()
{
    SimModelFixture fixture;
    QCOMPARE(fixture.fail(VESMORA_STOP_AUDIO, 0), SIM_INVALID_PARAMETER);
    QCOMPARE(fixture.fail(VESMORA_STOP_AUDIO, 1, 1, SIM_SUCCESS), SIM_INVALID_PARAMETER);
    QCOMPARE(fixture.fail(VESMORA_STOP_AUDIO, 1, 1, 0x40000000u), SIM_INVALID_PARAMETER);
    QCOMPARE(fixture.state().faults, 0u);
}

void tst_SimModel::noMoreFaultsThanThereIsRoomFor()
{
    SimModelFixture fixture;
    for (std::uint32_t i = 0; i < SIM_FAULT_COUNT; ++i)
        QCOMPARE(fixture.fail(VESMORA_STOP_AUDIO, i + 1), SIM_SUCCESS);
    QCOMPARE(fixture.fail(VESMORA_STOP_AUDIO, 1), SIM_INSUFFICIENT_RESOURCES);
}

void tst_SimModel::anUnpluggedDeviceCountsNoRequests()
{
    OpenSimModelFixture fixture;
    fixture.fail(VESMORA_STOP_AUDIO, 1);
    model_unplug(fixture.model(), 0);
    QCOMPARE(fixture.request(VESMORA_STOP_AUDIO), SIM_DEVICE_NOT_CONNECTED);
    fixture.plug(VESMORA_PID_RX1);
    QCOMPARE(fixture.request(fixture.open(), VESMORA_STOP_AUDIO), SIM_UNSUCCESSFUL);
}

void tst_SimModel::delaysAreReportedPerCodeAndOpcode()
{
    OpenSimModelFixture fixture;
    const auto delayOf = [&](std::uint32_t code, const QByteArray &input = {}) {
        fixture.request(code, input);
        return fixture.delay;
    };
    QCOMPARE(fixture.setDelay(VESMORA_STOP_AUDIO, VESMORA_SIM_ANY_OPCODE, 100), SIM_SUCCESS);
    QCOMPARE(fixture.setDelay(VESMORA_SEND_PACKET, VESMORA_OPCODE_OTG_ON, 250), SIM_SUCCESS);
    QCOMPARE(delayOf(VESMORA_STOP_AUDIO), 100u);
    QCOMPARE(delayOf(VESMORA_INIT_AUDIO), 0u);
    QCOMPARE(delayOf(VESMORA_SEND_PACKET, packet(VESMORA_OPCODE_OTG_ON)), 250u);
    QCOMPARE(delayOf(VESMORA_SEND_PACKET, packet(VESMORA_OPCODE_OTG_OFF)), 0u);

    QCOMPARE(fixture.setDelay(VESMORA_STOP_AUDIO, VESMORA_SIM_ANY_OPCODE, 0), SIM_SUCCESS);
    QCOMPARE(delayOf(VESMORA_STOP_AUDIO), 0u);
    QCOMPARE(fixture.state().delays, 1u);
    QCOMPARE(fixture.control(VESMORA_SIM_CLEAR_FAULTS), SIM_SUCCESS);
    QCOMPARE(fixture.state().delays, 0u);
}

void tst_SimModel::delaysThatMakeNoSenseAreRefused()
{
    SimModelFixture fixture;
    QCOMPARE(fixture.setDelay(VESMORA_SIM_OPEN_CODE, VESMORA_SIM_ANY_OPCODE, 1),
             SIM_INVALID_PARAMETER);
    QCOMPARE(fixture.setDelay(VESMORA_STOP_AUDIO, VESMORA_SIM_ANY_OPCODE, 60001),
             SIM_INVALID_PARAMETER);
    for (std::uint32_t i = 1; i <= SIM_DELAY_COUNT; ++i)
        QCOMPARE(fixture.setDelay(i, VESMORA_SIM_ANY_OPCODE, 1), SIM_SUCCESS);
    QCOMPARE(fixture.setDelay(999, VESMORA_SIM_ANY_OPCODE, 1), SIM_INSUFFICIENT_RESOURCES);
}

void tst_SimModel::controlChecksItsLengths()
{
    SimModelFixture fixture;
    for (const std::uint32_t code :
         {VESMORA_SIM_PLUG, VESMORA_SIM_UNPLUG, VESMORA_SIM_SET_METERS, VESMORA_SIM_SET_FIRMWARE,
          VESMORA_SIM_SET_VALUE, VESMORA_SIM_ADD_FAULT, VESMORA_SIM_SET_DELAY,
          VESMORA_SIM_CLEAR_FAULTS, VESMORA_SIM_CLEAR_RECORD, VESMORA_SIM_READ_RECORD,
          VESMORA_SIM_READ_STATE, VESMORA_SIM_READ_MIXER, VESMORA_SIM_RESET}) {
        QCOMPARE(fixture.control(code, QByteArray(3, '\0'), 1u << 17), SIM_INFO_LENGTH_MISMATCH);
    }
    QCOMPARE(fixture.control(VESMORA_SIM_READ_STATE, {}, sizeof(VesmoraSimState) - 1),
             SIM_BUFFER_TOO_SMALL);
    QCOMPARE(fixture.control(VESMORA_SIM_READ_MIXER, {}, sizeof(MixerBlock) - 1),
             SIM_BUFFER_TOO_SMALL);
    QCOMPARE(fixture.control(VESMORA_SIM_READ_RECORD, bytesOf(1u), 7), SIM_BUFFER_TOO_SMALL);
}

void tst_SimModel::unknownControlCodesAreRefused()
{
    SimModelFixture fixture;
    QCOMPARE(fixture.control(VESMORA_SIM_CODE(0x8FFu)), SIM_INVALID_DEVICE_REQUEST);
    QCOMPARE(fixture.control(VESMORA_STOP_AUDIO), SIM_INVALID_DEVICE_REQUEST);
    QCOMPARE(fixture.control(VESMORA_SIM_SET_VALUE, VesmoraSimSetting{VESMORA_SIM_VALUE_COUNT, 1}),
             SIM_INVALID_PARAMETER);
}

void tst_SimModel::everyNamedFailureMapsThereAndBack()
{
    for (std::uint32_t i = 0; i < sim_status_count; ++i) {
        const SimStatus &entry = sim_statuses[i];
        QCOMPARE(status_to_error(entry.status), entry.error);
        QCOMPARE(status_from_error(entry.error), entry.status);
        QCOMPARE(status_name(entry.error), entry.name);
    }
}

void tst_SimModel::unnamedFailuresMapThereAndBack()
{
    QCOMPARE(status_to_error(status_from_error(12345)), 12345u);
    QCOMPARE(status_name(12345), nullptr);
    QCOMPARE(status_to_error(0xC0DE0001u), 317u);
}

QTEST_APPLESS_MAIN(tst_SimModel)

#include "tst_simmodel.moc"
