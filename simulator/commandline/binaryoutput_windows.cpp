#include "binaryoutput.h"

#include <cstdio>
#include <fcntl.h>
#include <io.h>

void useBinaryOutput()
{
    _setmode(_fileno(stdout), _O_BINARY);
}
