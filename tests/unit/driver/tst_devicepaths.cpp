#include "devicepaths.h"

#include <QTest>

class tst_DevicePaths : public QObject
{
    Q_OBJECT

private slots:
    void listsSixteenBussesInOrder();
};

void tst_DevicePaths::listsSixteenBussesInOrder()
{
    const std::vector<std::wstring> expected{
        LR"(\\.\VesmoraAudioBus0)",  LR"(\\.\VesmoraAudioBus1)",  LR"(\\.\VesmoraAudioBus2)",
        LR"(\\.\VesmoraAudioBus3)",  LR"(\\.\VesmoraAudioBus4)",  LR"(\\.\VesmoraAudioBus5)",
        LR"(\\.\VesmoraAudioBus6)",  LR"(\\.\VesmoraAudioBus7)",  LR"(\\.\VesmoraAudioBus8)",
        LR"(\\.\VesmoraAudioBus9)",  LR"(\\.\VesmoraAudioBus10)", LR"(\\.\VesmoraAudioBus11)",
        LR"(\\.\VesmoraAudioBus12)", LR"(\\.\VesmoraAudioBus13)", LR"(\\.\VesmoraAudioBus14)",
        LR"(\\.\VesmoraAudioBus15)"};
    const auto texts = [](const std::vector<std::wstring> &paths) {
        QStringList list;
        for (const std::wstring &path : paths)
            list.append(QString::fromStdWString(path));
        return list;
    };
    QCOMPARE(texts(devicePaths), texts(expected));
}

QTEST_APPLESS_MAIN(tst_DevicePaths)
#include "tst_devicepaths.moc"
