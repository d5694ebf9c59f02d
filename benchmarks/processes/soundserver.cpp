#include "soundserver.h"

#include "comparison.h"
#include "waiting.h"

#include <QFile>

namespace {

constexpr char address[] = "PULSE_SERVER";

} // namespace

SoundServer::SoundServer()
{
    const QString socket = m_folder.filePath(QStringLiteral("native"));
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HOME"), m_folder.path());
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), m_folder.path());
    m_process.setProcessEnvironment(environment);
    m_process.launch(
        QStringLiteral("pulseaudio"),
        {QStringLiteral("-n"), QStringLiteral("--daemonize=no"),
         QStringLiteral("--use-pid-file=no"), QStringLiteral("--exit-idle-time=-1"),
         QStringLiteral("--load=module-null-sink"),
         QStringLiteral("--load=module-native-protocol-unix auth-anonymous=1 socket=") + socket});
    require(waitUntil([&] { return QFile::exists(socket); }),
            QStringLiteral("pulseaudio does not serve"));
    qputenv(address, QByteArray("unix:") + socket.toLocal8Bit());
}

SoundServer::~SoundServer()
{
    qunsetenv(address);
    m_process.stop();
}
