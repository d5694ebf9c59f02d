#include "objectname.h"

#include <cstdint>
#include <string_view>

namespace {

constexpr std::wstring_view devicePrefix = LR"(\\.\)";
constexpr std::wstring_view pipePrefix = LR"(\\.\pipe\)";

bool appendUtf8(std::string &text, std::uint32_t point)
{
    if (point > 0x10FFFF || (point >= 0xD800 && point <= 0xDFFF))
        return false;
    const auto trail = [&](int shift) {
        text.push_back(static_cast<char>(0x80u | ((point >> shift) & 0x3Fu)));
    };
    if (point < 0x80) {
        text.push_back(static_cast<char>(point));
    } else if (point < 0x800) {
        text.push_back(static_cast<char>(0xC0u | (point >> 6)));
        trail(0);
    } else if (point < 0x10000) {
        text.push_back(static_cast<char>(0xE0u | (point >> 12)));
        trail(6);
        trail(0);
    } else {
        text.push_back(static_cast<char>(0xF0u | (point >> 18)));
        trail(12);
        trail(6);
        trail(0);
    }
    return true;
}

bool toUtf8(std::wstring_view wide, std::string &out)
{
    for (const wchar_t character : wide) {
        if (!appendUtf8(out, static_cast<std::uint32_t>(character)))
            return false;
    }
    return true;
}

} // namespace

DWORD parseObjectName(LPCWSTR path, ObjectName &out)
{
    std::wstring_view rest = path ? path : L"";
    if (rest.empty())
        return ERROR_PATH_NOT_FOUND;
    if (!rest.starts_with(devicePrefix))
        return ERROR_NOT_SUPPORTED;
    const bool isPipe = rest.starts_with(pipePrefix);
    out.kind = isPipe ? ObjectName::Kind::Pipe : ObjectName::Kind::Device;
    rest.remove_prefix(isPipe ? pipePrefix.size() : devicePrefix.size());
    if (rest.empty() || rest == L"." || rest == L"..")
        return ERROR_INVALID_NAME;
    if (rest.find_first_of(L"\\/") != std::wstring_view::npos)
        return isPipe ? ERROR_INVALID_NAME : ERROR_PATH_NOT_FOUND;
    out.name.clear();
    return toUtf8(rest, out.name) ? ERROR_SUCCESS : ERROR_INVALID_NAME;
}
