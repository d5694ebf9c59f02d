#include "contractseenbyc.h"
#include "vesmoracontract.h"

#include <QTest>

#include <cstring>

class tst_VesmoraContract : public QObject
{
    Q_OBJECT

private slots:
    void controlCodesHaveTheirNumbers_data();
    void controlCodesHaveTheirNumbers();
    void constantsHaveTheirNumbers_data();
    void constantsHaveTheirNumbers();
    void buffersHaveTheirSizes();
    void aPacketIsThirtySevenBytesInThisOrder();
    void matrixEntriesLieRowAfterRow_data();
    void matrixEntriesLieRowAfterRow();
    void outputGainsFollowTheMatrix();
    void theMeterRecordIsSignedNumbersOneAfterTheOther();
    void aCCompilerSeesTheSame();
};

void tst_VesmoraContract::controlCodesHaveTheirNumbers_data()
{
    QTest::addColumn<quint32>("code");
    QTest::addColumn<quint32>("number");
    QTest::addColumn<quint32>("function");
    QTest::newRow("getSampleRate") << VESMORA_GET_SAMPLE_RATE << 0xFFDC2020u << 0x808u;
    QTest::newRow("setSampleRate") << VESMORA_SET_SAMPLE_RATE << 0xFFDC2038u << 0x80Eu;
    QTest::newRow("sendMixerBlock") << VESMORA_SEND_MIXER_BLOCK << 0xFFDC2040u << 0x810u;
    QTest::newRow("setBufferSize") << VESMORA_SET_BUFFER_SIZE << 0xFFDC2044u << 0x811u;
    QTest::newRow("getBufferSize") << VESMORA_GET_BUFFER_SIZE << 0xFFDC2048u << 0x812u;
    QTest::newRow("getUsbLatency") << VESMORA_GET_USB_LATENCY << 0xFFDC204Cu << 0x813u;
    QTest::newRow("setUsbLatency") << VESMORA_SET_USB_LATENCY << 0xFFDC2050u << 0x814u;
    QTest::newRow("readMeterData") << VESMORA_READ_METER_DATA << 0xFFDC2074u << 0x81Du;
    QTest::newRow("stopAudio") << VESMORA_STOP_AUDIO << 0xFFDC2078u << 0x81Eu;
    QTest::newRow("initAudio") << VESMORA_INIT_AUDIO << 0xFFDC207Cu << 0x81Fu;
    QTest::newRow("restartAudio") << VESMORA_RESTART_AUDIO << 0xFFDC2080u << 0x820u;
    QTest::newRow("getDevicePid") << VESMORA_GET_DEVICE_PID << 0xFFDC2084u << 0x821u;
    QTest::newRow("setWdmChannelCount") << VESMORA_SET_WDM_CHANNEL_COUNT << 0xFFDC2088u << 0x822u;
    QTest::newRow("enableUsbSlowMode") << VESMORA_ENABLE_USB_SLOW_MODE << 0xFFDC2090u << 0x824u;
    QTest::newRow("disableUsbSlowMode") << VESMORA_DISABLE_USB_SLOW_MODE << 0xFFDC2094u << 0x825u;
    QTest::newRow("packets") << VESMORA_SEND_PACKET << 0xFFDC209Cu << 0x827u;
    QTest::newRow("vendorRequest") << VESMORA_VENDOR_REQUEST << 0xFFDC20A0u << 0x828u;
}

void tst_VesmoraContract::controlCodesHaveTheirNumbers()
{
    QFETCH(quint32, code);
    QFETCH(quint32, number);
    QFETCH(quint32, function);
    QCOMPARE(code, number);
    QCOMPARE(code >> 16, 0xFFDCu); // device type
    QCOMPARE(code >> 14 & 3u, 0u); // FILE_ANY_ACCESS
    QCOMPARE(code >> 2 & 0xFFFu, function);
    QCOMPARE(code & 3u, 0u); // METHOD_BUFFERED
}

void tst_VesmoraContract::constantsHaveTheirNumbers_data()
{
    QTest::addColumn<quint32>("constant");
    QTest::addColumn<quint32>("number");
    QTest::newRow("RX1") << VESMORA_PID_RX1 << 1u;
    QTest::newRow("RX2") << VESMORA_PID_RX2 << 2u;
    QTest::newRow("RM") << VESMORA_PID_RM << 15u;
    QTest::newRow("packet kind") << VESMORA_PACKET_KIND << 0x01u;
    QTest::newRow("setOutVolume") << VESMORA_OPCODE_OUT_VOLUME << 0x03u;
    QTest::newRow("setMicVolume") << VESMORA_OPCODE_MIC_VOLUME << 0x07u;
    QTest::newRow("setMic20dB") << VESMORA_OPCODE_MIC_20DB << 0x5Au;
    QTest::newRow("setMic48V") << VESMORA_OPCODE_MIC_48V << 0x5Bu;
    QTest::newRow("setOtgOff") << VESMORA_OPCODE_OTG_OFF << 0x5Eu;
    QTest::newRow("setOtgOn") << VESMORA_OPCODE_OTG_ON << 0x5Fu;
    QTest::newRow("upgradeFirmware") << VESMORA_OPCODE_UPGRADE_FIRMWARE << 0x60u;
    QTest::newRow("switchMicInstruction") << VESMORA_OPCODE_MIC_INSTRUMENT << 0x64u;
    QTest::newRow("firmware version") << VESMORA_OPCODE_FIRMWARE_VERSION << 0x65u;
    QTest::newRow("volume length") << VESMORA_VOLUME_VALUE_LENGTH << 0x02u;
    QTest::newRow("busses") << quint32(VESMORA_BUS_COUNT) << 16u;
    QTest::newRow("firmware bytes") << quint32(VESMORA_FIRMWARE_VERSION_LENGTH) << 10u;
    QTest::newRow("first output row") << quint32(VESMORA_FIRST_OUTPUT_ROW) << 64u;
}

void tst_VesmoraContract::constantsHaveTheirNumbers()
{
    QFETCH(quint32, constant);
    QFETCH(quint32, number);
    QCOMPARE(constant, number);
}

void tst_VesmoraContract::buffersHaveTheirSizes()
{
    QCOMPARE(sizeof(CommandPacket), std::size_t(37));
    QCOMPARE(sizeof(VendorReply), std::size_t(32));
    QCOMPARE(sizeof(MixerBlock), std::size_t(66304));
    QCOMPARE(sizeof(MixerBlock) / sizeof(double), std::size_t(8288));
    QCOMPARE(sizeof(MeterRecord), std::size_t(768));
}

void tst_VesmoraContract::aPacketIsThirtySevenBytesInThisOrder()
{
    const CommandPacket packet{1, 2, 3, 4, 5, 6, 7, {8, 9}};
    QByteArray bytes(reinterpret_cast<const char *>(&packet), sizeof packet);
    QCOMPARE(bytes.toHex(), QByteArray("010203040506070809") + QByteArray(28 * 2, '0'));
}

void tst_VesmoraContract::matrixEntriesLieRowAfterRow_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("column");
    QTest::addColumn<int>("index");
    const int entries[][3] = {{0, 0, 0},     {0, 31, 31},   {1, 0, 32},    {64, 0, 2048},
                              {64, 1, 2049}, {64, 2, 2050}, {65, 0, 2080}, {65, 1, 2081},
                              {65, 3, 2083}, {68, 0, 2176}, {68, 1, 2177}, {68, 2, 2178},
                              {69, 0, 2208}, {69, 1, 2209}, {69, 3, 2211}, {255, 31, 8191}};
    for (const auto &[row, column, index] : entries)
        QTest::addRow("%d %d", row, column) << row << column << index;
}

void tst_VesmoraContract::matrixEntriesLieRowAfterRow()
{
    QFETCH(int, row);
    QFETCH(int, column);
    QFETCH(int, index);
    MixerBlock block{};
    block.matrix[row][column] = 1.0;
    QList<double> flat(8288);
    std::memcpy(flat.data(), &block, sizeof block);
    QCOMPARE(flat.indexOf(1.0), index);
    QCOMPARE(flat.count(0.0), 8287);
}

void tst_VesmoraContract::outputGainsFollowTheMatrix()
{
    MixerBlock block{};
    block.outputGains[0] = 1.0;
    block.outputGains[5] = 2.0;
    block.outputGains[95] = 3.0;
    QList<double> flat(8288);
    std::memcpy(flat.data(), &block, sizeof block);
    QCOMPARE(flat.indexOf(1.0), 8192);
    QCOMPARE(flat.indexOf(2.0), 8197);
    QCOMPARE(flat.indexOf(3.0), 8287);
}

void tst_VesmoraContract::theMeterRecordIsSignedNumbersOneAfterTheOther()
{
    MeterRecord record{};
    QCOMPARE(std::size(record.levels), std::size_t(192));
    record.levels[0] = -2;
    record.levels[191] = 0x01020304;
    const QByteArray bytes(reinterpret_cast<const char *>(&record), sizeof record);
    QCOMPARE(bytes.first(4).toHex(), QByteArray("feffffff"));
    QCOMPARE(bytes.last(4).toHex(), QByteArray("04030201"));
}

void tst_VesmoraContract::aCCompilerSeesTheSame()
{
    QCOMPARE(contractSeenByC.commandPacket, std::size_t(37));
    QCOMPARE(contractSeenByC.argument, std::size_t(3));
    QCOMPARE(contractSeenByC.channel, std::size_t(4));
    QCOMPARE(contractSeenByC.valueLow, std::size_t(5));
    QCOMPARE(contractSeenByC.valueHigh, std::size_t(6));
    QCOMPARE(contractSeenByC.vendorReply, std::size_t(32));
    QCOMPARE(contractSeenByC.mixerBlock, std::size_t(66304));
    QCOMPARE(contractSeenByC.outputGains, std::size_t(65536));
    QCOMPARE(contractSeenByC.meterRecord, std::size_t(768));
}

QTEST_APPLESS_MAIN(tst_VesmoraContract)
#include "tst_vesmoracontract.moc"
