#include "contractcomparison.h"
#include "contractheader.h"
#include "devicepaths.h"
#include "vesmoracontract.h"
#include "vesmorapipes.h"

#include <QFile>
#include <QTest>

namespace {

QString contentsOf(const char *path)
{
    QFile file(QString::fromLocal8Bit(path));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("%s: %s", path, qPrintable(file.errorString()));
    return QString::fromUtf8(file.readAll());
}

QString replaced(QString text, const QString &before, const QString &after)
{
    if (!text.contains(before))
        qFatal("There is no \"%s\" to replace.", qPrintable(before));
    return text.replace(before, after);
}

} // namespace

/// The page for driver engineers says what the header says, and the comparison would notice if it
/// did not.
class tst_ContractPage : public QObject
{
    Q_OBJECT

private slots:
    void thePageSaysWhatTheHeaderSays();
    void thePageNamesTheFirstAndTheLastDevice();
    void theHeaderIsReadAsACompilerReadsIt();
    void aWrongNumberOnThePageIsNoticed_data();
    void aWrongNumberOnThePageIsNoticed();
    void aChangeInTheHeaderIsNoticed_data();
    void aChangeInTheHeaderIsNoticed();

private:
    const QString m_page = contentsOf(CONTRACT_PAGE);
    const QString m_header = contentsOf(CONTRACT_HEADER) + contentsOf(PIPES_HEADER);
};

void tst_ContractPage::thePageSaysWhatTheHeaderSays()
{
    const QStringList differences = contractDifferences(m_page, m_header);
    QVERIFY2(differences.isEmpty(), qPrintable(differences.join(u'\n')));
}

void tst_ContractPage::thePageNamesTheFirstAndTheLastDevice()
{
    for (const std::wstring &path : {devicePaths.front(), devicePaths.back()})
        QVERIFY2(m_page.contains(u'`' + QString::fromStdWString(path) + u'`'),
                 qPrintable(QString::fromStdWString(path)));
}

void tst_ContractPage::theHeaderIsReadAsACompilerReadsIt()
{
    const ContractHeader header = readContractHeader(m_header);
    QCOMPARE(header.unread, QStringList());
    QCOMPARE(header.controlCodes.size(), m_header.count("VESMORA_CONTROL_CODE(0x"));
    const auto vendorRequest = header.controlCodes.value("VESMORA_VENDOR_REQUEST");
    QCOMPARE(VESMORA_CONTROL_CODE(vendorRequest.function), VESMORA_VENDOR_REQUEST);
    QCOMPARE(vendorRequest.inputLength, sizeof(CommandPacket));
    QCOMPARE(vendorRequest.outputLength, sizeof(VendorReply));
    QCOMPARE(header.constants.value("VESMORA_OPCODE_MIC_20DB"), VESMORA_OPCODE_MIC_20DB);

    QCOMPARE(header.structures.value("CommandPacket").size, sizeof(CommandPacket));
    QCOMPARE(header.structures.value("VendorReply").size, sizeof(VendorReply));
    QCOMPARE(header.structures.value("MixerBlock").size, sizeof(MixerBlock));
    QCOMPARE(header.structures.value("MeterRecord").size, sizeof(MeterRecord));
    const auto gains = header.structures.value("MixerBlock").fields.value("outputGains");
    QCOMPARE(gains.offset, offsetof(MixerBlock, outputGains));
    QCOMPARE(gains.length, sizeof(MixerBlock::outputGains));

    QCOMPARE(header.names.size(), 3);
    QCOMPARE(header.names.value("VESMORA_BUS_NAME"), VESMORA_BUS_NAME);
    QCOMPARE(header.names.value("VESMORA_RESET_PIPE"), QString::fromWCharArray(VESMORA_RESET_PIPE));
    QCOMPARE(header.names.value("VESMORA_WINDOW_PIPE"),
             QString::fromWCharArray(VESMORA_WINDOW_PIPE));
    QCOMPARE(header.constants.value("VESMORA_RESET_SIGNAL"), VESMORA_RESET_SIGNAL);
    const auto request = header.structures.value("WindowRequest");
    QCOMPARE(request.size, sizeof(WindowRequest));
    QCOMPARE(request.fields.value("showSettings").offset, offsetof(WindowRequest, showSettings));
}

void tst_ContractPage::aWrongNumberOnThePageIsNoticed_data()
{
    QTest::addColumn<QString>("right");
    QTest::addColumn<QString>("wrong");
    const auto add = [](const char *name, const char *right, const char *wrong) {
        QTest::newRow(name) << QString(right) << QString(wrong);
    };
    add("code", "0xFFDC2074", "0xFFDC2078");
    add("function", "| 0x81D |", "| 0x81E |");
    add("input length", "| 66304 | 0 |", "| 66304 | 4 |");
    add("output length", "| 0 | 768 |", "| 0 | 192 |");
    add("constant", "`VESMORA_PID_RM` | 15 |", "`VESMORA_PID_RM` | 3 |");
    add("opcode", "| 0x5A |", "| 0x5B |");
    add("packet kind", "| `01 60", "| `02 60");
    add("packet value", "F6 FF`", "FF F6`");
    add("packet length", "`01 65 00 00 00 00 00`", "`01 65 00 00 00 00`");
    add("argument", "| length | channel | value |", "| state | channel | value |");
    add("size", "`VendorReply` | 32 |", "`VendorReply` | 10 |");
    add("offset", "`CommandPacket.channel` | 4 |", "`CommandPacket.channel` | 3 |");
    add("field length", "| 7 | 30 |", "| 7 | 32 |");
    add("crosspoint", "| 2083 | 16664 |", "| 2084 | 16664 |");
    add("crosspoint out of range", "| 64 | 0 | 2048 |", "| 256 | 0 | 8192 |");
    add("output gain", "| 8196 | 65568 | 68 |", "| 8196 | 65568 | 69 |");
    add("level", "| 3 | 12 |", "| 3 | 24 |");
    add("gain", "| -6 | 0.5011872336 |", "| -6 | 0.5 |");
    add("peak", "| -inf dB |", "| -160 dB |");
    add("device's name", "| `VesmoraAudioBus` |", "| `VesmoraAudioBuss` |");
    add("pipe's name", "| `\\\\.\\pipe\\VesmoraASIOToPannel` |",
        "| `\\\\.\\pipe\\VesmoraASIOToPanel` |");
    add("pipe of another name", "| `VESMORA_RESET_PIPE` |", "| `VESMORA_ASIO_PIPE` |");
    add("pipe's limit", "`VESMORA_PIPE_MESSAGE_LIMIT` | 1024 |",
        "`VESMORA_PIPE_MESSAGE_LIMIT` | 1025 |");
    add("pipe's message", "`WindowRequest` | 20 |", "`WindowRequest` | 24 |");
    add("number in prose", "the current peaks", "the 192 current peaks");
    add("unknown code", "| `VESMORA_STOP_AUDIO`", "| `VESMORA_PAUSE_AUDIO`");
    add("table of an unknown kind", "| Level | Offset |", "| Meter | Offset |");
    add("cell too many", "| 768 | peaks |", "| 768 | 192 | peaks |");
}

void tst_ContractPage::aWrongNumberOnThePageIsNoticed()
{
    QFETCH(QString, right);
    QFETCH(QString, wrong);
    const QStringList differences = contractDifferences(replaced(m_page, right, wrong), m_header);
    QVERIFY(!differences.isEmpty());
}

void tst_ContractPage::aChangeInTheHeaderIsNoticed_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::addColumn<QString>("difference");
    const auto add = [](const char *name, const QString &before, const QString &after,
                        const char *difference) {
        QTest::newRow(name) << before << after << QString(difference);
    };
    const QString codes = "/* What each code carries besides itself. */\n";
    const QString structures = "typedef struct VendorReply {";
    add("new code", codes,
        codes + "#define VESMORA_PAUSE_AUDIO VESMORA_CONTROL_CODE(0x829u) /* neither */\n",
        "missing on the page: VESMORA_PAUSE_AUDIO");
    add("new code without a remark", codes,
        codes + "#define VESMORA_PAUSE_AUDIO VESMORA_CONTROL_CODE(0x829u)\n",
        "cannot be read in the header: VESMORA_PAUSE_AUDIO");
    add("new opcode", codes, codes + "#define VESMORA_OPCODE_BLINK 0x66u\n",
        "missing on the page: VESMORA_OPCODE_BLINK");
    add("new structure", structures,
        "typedef struct Clock {\n    int32_t ticks;\n} Clock;\n\n" + structures,
        "missing on the page: Clock");
    add("new field", "    uint8_t bytes[32];\n", "    uint8_t bytes[31];\n    uint8_t checksum;\n",
        "missing on the page: VendorReply.checksum");
    add("unreadable field", "    uint8_t bytes[32];\n",
        "    uint8_t bytes[32];\n    uint16_t *checksum;\n",
        "cannot be read in the header: VendorReply uint16_t *checksum");
    add("other function", "VESMORA_CONTROL_CODE(0x81Eu)", "VESMORA_CONTROL_CODE(0x82Fu)",
        "found: `VESMORA_STOP_AUDIO` | 0xFFDC2078 | 0x81E | 0 | 0, "
        "expected: `VESMORA_STOP_AUDIO` | 0xFFDC20BC | 0x82F | 0 | 0");
    add("other value", "VESMORA_PID_RM 15u", "VESMORA_PID_RM 3u",
        "found: `VESMORA_PID_RM` | 15, expected: `VESMORA_PID_RM` | 3");
    const QString pipes = "/* \"Pannel\" is how both are spelt. */\n";
    add("new pipe", pipes, pipes + "#define VESMORA_CLOCK_PIPE L\"\\\\.\\pipe\"\n",
        "missing on the page: VESMORA_CLOCK_PIPE");
    add("other name of a pipe", "pipe\\\\VesmoraPannelToASIO", "pipe\\\\VesmoraPanelToASIO",
        "found: `VESMORA_RESET_PIPE` | `\\\\.\\pipe\\VesmoraPannelToASIO`, "
        "expected: `VESMORA_RESET_PIPE` | `\\\\.\\pipe\\VesmoraPanelToASIO`");
    add("other signal", "VESMORA_RESET_SIGNAL 0x31u", "VESMORA_RESET_SIGNAL 0x32u",
        "found: `VESMORA_RESET_SIGNAL` | 0x31, expected: `VESMORA_RESET_SIGNAL` | 0x32");
    add("new word in a message", "    uint32_t loggedOnly[4];\n", "    uint32_t loggedOnly[5];\n",
        "found: `WindowRequest` | 20, expected: `WindowRequest` | 24");
}

void tst_ContractPage::aChangeInTheHeaderIsNoticed()
{
    QFETCH(QString, before);
    QFETCH(QString, after);
    QFETCH(QString, difference);
    const QStringList differences = contractDifferences(m_page, replaced(m_header, before, after));
    QVERIFY2(differences.contains(difference), qPrintable(differences.join(u'\n')));
}

QTEST_APPLESS_MAIN(tst_ContractPage)
#include "tst_contractpage.moc"
