#include "arguments.h"
#include "binaryoutput.h"
#include "resetserver.h"
#include "vesmorapipes.h"
#include "windowrequester.h"

#include <QCoreApplication>

#include <cstdio>
#include <limits>

namespace {

enum ExitCode { Done = 0, Failed = 1, Misused = 2 };

constexpr qint64 maximumInt = std::numeric_limits<int>::max();
constexpr qint64 longestMessage = VESMORA_PIPE_BUFFER_SIZE;

/// What "send" does with each of its connections.
struct Sending {
    enum class What { Message, Nothing, Hang };
    What what = What::Message;
    QByteArray message;
    int count = 1;
};

int complain(const QString &message)
{
    std::fprintf(stderr, "vesmora-asio: %s\n", message.toLocal8Bit().constData());
    return Failed;
}

int misused(const QString &mistake)
{
    complain(mistake);
    std::fputs("usage:\n"
               "  vesmora-asio serve [--count K]\n"
               "  vesmora-asio send WORD... [--count K]\n"
               "  vesmora-asio send --bytes HEX [--count K]\n"
               "  vesmora-asio send --length N [--count K]\n"
               "  vesmora-asio send --connect-and-drop [--count K]\n"
               "  vesmora-asio send --connect-and-hang [--count K]\n",
               stderr);
    return Misused;
}

QByteArray hexBytes(Arguments &arguments, const QString &text)
{
    const QByteArray digits = text.toLatin1();
    QByteArray bytes = QByteArray::fromHex(digits);
    if (bytes.toHex() != digits.toLower())
        arguments.reject(QStringLiteral("\"%1\" is not in hexadecimal").arg(text));
    return bytes;
}

QByteArray countingBytes(qint64 length)
{
    QByteArray bytes(static_cast<qsizetype>(length), '\0');
    for (qsizetype i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<char>(i);
    return bytes;
}

/// Little-endian.
QByteArray wordBytes(Arguments &arguments)
{
    QByteArray bytes;
    do {
        const qint64 word =
            arguments.number(QStringLiteral("a word"), 0, std::numeric_limits<quint32>::max());
        for (int i = 0; i < 4; ++i)
            bytes.append(static_cast<char>(word >> (8 * i)));
    } while (!arguments.isEmpty() && arguments.error().isEmpty());
    return bytes;
}

Sending parseSending(Arguments &arguments)
{
    Sending sending;
    sending.count =
        static_cast<int>(arguments.option(QStringLiteral("--count"), 1, maximumInt).value_or(1));
    if (arguments.flag(QStringLiteral("--connect-and-drop")))
        sending.what = Sending::What::Nothing;
    else if (arguments.flag(QStringLiteral("--connect-and-hang")))
        sending.what = Sending::What::Hang;
    else if (const auto bytes = arguments.textOption(QStringLiteral("--bytes")))
        sending.message = hexBytes(arguments, *bytes);
    else if (const auto length = arguments.option(QStringLiteral("--length"), 0, longestMessage))
        sending.message = countingBytes(*length);
    else if (arguments.error().isEmpty())
        sending.message = wordBytes(arguments);
    arguments.finish();
    return sending;
}

bool sendOnce(WindowRequester &requester, const Sending &sending)
{
    if (!requester.connect())
        return false;
    if (sending.what == Sending::What::Message && !requester.send(sending.message))
        return false;
    if (sending.what == Sending::What::Hang) {
        std::puts("connected");
        std::fflush(stdout);
        requester.hang();
    }
    requester.disconnect();
    return true;
}

int send(Arguments &arguments)
{
    const Sending sending = parseSending(arguments);
    if (!arguments.error().isEmpty())
        return misused(arguments.error());
    WindowRequester requester;
    for (int i = 0; i < sending.count; ++i) {
        if (!sendOnce(requester, sending))
            return complain(requester.errorString());
    }
    return Done;
}

void print(const QByteArray &message)
{
    std::printf("{\"bytes\":\"%s\"}\n", message.toHex().constData());
    std::fflush(stdout);
}

int serve(Arguments &arguments)
{
    const auto count = arguments.option(QStringLiteral("--count"), 1, maximumInt);
    arguments.finish();
    if (!arguments.error().isEmpty())
        return misused(arguments.error());
    ResetServer server;
    if (!server.listen())
        return complain(server.errorString());
    std::puts("ready");
    std::fflush(stdout);
    for (qint64 served = 0; !count || served < *count; ++served) {
        if (!server.serve(print))
            return complain(server.errorString());
    }
    return Done;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    useBinaryOutput();
    Arguments arguments(QCoreApplication::arguments().sliced(1));
    const QString name = arguments.word(QStringLiteral("the command"));
    if (name == QLatin1String("serve"))
        return serve(arguments);
    if (name == QLatin1String("send"))
        return send(arguments);
    return misused(name.isEmpty() ? arguments.error()
                                  : QStringLiteral("there is no command \"%1\"").arg(name));
}
