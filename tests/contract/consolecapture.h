#ifndef CONSOLECAPTURE_H
#define CONSOLECAPTURE_H

#include <QStringList>

#include <ostream>
#include <sstream>

/// Collects what is written to a console stream while it lives.
template <typename Character> class ConsoleCapture
{
public:
    explicit ConsoleCapture(std::basic_ostream<Character> &stream)
        : m_stream(stream)
        , m_previous(stream.rdbuf(&m_buffer))
    { }
    ~ConsoleCapture() { m_stream.rdbuf(m_previous); }
    ConsoleCapture(const ConsoleCapture &) = delete;
    ConsoleCapture &operator=(const ConsoleCapture &) = delete;

    /// The lines that were ended so far, then what comes after the last line end, if anything.
    QStringList lines() const
    {
        const std::basic_string<Character> text = m_buffer.str();
        QStringList lines = toQString(text).split('\n');
        if (lines.constLast().isEmpty())
            lines.removeLast();
        return lines;
    }
    bool endsWithALineEnd() const { return m_buffer.str().ends_with(Character('\n')); }
    int flushes() const { return m_buffer.flushes; }

private:
    class Buffer : public std::basic_stringbuf<Character>
    {
    public:
        int flushes = 0;

    protected:
        int sync() override
        {
            ++flushes;
            return std::basic_stringbuf<Character>::sync();
        }
    };

    static QString toQString(const std::string &text) { return QString::fromStdString(text); }
    static QString toQString(const std::wstring &text) { return QString::fromStdWString(text); }

    std::basic_ostream<Character> &m_stream;
    Buffer m_buffer;
    std::basic_streambuf<Character> *m_previous;
};

#endif
