#include "createrefusal.h"

#include <QByteArray>

namespace {

constexpr char folderVariable[] = "VESMORA_HOST_DIR";

} // namespace

/// There is no place where pipes could be.
class CreateRefusal::Lane
{
public:
    Lane() { qputenv(folderVariable, "/nonexistent/folder"); }
    ~Lane() { qputenv(folderVariable, m_folder); }

private:
    const QByteArray m_folder = qgetenv(folderVariable);
};

CreateRefusal::CreateRefusal()
    : m_lane(std::make_unique<Lane>())
    , m_error(ERROR_FILE_NOT_FOUND)
{ }

CreateRefusal::~CreateRefusal() = default;
