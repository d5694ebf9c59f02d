#include "contractheader.h"

#include <QRegularExpression>

namespace {

using Match = QRegularExpressionMatch;

template <typename Visitor>
void forEachMatch(const QString &pattern, const QString &text, const Visitor &visit)
{
    const QRegularExpression expression(pattern,
                                        QRegularExpression::DotMatchesEverythingOption
                                            | QRegularExpression::MultilineOption);
    for (auto matches = expression.globalMatch(text); matches.hasNext();)
        visit(matches.next());
}

Match matchWhole(const QString &pattern, const QString &text)
{
    return QRegularExpression(QRegularExpression::anchoredPattern(pattern)).match(text);
}

/// Of a plain number as C writes it: 16, 0x808u.
bool readNumber(QString text, quint32 &number)
{
    if (text.endsWith(u'u'))
        text.chop(1);
    bool isNumber = false;
    number = text.toUInt(&isNumber, 0);
    return isNumber;
}

class Reader
{
public:
    explicit Reader(const QString &text);
    ContractHeader header;

private:
    void readDefinition(const QString &name, const QString &definition);
    void readControlCode(const QString &name, const Match &match);
    void readStructure(const QString &name, const QString &body);
    quint32 fieldLength(const Match &field);
    quint32 bufferLength(const QString &direction, const QString &remark);
    quint32 typeSize(const QString &type);
};

Reader::Reader(const QString &text)
{
    const QString joined = QString(text).replace(QRegularExpression("\\s*\\\\\\n\\s*"), " ");
    const auto forEachDefinition = [&joined](const auto &visit) {
        // A macro with arguments is no constant.
        forEachMatch("^#\\s*define (VESMORA_\\w+)(?!\\()\\b[ \\t]+([^\\n]+)$", joined,
                     [&visit](const Match &match) { visit(match.captured(1), match.captured(2)); });
    };
    // Structures need the constants, and control codes the structures.
    forEachDefinition([this](const QString &name, const QString &definition) {
        if (!definition.startsWith("VESMORA_CONTROL_CODE("))
            readDefinition(name, definition);
    });
    forEachMatch("^typedef struct (\\w+) \\{(.*?)^\\}", joined, [this](const Match &match) {
        readStructure(match.captured(1), match.captured(2));
    });
    forEachDefinition([this](const QString &name, const QString &definition) {
        if (definition.startsWith("VESMORA_CONTROL_CODE("))
            readDefinition(name, definition);
    });
}

void Reader::readDefinition(const QString &name, const QString &definition)
{
    const Match code = matchWhole("VESMORA_CONTROL_CODE\\((\\w+)\\)\\s*/\\* (.*) \\*/", definition);
    const QString number = definition.section("/*", 0, 0).trimmed();
    quint32 value = 0;
    if (code.hasMatch())
        readControlCode(name, code);
    else if (readNumber(number, value))
        header.constants.insert(name, value);
    else if (const Match text = matchWhole("L?\"(.*)\"", number); text.hasMatch())
        header.names.insert(name, text.captured(1).replace("\\\\", "\\"));
    else
        header.unread.append(name);
}

/// The remark behind a code says what it carries: "in: u32, Hz", "neither".
void Reader::readControlCode(const QString &name, const Match &match)
{
    const QString remark = match.captured(2);
    ContractHeader::ControlCode code;
    code.inputLength = bufferLength("in", remark);
    code.outputLength = bufferLength("out", remark);
    const bool isSaid = code.inputLength || code.outputLength || remark == "neither";
    if (!readNumber(match.captured(1), code.function) || !isSaid)
        header.unread.append(name);
    header.controlCodes.insert(name, code);
}

void Reader::readStructure(const QString &name, const QString &body)
{
    ContractHeader::Structure structure;
    const QString members = QString(body).remove(QRegularExpression("/\\*.*?\\*/"));
    for (const QString &member : members.split(u';')) {
        if (member.trimmed().isEmpty())
            continue;
        const Match field = matchWhole("(\\w+) (\\w+)((?:\\[\\w+\\])*)", member.trimmed());
        const quint32 length = field.hasMatch() ? fieldLength(field) : 0;
        if (length == 0)
            header.unread.append(name + u' ' + member.trimmed());
        // No structure mixes types of different alignment, so nothing lies between two fields.
        structure.fields.insert(field.captured(2), {structure.size, length});
        structure.size += length;
    }
    header.structures.insert(name, structure);
}

quint32 Reader::fieldLength(const Match &field)
{
    quint32 length = typeSize(field.captured(1));
    forEachMatch("\\[(\\w+)\\]", field.captured(3), [&](const Match &match) {
        quint32 count = 0;
        if (!readNumber(match.captured(1), count))
            count = header.constants.value(match.captured(1));
        length *= count;
    });
    return length;
}

quint32 Reader::bufferLength(const QString &direction, const QString &remark)
{
    const auto match = QRegularExpression("\\b" + direction + ": (\\w+)").match(remark);
    return match.hasMatch() ? typeSize(match.captured(1)) : 0;
}

quint32 Reader::typeSize(const QString &type)
{
    const QMap<QString, quint32> sizes = {
        {"uint8_t", 1}, {"int32_t", 4}, {"uint32_t", 4}, {"u32", 4}, {"double", 8}};
    return header.structures.contains(type) ? header.structures.value(type).size
                                            : sizes.value(type);
}

} // namespace

ContractHeader readContractHeader(const QString &text)
{
    return Reader(text).header;
}
