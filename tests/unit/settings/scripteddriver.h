#ifndef SCRIPTEDDRIVER_H
#define SCRIPTEDDRIVER_H

#include <QStringList>

/// A driver link in place of the product's, whose OTG commands can be made to report failure, which
/// the product's do only when something throws. A test program that defines these functions itself
/// gets none of the product's.
namespace scripteddriver {

/// Nothing refused, nothing sent.
void reset();
/// From now on every such command reports failure.
void refuse(const QString &command);
/// What was called since the last call of this, in order.
QStringList takeCommands();

} // namespace scripteddriver

#endif
