#ifndef ASIORESET_H
#define ASIORESET_H

/// Tells the ASIO driver to pick up new engine settings: one byte, "1", written to its pipe
/// "\\.\pipe\VesmoraPannelToASIO". Does not wait for a busy or missing driver; every outcome goes
/// to the debug log, with the Win32 error number where there is one.
void sendAsioReset();

#endif
