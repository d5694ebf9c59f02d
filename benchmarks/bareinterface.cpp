#include "bareinterface.h"

#include "comparison.h"
#include "datafile.h"

BareInterface::BareInterface(const QString &file)
    : m_device(CreateFileW(L"\\\\.\\" VESMORA_BUS_NAME L"0", GENERIC_READ | GENERIC_WRITE,
                           FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr))
    , m_file(dataFile(file), QSettings::IniFormat)
{
    require(m_device != INVALID_HANDLE_VALUE, QStringLiteral("There is no device to open"));
}

BareInterface::~BareInterface()
{
    CloseHandle(m_device);
}
