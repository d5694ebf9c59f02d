#include "enginefixture.h"

namespace {

using Sequence = bool (AudioEngine::*)(const AudioEngine::Choice &);

Sequence sequenceOf(const QString &name)
{
    static const QMap<QString, Sequence> sequences{{"BufferSize", &AudioEngine::setBufferSize},
                                                   {"UsbLatency", &AudioEngine::setUsbLatency},
                                                   {"SampleRate", &AudioEngine::setSampleRate},
                                                   {"SafeMode", &AudioEngine::setSafeMode}};
    if (!sequences.contains(name))
        qFatal("There is no choice %s.", qPrintable(name));
    return sequences.value(name);
}

AudioEngine::Choice choiceOf(const QString &text)
{
    const QStringList modes{"Disabled", "Enabled"};
    if (modes.contains(text))
        return {text, quint32(modes.indexOf(text))};
    return {text, text.toUInt()};
}

} // namespace

void EngineFixture::openEngine()
{
    m_owner = std::make_unique<QObject>();
    m_engine = new AudioEngine(m_owner.get());
    m_chosen = {{"BufferSize", "48"},
                {"UsbLatency", "8"},
                {"SampleRate", "44100"},
                {"SafeMode", "Disabled"}};
    m_kept.clear();
    connect(m_engine, &AudioEngine::usbLatencyTooHigh, this, [this](quint32 frames) {
        const QString text = QString::number(frames);
        if (m_chosen.value("UsbLatency") != text)
            choose("UsbLatency", text);
    });
    QVERIFY(m_engine->openDevice());
}

void EngineFixture::openConnectedEngine()
{
    plug(VESMORA_PID_RX1);
    openEngine();
    takeEvents();
}

void EngineFixture::choose(const QString &name, const QString &text)
{
    m_chosen.insert(name, text);
    if (!(m_engine->*sequenceOf(name))(choiceOf(text)))
        return;
    m_kept.insert(name, text);
    qDebug().noquote() << "kept" << name + '=' + text;
}

QStringList EngineFixture::texts() const
{
    QStringList all;
    for (const char *name : {"BufferSize", "UsbLatency", "SampleRate", "SafeMode"})
        all << m_chosen.value(name);
    return all;
}

QStringList EngineFixture::kept() const
{
    QStringList all;
    for (auto it = m_kept.cbegin(); it != m_kept.cend(); ++it)
        all << it.key() + '=' + it.value();
    return all;
}

void EngineFixture::finishOtgCycles()
{
    QTRY_VERIFY_WITH_TIMEOUT(!isOtgPending(*m_owner), patience);
}

void EngineFixture::init()
{
    observe();
}

void EngineFixture::cleanup()
{
    m_owner.reset();
    stopObserving();
    QTRY_COMPARE_WITH_TIMEOUT(openHandles(), 0u, patience);
}
