#include "simmodelfixture.h"

#include <QTest>

#include <cstring>

class tst_SimJournal : public QObject
{
    Q_OBJECT

private slots:
    void entriesAreNumberedInOrder();
    void anEntryHoldsWhatTheRequestCarried();
    void aLongInputIsCutButItsLengthIsKept();
    void pagesHoldWholeEntriesAndGoOnWhereTheyStopped();
    void aPageTooSmallForOneEntryIsRefused();
    void aFullRecordCountsWhatItLosesAndKeepsNoGaps();
    void anEntryThatRunsOutOfRoomHalfwayIsLostWhole();
    void clearingStartsOver();
    void aWholeMixerBlockOfChangesFitsOnThePageItIsSaidToFit();

private:
    struct Entry {
        VesmoraSimEntry head;
        QByteArray payload;
    };
    static QList<Entry> read(SimModelFixture &fixture, std::uint32_t from = 1,
                             std::uint32_t capacity = VESMORA_SIM_LONGEST_PAGE);
    static std::uint32_t lostIn(const SimModelFixture &fixture);
};

/// The entries of one page.
QList<tst_SimJournal::Entry> tst_SimJournal::read(SimModelFixture &fixture, std::uint32_t from,
                                                  std::uint32_t capacity)
{
    if (fixture.control(VESMORA_SIM_READ_RECORD, bytesOf(from), capacity) != SIM_SUCCESS)
        qFatal("There is no page");
    VesmoraSimPage page;
    std::memcpy(&page, fixture.output.constData(), sizeof page);
    QList<Entry> entries;
    qsizetype offset = sizeof page;
    for (std::uint32_t i = 0; i < page.count; ++i) {
        Entry entry;
        std::memcpy(&entry.head, fixture.output.constData() + offset, sizeof entry.head);
        entry.payload =
            fixture.output.mid(offset + qsizetype(sizeof entry.head), entry.head.payloadLength);
        offset += entry.head.size;
        entries.append(entry);
    }
    if (offset != fixture.output.size())
        qFatal("A page has %d bytes too many", int(fixture.output.size() - offset));
    return entries;
}

std::uint32_t tst_SimJournal::lostIn(const SimModelFixture &fixture)
{
    VesmoraSimPage page;
    std::memcpy(&page, fixture.output.constData(), sizeof page);
    return page.lost;
}

void tst_SimJournal::entriesAreNumberedInOrder()
{
    SimModelFixture fixture;
    fixture.now = 5;
    fixture.plug(VESMORA_PID_RX1, 2);
    fixture.now = 6;
    const SimHandle handle = fixture.open(2);
    fixture.request(handle, VESMORA_STOP_AUDIO);
    model_unplug(fixture.model(), 7);
    fixture.request(handle, VESMORA_INIT_AUDIO);
    model_close(fixture.model(), &handle, 8);

    const QList<Entry> entries = read(fixture);
    const std::uint32_t kinds[] = {VESMORA_SIM_KIND_PLUG,    VESMORA_SIM_KIND_OPEN,
                                   VESMORA_SIM_KIND_REQUEST, VESMORA_SIM_KIND_UNPLUG,
                                   VESMORA_SIM_KIND_REQUEST, VESMORA_SIM_KIND_CLOSE};
    const std::uint32_t times[] = {5, 6, 6, 7, 6, 8};
    QCOMPARE(entries.size(), 6);
    for (int i = 0; i < 6; ++i) {
        QCOMPARE(entries[i].head.number, std::uint32_t(i + 1));
        QCOMPARE(entries[i].head.kind, kinds[i]);
        QCOMPARE(entries[i].head.time, times[i]);
        QCOMPARE(entries[i].head.bus, 2u);
    }
    QCOMPARE(entries[1].head.access, 0xC0000000u);
    QCOMPARE(entries[1].head.share, 3u);
    QCOMPARE(entries[4].head.status, SIM_DEVICE_NOT_CONNECTED);
}

void tst_SimJournal::anEntryHoldsWhatTheRequestCarried()
{
    SimModelFixture fixture;
    fixture.plug(VESMORA_PID_RM);
    const SimHandle handle = fixture.open();
    const QByteArray question = packet(VESMORA_OPCODE_FIRMWARE_VERSION);
    fixture.request(handle, VESMORA_VENDOR_REQUEST, question, 32);
    fixture.request(handle, VESMORA_GET_DEVICE_PID, {}, 8);
    const QList<Entry> entries = read(fixture, 3);
    QCOMPARE(entries.size(), 2);
    QCOMPARE(entries[0].head.code, VESMORA_VENDOR_REQUEST);
    QCOMPARE(entries[0].head.inputLength, 37u);
    QCOMPARE(entries[0].head.outputLength, 32u);
    QCOMPARE(entries[0].payload, question);
    QCOMPARE(entries[1].head.handle, handle.id);
    QCOMPARE(entries[1].head.outputLength, 8u);
    QCOMPARE(entries[1].head.answer, VESMORA_PID_RM);
    QCOMPARE(entries[1].payload, QByteArray());
}

void tst_SimJournal::aLongInputIsCutButItsLengthIsKept()
{
    OpenSimModelFixture fixture;
    const QByteArray input(sizeof(MixerBlock) - 1, 'x');
    QCOMPARE(fixture.request(VESMORA_SEND_MIXER_BLOCK, input), SIM_INFO_LENGTH_MISMATCH);
    const Entry entry = read(fixture, 3).constFirst();
    QCOMPARE(entry.head.inputLength, std::uint32_t(input.size()));
    QCOMPARE(entry.payload, input.first(VESMORA_SIM_LONGEST_INPUT));
}

void tst_SimJournal::pagesHoldWholeEntriesAndGoOnWhereTheyStopped()
{
    OpenSimModelFixture fixture;
    for (std::uint32_t i = 0; i < 10; ++i)
        fixture.request(VESMORA_SET_BUFFER_SIZE, bytesOf(i));
    std::uint32_t next = 1;
    // Room for two entries and a bit.
    for (QList<Entry> page; !(page = read(fixture, next, 8 + 64 + 64 + 63)).isEmpty();) {
        QVERIFY(page.size() <= 3);
        for (const Entry &entry : page)
            QCOMPARE(entry.head.number, next++);
    }
    QCOMPARE(next, 13u);
}

void tst_SimJournal::aPageTooSmallForOneEntryIsRefused()
{
    SimModelFixture fixture;
    fixture.plug(VESMORA_PID_RX1);
    const QByteArray first = bytesOf(1u);
    const std::uint32_t needed = sizeof(VesmoraSimPage) + sizeof(VesmoraSimEntry);
    QCOMPARE(fixture.control(VESMORA_SIM_READ_RECORD, first, needed - 1), SIM_BUFFER_TOO_SMALL);
    QCOMPARE(fixture.control(VESMORA_SIM_READ_RECORD, first, needed), SIM_SUCCESS);
}

void tst_SimJournal::aFullRecordCountsWhatItLosesAndKeepsNoGaps()
{
    OpenSimModelFixture fixture(sizeof(VesmoraSimEntry) * 3 + 40);
    fixture.request(VESMORA_STOP_AUDIO);
    for (int i = 0; i < 4; ++i)
        fixture.request(VESMORA_INIT_AUDIO);
    QCOMPARE(read(fixture).size(), 3);
    QCOMPARE(lostIn(fixture), 4u);
    QCOMPARE(fixture.request(VESMORA_STOP_AUDIO), SIM_SUCCESS);
    QCOMPARE(read(fixture).size(), 3);
    QCOMPARE(lostIn(fixture), 5u);
}

void tst_SimJournal::anEntryThatRunsOutOfRoomHalfwayIsLostWhole()
{
    OpenSimModelFixture fixture(4096);
    fixture.request(VESMORA_SEND_MIXER_BLOCK, QByteArray(sizeof(MixerBlock), '\1'));
    fixture.request(VESMORA_STOP_AUDIO);
    QCOMPARE(read(fixture).size(), 2);
    QCOMPARE(lostIn(fixture), 2u);
}

void tst_SimJournal::clearingStartsOver()
{
    OpenSimModelFixture fixture(sizeof(VesmoraSimEntry));
    QCOMPARE(fixture.control(VESMORA_SIM_CLEAR_RECORD), SIM_SUCCESS);
    fixture.request(VESMORA_STOP_AUDIO);
    const QList<Entry> entries = read(fixture);
    QCOMPARE(lostIn(fixture), 0u);
    QCOMPARE(entries.size(), 1);
    QCOMPARE(entries[0].head.number, 1u);
}

void tst_SimJournal::aWholeMixerBlockOfChangesFitsOnThePageItIsSaidToFit()
{
    OpenSimModelFixture fixture;
    fixture.request(VESMORA_SEND_MIXER_BLOCK, QByteArray(sizeof(MixerBlock), '\1'));
    const QList<Entry> entries = read(fixture, 3, VESMORA_SIM_LONGEST_PAGE);
    QCOMPARE(entries.size(), 1);
    QCOMPARE(entries[0].payload.size(),
             qsizetype(VESMORA_SIM_MIXER_VALUES * sizeof(VesmoraSimChange)));
    QCOMPARE(sizeof(VesmoraSimPage) + entries[0].head.size, VESMORA_SIM_LONGEST_PAGE);
}

QTEST_APPLESS_MAIN(tst_SimJournal)

#include "tst_simjournal.moc"
