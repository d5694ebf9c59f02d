#ifndef REFUSINGDRIVER_H
#define REFUSINGDRIVER_H

#include <QStringList>

/// A driver link in place of the product's, whose commands can be made to report failure, which the
/// product's packet commands do only when something throws. A test program that defines these
/// functions itself gets none of the product's.
namespace refusingdriver {

/// Accepts everything and forgets the past.
void reset();
/// The @p nth command of this name from now (1 is the next) reports failure.
void refuse(const QString &command, int nth = 1);
/// So do all of this name from now on.
void refuseAll(const QString &command);
/// The commands since the last call, e.g. "setOutVolume 1 100" or "sendMixerBlock".
QStringList takeCommands();

} // namespace refusingdriver

#endif
