#ifndef LISTENERLOG_H
#define LISTENERLOG_H

#include <QString>

/// What the product logs of the requests that come from the ASIO driver.
namespace listenerlog {

inline const QString waiting = "ThreadSettingsPip is running waiting Asio Info...";
inline const QString nothingReceived = "No data received from pipe.";
inline const QString receivedData = "Received data from pipe:"; ///< and the words
inline const QString opensWindow = "Open Window Signal from ASIO.";
inline const QString windowShown = "Received signal from pipe thread to show settings window.";
inline const QString tooLong = "Error reading from pipe. Error code: 234";
inline const QString clientLeft = "Error reading from pipe. Error code: 109"; ///< while it was read
inline const QString clientLeftEarly = "Error connecting to pipe. Error code: 232";

} // namespace listenerlog

#endif
