#ifndef DRIVERCOMMANDS_H
#define DRIVERCOMMANDS_H

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

class SimulatorClient;
class VesmoraIoControl;

/// One command of VesmoraIoControl: an example call and all that is to be seen of it.
struct DriverCommand {
    QString name; ///< the method
    /// Makes the call. Gives back the result, followed by what the caller's variables hold then.
    QString (*run)(VesmoraIoControl &device);
    quint32 code = 0;
    QByteArray input; ///< exact
    quint32 outputLength = 0;
    QString request;       ///< the simulator's line for it
    QString repeated;      ///< the same when it is made once more
    QString accepted;      ///< what run() gives with a sane device, see prepareAnswers()
    QString refused;       ///< ... with a driver that fails
    QString closed;        ///< ... with no device open
    QStringList complaint; ///< lines on std::cerr whenever it cannot be carried out

    /// What a spy writes down of the call.
    QString callText() const;
};

/// Every command once.
const QList<DriverCommand> &driverCommands();

/// Gives the simulated interface the values that the commands expect as answers.
bool prepareAnswers(SimulatorClient &simulator);

/// A packet of 37 bytes that begins with the given ones, in hexadecimal, and is 0 from there on.
QByteArray packet(const char *beginning);

#endif
