#ifndef CONTRACTHEADER_H
#define CONTRACTHEADER_H

#include <QMap>
#include <QString>
#include <QStringList>

/// What the headers in driver/contract/ say, read from their text, so that nothing in them goes
/// unnoticed.
struct ContractHeader {
    struct ControlCode {
        quint32 function = 0;
        quint32 inputLength = 0; ///< bytes, as everywhere
        quint32 outputLength = 0;
    };
    struct Field {
        quint32 offset = 0;
        quint32 length = 0;
    };
    struct Structure {
        quint32 size = 0;
        QMap<QString, Field> fields;
    };

    QMap<QString, ControlCode> controlCodes;
    QMap<QString, quint32> constants; ///< the numbers; opcodes among them
    QMap<QString, QString> names;     ///< of devices and pipes
    QMap<QString, Structure> structures;
    QStringList unread; ///< what was found and not understood
};

/// @p text is that of the headers, one after the other.
ContractHeader readContractHeader(const QString &text);

#endif
