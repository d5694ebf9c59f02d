#ifndef BINARYOUTPUT_H
#define BINARYOUTPUT_H

/// Makes standard output pass line ends through as they are: LF alone on every system.
void useBinaryOutput();

#endif
