#include "binaryoutput.h"

void useBinaryOutput()
{
    // Line ends are never changed here.
}
