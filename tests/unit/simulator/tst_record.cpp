#include "recorddecoder.h"
#include "simmodelfixture.h"

#include <QJsonArray>
#include <QTest>

#include <limits>

class tst_Record : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void opensClosesAndPlugsHaveTheirLines();
    void requestsHaveTheirLines_data();
    void requestsHaveTheirLines();
    void aMixerBlockListsOnlyWhatItChanges();
    void mixerValuesAreWrittenToTwelveDigits();
    void aFailedMixerBlockListsItsChangesAgain();
    void decodesFields();
    void decodesTheMixerGeometry();
    void jsonHoldsTheDecodedFields();
    void jsonOfAMixerBlockListsPlaces();
    void jsonWritesNumbersThatJsonLacksAsText();
    void aDamagedPageIsNoPage();
    void commandsAreFoundByName();

private:
    Record record(std::uint32_t code, const QByteArray &input = {}, std::uint32_t outputLength = 0);
    Record mixer(const MixerBlock &block);
    QList<Record> records();

    std::unique_ptr<SimModelFixture> m_fixture;
    SimHandle m_handle{};
};

void tst_Record::init()
{
    m_fixture = std::make_unique<SimModelFixture>();
    m_fixture->plug(VESMORA_PID_RX1, 1);
    m_handle = m_fixture->open(1);
}

QList<Record> tst_Record::records()
{
    m_fixture->control(VESMORA_SIM_READ_RECORD, bytesOf(1u), VESMORA_SIM_LONGEST_PAGE);
    const auto page = decodePage(m_fixture->output);
    return page ? page->records : QList<Record>();
}

/// The record of one request.
Record tst_Record::record(std::uint32_t code, const QByteArray &input, std::uint32_t outputLength)
{
    m_fixture->control(VESMORA_SIM_CLEAR_RECORD);
    m_fixture->request(m_handle, code, input, outputLength);
    return records().value(0);
}

Record tst_Record::mixer(const MixerBlock &block)
{
    return record(VESMORA_SEND_MIXER_BLOCK, bytesOf(block));
}

void tst_Record::opensClosesAndPlugsHaveTheirLines()
{
    SimHandle refused{};
    m_fixture->fail(VESMORA_SIM_OPEN_CODE, 1, 1, SIM_ACCESS_DENIED);
    model_open(m_fixture->model(), 1, 0, 0, 0, &refused);
    model_close(m_fixture->model(), &m_handle, 0);
    model_unplug(m_fixture->model(), 0);
    QStringList lines;
    for (const Record &record : records())
        lines.append(record.text());
    QCOMPARE(lines, (QStringList{"plug 1 1", "open", "open !5", "close", "unplug"}));
    Record lost;
    lost.kind = Record::Kind::Lost;
    lost.value = 3;
    QCOMPARE(lost.text(), "lost 3");
}

void tst_Record::requestsHaveTheirLines_data()
{
    QTest::addColumn<std::uint32_t>("code");
    QTest::addColumn<QByteArray>("input");
    QTest::addColumn<std::uint32_t>("outputLength");
    QTest::addColumn<QString>("line");
    const auto add = [](const char *line, std::uint32_t code, const QByteArray &input = {},
                        std::uint32_t outputLength = 0) {
        QTest::newRow(line) << code << input << outputLength << QString::fromLatin1(line);
    };
    const std::uint32_t send = VESMORA_SEND_PACKET;
    add("getDevicePid", VESMORA_GET_DEVICE_PID, {}, 4);
    add("getDevicePid !122", VESMORA_GET_DEVICE_PID, {}, 3);
    add("stopAudio", VESMORA_STOP_AUDIO);
    add("setBufferSize 192", VESMORA_SET_BUFFER_SIZE, bytesOf(192u));
    add("setSampleRate 4294967295", VESMORA_SET_SAMPLE_RATE, bytesOf(UINT32_MAX));
    add("setSampleRate <3 bytes> !24", VESMORA_SET_SAMPLE_RATE, "abc");
    add("sendMixerBlock <1 bytes> !24", VESMORA_SEND_MIXER_BLOCK, "a");
    add("setOutVolume 1 100", send, packet(0x03, 2, 1, 100));
    add("setMicVolume 2 -10", send, packet(0x07, 2, 2, -10));
    add("setMic20dB 1 0", send, packet(0x5A, 0, 1, 0));
    add("setMic48V 1 1", send, packet(0x5B, 1, 1, 0));
    add("setMic48V 1 2 !87", send, packet(0x5B, 2, 1, 0));
    add("switchMicInstruction 1 1", send, packet(0x64, 1, 1, 0));
    add("setOtgOff", send, packet(0x5E, 0, 0, 0));
    add("setOtgOn", send, packet(0x5F, 0, 0, 0));
    add("upgradeFirmware", send, packet(0x60, 0, 0, 0));
    add("sendPacket 0x0A !1", send, packet(0x0A, 0, 0, 0));
    add("sendPacket <2 bytes> !24", send, "ab");
    add("getFirmwareVersion", VESMORA_VENDOR_REQUEST, packet(0x65, 0, 0, 0), 32);
    add("vendorRequest 0x03 !1", VESMORA_VENDOR_REQUEST, packet(0x03, 2, 1, 1), 32);
    add("0xFFDC2024 !1", VESMORA_CONTROL_CODE(0x809u));
}

void tst_Record::requestsHaveTheirLines()
{
    QFETCH(std::uint32_t, code);
    QFETCH(QByteArray, input);
    QFETCH(std::uint32_t, outputLength);
    QFETCH(QString, line);
    QCOMPARE(record(code, input, outputLength).text(), line);
}

void tst_Record::aMixerBlockListsOnlyWhatItChanges()
{
    MixerBlock block{};
    block.matrix[64][0] = 1.0;
    block.matrix[65][1] = 1.0;
    block.outputGains[0] = 0.1;
    QCOMPARE(mixer(block).text(), "sendMixerBlock (64,0)=1 (65,1)=1 gain[0]=0.1");
    QCOMPARE(mixer(block).text(), "sendMixerBlock");
    block.matrix[65][1] = 0.0;
    QCOMPARE(mixer(block).text(), "sendMixerBlock (65,1)=0");
}

void tst_Record::mixerValuesAreWrittenToTwelveDigits()
{
    MixerBlock block{};
    block.outputGains[1] = 1.9952623149688795;
    block.outputGains[2] = 1e-300;
    block.outputGains[95] = 0.1 + 0.2;
    QCOMPARE(mixer(block).text(),
             "sendMixerBlock gain[1]=1.99526231497 gain[2]=1e-300 "
             "gain[95]=0.3");
}

void tst_Record::aFailedMixerBlockListsItsChangesAgain()
{
    MixerBlock block{};
    block.matrix[255][31] = 0.5;
    m_fixture->fail(VESMORA_SEND_MIXER_BLOCK, 1, 1, SIM_DEVICE_NOT_CONNECTED);
    QCOMPARE(mixer(block).text(), "sendMixerBlock (255,31)=0.5 !1167");
    QCOMPARE(mixer(block).text(), "sendMixerBlock (255,31)=0.5");
}

void tst_Record::decodesFields()
{
    m_fixture->now = 77;
    const QByteArray bytes = packet(0x07, 2, 2, -10);
    const Record volume = record(VESMORA_SEND_PACKET, bytes);
    QCOMPARE(volume.number, 1u);
    QCOMPARE(volume.ms, 77u);
    QCOMPARE(volume.bus, 1u);
    QCOMPARE(volume.handle, m_handle.id);
    QCOMPARE(volume.code, VESMORA_SEND_PACKET);
    QCOMPARE(volume.command, "setMicVolume");
    QCOMPARE(volume.opcode, std::optional<quint32>(7));
    QCOMPARE(volume.channel, std::optional<quint32>(2));
    QCOMPARE(volume.value, std::optional<qint64>(-10));
    QCOMPARE(volume.answer, std::optional<quint32>());
    QCOMPARE(volume.inputLength, 37u);
    QCOMPARE(volume.bytes, bytes);

    const Record pid = record(VESMORA_GET_DEVICE_PID, {}, 4);
    QCOMPARE(pid.answer, std::optional<quint32>(VESMORA_PID_RX1));
    QCOMPARE(pid.value, std::optional<qint64>());
    QCOMPARE(record(VESMORA_GET_DEVICE_PID, {}, 3).answer, std::optional<quint32>());
}

void tst_Record::decodesTheMixerGeometry()
{
    MixerBlock block{};
    block.matrix[255][31] = 0.25;
    block.outputGains[0] = 0.75;
    const QList<MixerChange> changes = mixer(block).changes;
    QCOMPARE(changes.size(), 2);
    QCOMPARE(changes[0].index, 8191);
    QCOMPARE(changes[0].row(), 255);
    QCOMPARE(changes[0].column(), 31);
    QVERIFY(!changes[0].isOutputGain());
    QCOMPARE(changes[0].value, 0.25);
    QCOMPARE(changes[1].index, 8192);
    QVERIFY(changes[1].isOutputGain());
    QCOMPARE(changes[1].outputGain(), 0);
}

void tst_Record::jsonHoldsTheDecodedFields()
{
    m_fixture->fail(VESMORA_SEND_PACKET, 1, 1, SIM_DEVICE_NOT_CONNECTED);
    const QJsonObject json = record(VESMORA_SEND_PACKET, packet(0x5B, 1, 2)).toJson();
    QCOMPARE(json.value("kind"), QJsonValue("request"));
    QCOMPARE(json.value("text"), QJsonValue("setMic48V 2 1 !1167"));
    QCOMPARE(json.value("command"), QJsonValue("setMic48V"));
    QCOMPARE(json.value("code"), QJsonValue("0xFFDC209C"));
    QCOMPARE(json.value("opcode"), QJsonValue("0x5B"));
    QCOMPARE(json.value("channel"), QJsonValue(2));
    QCOMPARE(json.value("value"), QJsonValue(1));
    QCOMPARE(json.value("error"), QJsonValue(1167));
    QCOMPARE(json.value("errorName"), QJsonValue("not-connected"));
    QVERIFY(json.value("bytes").toString().startsWith("015b00010200"));
    const QJsonObject open = records().isEmpty() ? QJsonObject() : json;
    QVERIFY(!open.contains("changes"));
}

void tst_Record::jsonOfAMixerBlockListsPlaces()
{
    MixerBlock block{};
    block.matrix[64][2] = 1.0;
    block.outputGains[4] = 0.5;
    const QJsonArray changes = mixer(block).toJson().value("changes").toArray();
    QCOMPARE(changes.size(), 2);
    QCOMPARE(changes[0].toObject().value("row"), QJsonValue(64));
    QCOMPARE(changes[0].toObject().value("column"), QJsonValue(2));
    QCOMPARE(changes[0].toObject().value("value"), QJsonValue(1.0));
    QCOMPARE(changes[1].toObject().value("gain"), QJsonValue(4));
    QVERIFY(!changes[1].toObject().contains("row"));
}

void tst_Record::jsonWritesNumbersThatJsonLacksAsText()
{
    MixerBlock block{};
    block.outputGains[0] = std::numeric_limits<double>::infinity();
    const QJsonArray changes = mixer(block).toJson().value("changes").toArray();
    QCOMPARE(changes[0].toObject().value("value"), QJsonValue("inf"));
}

void tst_Record::aDamagedPageIsNoPage()
{
    m_fixture->control(VESMORA_SIM_READ_RECORD, bytesOf(1u), VESMORA_SIM_LONGEST_PAGE);
    const QByteArray page = m_fixture->output;
    QVERIFY(decodePage(page));
    QVERIFY(!decodePage(page.chopped(1)));
    QVERIFY(!decodePage(page.first(sizeof(VesmoraSimPage) + 8)));
    QVERIFY(!decodePage(page.first(3)));
    QByteArray endless = page;
    endless[qsizetype(sizeof(VesmoraSimPage))] = 0; // the first entry's size
    QVERIFY(!decodePage(endless));
}

void tst_Record::commandsAreFoundByName()
{
    const auto key = findCommand(u"setMic48V");
    QVERIFY(key);
    QCOMPARE(key->code, VESMORA_SEND_PACKET);
    QCOMPARE(key->opcode, VESMORA_OPCODE_MIC_48V);
    QCOMPARE(findCommand(u"getFirmwareVersion")->code, VESMORA_VENDOR_REQUEST);
    QCOMPARE(findCommand(u"stopAudio")->opcode, VESMORA_SIM_ANY_OPCODE);
    QCOMPARE(findCommand(u"open")->code, VESMORA_SIM_OPEN_CODE);
    QVERIFY(!findCommand(u"close"));
    QVERIFY(!findCommand(u""));
}

QTEST_APPLESS_MAIN(tst_Record)

#include "tst_record.moc"
