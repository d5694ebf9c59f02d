#ifndef ASIORESET_H
#define ASIORESET_H

/// Tells the ASIO driver to pick up new engine settings: VESMORA_RESET_SIGNAL, written to its pipe.
/// Does not wait for a busy or missing driver; every outcome goes to the debug log, with the Win32
/// error number where there is one.
void sendAsioReset();

#endif
