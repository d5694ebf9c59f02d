#include "recordprinter.h"

#include "recorddecoder.h"

#include <QJsonDocument>

#include <cstdio>

void RecordPrinter::print()
{
    const std::uint32_t entries = m_simulation.entries();
    if (entries < m_printed)
        m_printed = 0; // cleared
    while (m_printed < entries) {
        const auto page = m_simulation.recordPage(m_printed + 1);
        const auto decoded = decodePage(QByteArrayView(page.data(), qsizetype(page.size())));
        if (!decoded || decoded->records.isEmpty())
            return;
        for (const Record &record : decoded->records) {
            const QByteArray line = QJsonDocument(record.toJson()).toJson(QJsonDocument::Compact);
            std::printf("%s\n", line.constData());
        }
        m_printed = decoded->records.constLast().number;
    }
    std::fflush(stdout);
}
