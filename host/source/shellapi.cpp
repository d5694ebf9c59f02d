#include "lasterror.h"
#include "programlauncher.h"

#include <chrono>
#include <sstream>
#include <string_view>
#include <thread>

namespace {

/// Any number above 32 says that all went well.
constexpr std::intptr_t launched = 42;

std::string text(LPCSTR value)
{
    return value ? value : "";
}

std::vector<std::string> words(LPCSTR list)
{
    std::istringstream stream(text(list));
    std::vector<std::string> result;
    for (std::string word; stream >> word;)
        result.push_back(word);
    return result;
}

std::intptr_t shellError(int number)
{
    switch (number) {
    case ENOENT:
        return SE_ERR_FNF;
    case ENOTDIR:
        return SE_ERR_PNF;
    case EACCES:
    case EPERM:
        return SE_ERR_ACCESSDENIED;
    case ENOMEM:
    case EAGAIN:
        return SE_ERR_OOM;
    default:
        return SE_ERR_NOASSOC;
    }
}

std::intptr_t openProgram(LPCSTR file, LPCSTR parameters, LPCSTR folder)
{
    std::string program;
    int number = findProgram(text(file), program);
    if (number == 0)
        number = launchDetached(program, words(parameters), text(folder));
    return number == 0 ? launched : shellError(number);
}

} // namespace

HINSTANCE ShellExecuteA(HWND, LPCSTR operation, LPCSTR file, LPCSTR parameters, LPCSTR folder, INT)
{
    std::intptr_t result = SE_ERR_OOM;
    reported([&] {
        const bool opens = !operation || std::string_view(operation) == "open";
        result = opens ? openProgram(file, parameters, folder) : SE_ERR_NOASSOC;
        return result > 32 ? ERROR_SUCCESS : static_cast<DWORD>(result);
    });
    return reinterpret_cast<HINSTANCE>(result);
}

void Sleep(DWORD milliseconds)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}
