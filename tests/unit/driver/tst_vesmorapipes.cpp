#include "contractseenbyc.h"
#include "vesmorapipes.h"

#include <QTest>

/// The border to the ASIO driver, byte for byte.
class tst_VesmoraPipes : public QObject
{
    Q_OBJECT

private slots:
    void thePipesHaveTheirNames();
    void constantsHaveTheirNumbers();
    void aWindowRequestIsFiveWords();
    void aCCompilerSeesTheSame();
};

void tst_VesmoraPipes::thePipesHaveTheirNames()
{
    QCOMPARE(QString::fromWCharArray(VESMORA_RESET_PIPE), R"(\\.\pipe\VesmoraPannelToASIO)");
    QCOMPARE(QString::fromWCharArray(VESMORA_WINDOW_PIPE), R"(\\.\pipe\VesmoraASIOToPannel)");
}

void tst_VesmoraPipes::constantsHaveTheirNumbers()
{
    QCOMPARE(VESMORA_RESET_SIGNAL, 0x31u);
    QCOMPARE(VESMORA_PIPE_BUFFER_SIZE, 65536u);
    QCOMPARE(VESMORA_PIPE_MESSAGE_LIMIT, 1024u);
    QCOMPARE(VESMORA_PIPE_TIMEOUT, 300u);
}

void tst_VesmoraPipes::aWindowRequestIsFiveWords()
{
    QCOMPARE(sizeof(WindowRequest), 20u);
    QCOMPARE(offsetof(WindowRequest, loggedOnly), 0u);
    QCOMPARE(offsetof(WindowRequest, showSettings), 16u);
}

void tst_VesmoraPipes::aCCompilerSeesTheSame()
{
    QCOMPARE(contractSeenByC.windowRequest, std::size_t(20));
    QCOMPARE(contractSeenByC.showSettings, std::size_t(16));
}

QTEST_APPLESS_MAIN(tst_VesmoraPipes)
#include "tst_vesmorapipes.moc"
