#ifndef BAREPLUG_H
#define BAREPLUG_H

#include "panelmodel.h"
#include "tracing.h"

#include <QHash>
#include <QSettings>

#include <windows.h>

#include <utility>
#include <vector>

/// All that is ordered when a model is plugged in, and nothing else: the requests and the lines of
/// the log that the product was seen to make, the pause of the audio engine, each control's value
/// read once and saved as often as it is acted on.
class BarePlug
{
public:
    /// @p product is what the product does. @p panelFile has what its panel has saved.
    BarePlug(const PanelModel &model, const Trace &product, const QString &engineFile,
             const QString &panelFile);

    /// Opens the connection that the product still has from the last time.
    void prepare();
    void run();
    /// Closes what is open.
    void release();

private:
    static HANDLE openDevice();
    void ask(const Record &record);
    void request(const Record &record);

    const Trace m_product;
    QSettings m_engineFile;
    const QString m_panelFile;
    QStringList m_keys;
    QList<std::pair<QString, QVariant>> m_saves;
    QHash<quint32, HANDLE> m_handles; ///< by the number that the product's had
    quint32 m_earlierHandle = 0;      ///< of what was opened before
    std::vector<double> m_block;
};

#endif
